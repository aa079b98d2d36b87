// The KVNET_ and CA_ names, and what scripts may do with the current channel array.

#include "host/HostApplication.h"
#include "peripheral_network/KvNetSettings.h"
#include "peripheral_network/KvNetTexts.h"
#include "platform/AutomationTable.h"
#include "platform/UserInterface.h"
#include "switching/ChannelArray.h"

using kalvio::automation::Method;
using kalvio::automation::Property;

const kalvio::DispatchTable& CKvNetSettings::GetDispatchMap() const {
    using Document = CKvNetSettings;
    static const kalvio::DispatchTable table{
        Property("KVNET_ShowErrorMessages", &Document::OLEGetShowErrorMessages,
                 &Document::OLESetShowErrorMessages),
        Method("KVNET_GetStatus", &Document::OLEGetStatus),
        Method("KVNET_Reset", &Document::OLEReset),
        Method("KVNET_DefineChannelArray", &Document::OLEDefineChannelArray),
        Method("KVNET_RemoveChannelArray", &Document::OLERemoveChannelArray),
        Method("KVNET_SetChannelArray", &Document::OLESetChannelArray),
        Method("CA_ExclusiveChannel", &Document::OLEExclusiveChannel),
        Method("CA_NotChannel", &Document::OLENotChannel),
        Method("CA_AddChannel", &Document::OLEAddChannel),
        Method("CA_RemoveChannel", &Document::OLERemoveChannel),
        Method("CA_ClearChannels", &Document::OLEClearChannels),
        Method("CA_SetAllChannels", &Document::OLESetAllChannels),
        Method("CA_Balance", &Document::OLEBalance),
    };
    return table;
}

bool CKvNetSettings::OLEGetStatus(std::int16_t address, VARIANT* status) {
    return ReadStatus(address, status) == KVNET_OK;
}

bool CKvNetSettings::OLEReset(std::int16_t address, bool on, VARIANT* status) {
    return ResetDevice(address, on ? 1 : 0, status) == KVNET_OK;
}

bool CKvNetSettings::OLEDefineChannelArray(const CString& name, bool stereo, bool exclusiveOnly) {
    return ReportCode("KVNET_DefineChannelArray",
                      DefineArray(name.c_str(), stereo ? 1 : 0, exclusiveOnly ? 1 : 0));
}

bool CKvNetSettings::OLERemoveChannelArray(const CString& name) {
    return ReportCode("KVNET_RemoveChannelArray", RemoveArray(name.c_str()));
}

bool CKvNetSettings::OLESetChannelArray(const CString& name) {
    CChannelArray* array = GetChannelArray(name.c_str());
    if (array == nullptr) {
        ReportMethodError("KVNET_SetChannelArray", kTextReasonUnknown, kalvio::kNoParameterText);
        return false;
    }
    m_currentArray = array;
    return true;
}

// Scripts are told of codes only where channels are named; every other failure is unknown to them.
template<typename Call>
bool CKvNetSettings::CallCurrentArray(const char* method, ArrayCall kind, Call call) {
    using namespace kalvio;
    const auto refuse = [this](const CString& text) {
        if (ShowsMessages()) {
            ShowMessage(text);
        }
        return false;
    };
    if (m_currentArray == nullptr) {
        return refuse(FormatText(LoadText(kTextNoArraySelected), "KVNET_SetChannelArray"));
    }
    if (kind.independent && m_currentArray->GetExclusiveOnly() != 0) {
        return refuse(FormatText(LoadText(kTextExclusiveArray), method, m_currentArray->GetName()));
    }
    const short code = call(*m_currentArray);
    return ReportCode(method, code == KVNET_OK || kind.namesChannel ? code : short{KVNET_ERR_PARAMETER});
}

bool CKvNetSettings::OLEExclusiveChannel(std::int16_t channel) {
    return CallCurrentArray("CA_ExclusiveChannel", {.independent = false, .namesChannel = true},
                            [channel](CChannelArray& array) { return array.ExclusiveChannel(channel, 1); });
}

bool CKvNetSettings::OLENotChannel(std::int16_t channel) {
    return CallCurrentArray("CA_NotChannel", {.independent = true, .namesChannel = true},
                            [channel](CChannelArray& array) { return array.ExclusiveChannel(channel, 0); });
}

bool CKvNetSettings::OLEAddChannel(std::int16_t channel) {
    return CallCurrentArray("CA_AddChannel", {.independent = true, .namesChannel = true},
                            [channel](CChannelArray& array) { return array.AddRemoveChannel(channel, 1); });
}

bool CKvNetSettings::OLERemoveChannel(std::int16_t channel) {
    return CallCurrentArray("CA_RemoveChannel", {.independent = true, .namesChannel = true},
                            [channel](CChannelArray& array) { return array.AddRemoveChannel(channel, 0); });
}

bool CKvNetSettings::OLEClearChannels() {
    return CallCurrentArray("CA_ClearChannels", {.independent = false, .namesChannel = false},
                            [](CChannelArray& array) { return array.ClearChannels(1); });
}

bool CKvNetSettings::OLESetAllChannels() {
    return CallCurrentArray("CA_SetAllChannels", {.independent = true, .namesChannel = false},
                            [](CChannelArray& array) { return array.SetAllChannels(); });
}

bool CKvNetSettings::OLEBalance(bool balance) {
    return CallCurrentArray("CA_Balance", {.independent = false, .namesChannel = false},
                            [balance](CChannelArray& array) { return array.Balance(balance ? 1 : 0); });
}
