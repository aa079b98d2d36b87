#include "switching/SwitcherSettings.h"

#include "host/HostApplication.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/AutomationTable.h"
#include "switching/ArchiveVersions.h"
#include "switching/ChannelArrayList.h"
#include "switching/Creation.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherTexts.h"

using kalvio::automation::Method;

namespace {

constexpr int kFolderIOSwitcher = 10600;

bool Report(const char* method, short code) {
    if (code != KVNET_OK) {
        kalvio::ReportKvNetError(method, code);
    }
    return code == KVNET_OK;
}

template<typename Call>
bool CallNetwork(const char* method, Call call) {
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    return network != nullptr && Report(method, call(*network));
}

template<typename Call>
bool CallArray(const char* method, const CString& name, Call call) {
    return CallNetwork(method, [&](kalvio::PeripheralNetwork& network) {
        CChannelArray* array = network.GetChannelArray(name.c_str());
        return array != nullptr ? call(*array) : short{KVNET_ERR_ARRAY_NOT_DEFINED};
    });
}

} // namespace

CSwitcherSettings::CSwitcherSettings(CHostApplication* host) : CSettingsData(host) {
    Host().RegisterControl(HINT_SWITCHER_CHANGED, this);
}

CSwitcherSettings::~CSwitcherSettings() {
    Host().UnregisterControls(this);
}

int CSwitcherSettings::Initialise() {
    m_ioSwitcherSettings = kalvio::MakeOrPost<CIOSwitcherSettings>(*this);
    return m_ioSwitcherSettings != nullptr && m_ioSwitcherSettings->Initialise() > 0 ? 1 : 0;
}

void CSwitcherSettings::Serialize(CArchive& archive) {
    if (archive.IsLoading() && !kalvio::HoldsPeripherals(archive)) {
        return;
    }
    if (archive.IsLoading() && archive.GetConfigVersion() < kalvio::kConfigWithArraysFirst) {
        CChannelArrayList unwanted;
        kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
        (network != nullptr ? network->ChannelArrays() : unwanted).Serialize(archive);
    }
    if (m_ioSwitcherSettings != nullptr) {
        m_ioSwitcherSettings->Serialize(archive);
    }
}

void CSwitcherSettings::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    const HTREEITEM folder = tree->AddFolder(parent, kalvio::kTextIOSwitcherFolder, kFolderIOSwitcher);
    if (m_ioSwitcherSettings != nullptr) {
        m_ioSwitcherSettings->PopulateOLETreeCtrl(tree, folder);
    }
}

const kalvio::DispatchTable& CSwitcherSettings::GetDispatchMap() const {
    using Document = CSwitcherSettings;
    static const kalvio::DispatchTable kTable{
        Method("SWITCHER_ExclusiveChannel", &Document::OLEExclusiveChannel),
        Method("SWITCHER_NotChannel", &Document::OLENotChannel),
        Method("SWITCHER_AddChannel", &Document::OLEAddChannel),
        Method("SWITCHER_RemoveChannel", &Document::OLERemoveChannel),
        Method("SWITCHER_ClearChannels", &Document::OLEClearChannels),
        Method("SWITCHER_SetAllChannels", &Document::OLESetAllChannels),
        Method("SWITCHER_Balance", &Document::OLEBalance),
        Method("SWITCHER_DefineArray", &Document::OLEDefineArray),
        Method("SWITCHER_DefineStereoArray", &Document::OLEDefineStereoArray),
        Method("SWITCHER_RemoveArray", &Document::OLERemoveArray),
    };
    return kTable;
}

bool CSwitcherSettings::OLEExclusiveChannel(const CString& name, std::int16_t channel) {
    return CallArray("SWITCHER_ExclusiveChannel", name,
                     [channel](CChannelArray& array) { return array.ExclusiveChannel(channel, 1); });
}

bool CSwitcherSettings::OLENotChannel(const CString& name, std::int16_t channel) {
    return CallArray("SWITCHER_NotChannel", name,
                     [channel](CChannelArray& array) { return array.ExclusiveChannel(channel, 0); });
}

bool CSwitcherSettings::OLEAddChannel(const CString& name, std::int16_t channel) {
    return CallArray("SWITCHER_AddChannel", name,
                     [channel](CChannelArray& array) { return array.AddRemoveChannel(channel, 1); });
}

bool CSwitcherSettings::OLERemoveChannel(const CString& name, std::int16_t channel) {
    return CallArray("SWITCHER_RemoveChannel", name,
                     [channel](CChannelArray& array) { return array.AddRemoveChannel(channel, 0); });
}

bool CSwitcherSettings::OLEClearChannels(const CString& name) {
    return CallArray("SWITCHER_ClearChannels", name,
                     [](CChannelArray& array) { return array.ClearChannels(0); });
}

bool CSwitcherSettings::OLESetAllChannels(const CString& name) {
    return CallArray("SWITCHER_SetAllChannels", name,
                     [](CChannelArray& array) { return array.SetAllChannels(); });
}

bool CSwitcherSettings::OLEBalance(const CString& name, bool balance) {
    return CallArray("SWITCHER_Balance", name,
                     [balance](CChannelArray& array) { return array.Balance(balance ? 1 : 0); });
}

bool CSwitcherSettings::OLEDefineArray(const CString& name) {
    return CallNetwork("SWITCHER_DefineArray", [&name](kalvio::PeripheralNetwork& network) {
        return network.DefineArray(name.c_str(), 0, 0);
    });
}

bool CSwitcherSettings::OLEDefineStereoArray(const CString& name) {
    return CallNetwork("SWITCHER_DefineStereoArray", [&name](kalvio::PeripheralNetwork& network) {
        return network.DefineArray(name.c_str(), 1, 0);
    });
}

bool CSwitcherSettings::OLERemoveArray(const CString& name) {
    return CallNetwork("SWITCHER_RemoveArray", [&name](kalvio::PeripheralNetwork& network) {
        return network.RemoveArray(name.c_str());
    });
}
