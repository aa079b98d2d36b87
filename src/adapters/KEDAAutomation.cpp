// The KEDA_ names.

#include "adapters/KEDAAdapterSettings.h"
#include "adapters/KEDATexts.h"
#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/AutomationTable.h"
#include "platform/UserInterface.h"
#include "switching/ChannelArray.h"

#include <algorithm>
#include <array>
#include <span>

using namespace kalvio::keda;
using kalvio::DispatchEntry;
using kalvio::SetOutcome;
using kalvio::automation::Constant;
using kalvio::automation::Method;
using kalvio::automation::SubObject;
using kalvio::automation::TypeOf;

namespace {

using Document = CKEDAAdapterSettings;
using Adapter = CKEDAAdapter;

constexpr const char* kSetCurrent = "KEDA_SetCurrentDevice";

// Commands that follow a change; they end in null.
using Update = short (*)(Adapter& adapter, int group);
constexpr Update kRelay = [](Adapter& a, int) { return a.UpdateRelayCtrl(); };
constexpr Update kIO = [](Adapter& a, int) { return a.UpdateIOCtrl(); };
constexpr Update kFormat = [](Adapter& a, int g) { return a.UpdateGenAnaFormat(g); };
constexpr Update kClocks = [](Adapter& a, int g) { return a.UpdateGenAnaClocks(g); };
constexpr Update kDelay = [](Adapter& a, int) { return a.UpdateDelays(); };
constexpr Update kControl = [](Adapter& a, int) { return a.UpdateCtrlMode(); };
constexpr std::array<Update, 3> kClockDirection{kClocks, kRelay, kDelay};

using Getter = int (*)(Adapter& adapter, int group);
using Setter = int (*)(Adapter& adapter, int group, int value);

template<int (Adapter::*Get)(int) const>
int GetOf(Adapter& adapter, int group) {
    return (adapter.*Get)(group);
}
template<int (Adapter::*Get)() const>
int GetOne(Adapter& adapter, int) {
    return (adapter.*Get)();
}
template<int (Adapter::*Get)(int) const>
int GetMeasured(Adapter& adapter, int group) {
    return adapter.ReadFrameClockFreq() == KVNET_OK ? (adapter.*Get)(group) : 0;
}
template<int (Adapter::*Set)(int, int)>
int SetOf(Adapter& adapter, int group, int value) {
    return (adapter.*Set)(group, value);
}
template<int (Adapter::*Set)(int)>
int SetOne(Adapter& adapter, int, int value) {
    return (adapter.*Set)(value);
}

// Scripts ask whether a path is enabled, the adapter whether it is bypassed.
template<int (Adapter::*Get)() const>
int GetInverse(Adapter& adapter, int) {
    return (adapter.*Get)() == 0 ? 1 : 0;
}
template<int (Adapter::*Set)(int)>
int SetInverse(Adapter& adapter, int, int value) {
    return (adapter.*Set)(value == 0 ? 1 : 0);
}
template<int (Adapter::*Set)(int, int)>
int SetKeepingOutputs(Adapter& adapter, int, int value) {
    return (adapter.*Set)(value, 0);
}

SetOutcome Write(Document& document, const char* name, Setter set, std::span<const Update> updates,
                 int value) {
    Adapter* adapter = document.Current();
    if (adapter == nullptr) {
        return SetOutcome::Refused(kalvio::FormatText(kalvio::LoadText(kTextNoCurrentAdapter), kSetCurrent));
    }
    if (set(*adapter, document.Group(), value) == 0) {
        const CString reason = kalvio::FormatText(kalvio::LoadText(kalvio::kTextValueRefused), name);
        const CString text = kalvio::FormatText(kalvio::LoadText(kalvio::kTextPropertyNotSet), reason);
        Document::Show(text, true);
        return SetOutcome::Refused(text);
    }
    for (const Update update : updates) {
        if (update != nullptr) {
            update(*adapter, document.Group());
        }
    }
    return {};
}

// A read-only property of the current adapter.
template<typename Value>
DispatchEntry Shown(const char* name, Getter get) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = kalvio::DispatchKind::ReadOnlyProperty;
    entry.result = TypeOf<Value>::value;
    entry.get = [get](const CCmdTarget& target) {
        auto& document = static_cast<Document&>(const_cast<CCmdTarget&>(target));
        Adapter* adapter = document.Current();
        return TypeOf<Value>::Make(
            static_cast<Value>(adapter == nullptr ? 0 : get(*adapter, document.Group())));
    };
    return entry;
}

template<typename Value>
DispatchEntry Held(const char* name, Getter get, Setter set, std::array<Update, 3> updates) {
    DispatchEntry entry = Shown<Value>(name, get);
    entry.kind = kalvio::DispatchKind::Property;
    entry.set = [name, set, updates](CCmdTarget& target, const VARIANT& value) {
        const auto taken = kalvio::automation::Take<Value>(value);
        return Write(static_cast<Document&>(target), name, set, updates, static_cast<int>(taken));
    };
    return entry;
}

// The elements of an array argument, or a single value of a transfer of one byte; false for what is neither.
bool ElementsOf(const VARIANT& argument, int count, VARIANT::Array& elements) {
    const VARIANT* value = argument.Resolved();
    if (value == nullptr) {
        return false;
    }
    if (const VARIANT::Array* array = value->GetArray()) {
        elements = *array;
        return std::ranges::none_of(elements, [](const VARIANT& element) {
            return element.Resolved() == nullptr || element.Resolved()->GetArray() != nullptr;
        });
    }
    elements = {*value};
    return count == 1;
}

// The low byte of an element; false when it is no number.
bool LowByte(const VARIANT& element, std::uint8_t& byte) {
    std::int32_t number = 0;
    if (!element.Get(number)) {
        return false;
    }
    byte = static_cast<std::uint8_t>(number);
    return true;
}

// Puts what was received where the argument points: into an array, or a single value.
void StoreReceived(const VARIANT& argument, const VARIANT::Array& received) {
    VARIANT* target = argument.GetReference();
    if (target == nullptr) {
        return;
    }
    if (target->Type() == kalvio::AutomationType::Reference) {
        StoreReceived(*target, received);
    } else if (target->GetArray() != nullptr) {
        *target = VARIANT::FromArray(received);
    } else {
        *target = received.front();
    }
}

} // namespace

void CKEDAAdapterSettings::Show(const CString& text, bool exclamation) {
    const kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    if (GetHostApplication().GetOLEDisplay() != 0 && network != nullptr &&
        network->GetShowErrorMessages() != 0) {
        kalvio::ShowMessage(text, exclamation ? kalvio::BoxIcon::Exclamation : kalvio::BoxIcon::None);
    }
}

bool CKEDAAdapterSettings::MethodFailed(const char* method) {
    const CString reason = kalvio::FormatText(kalvio::LoadText(kalvio::kTextMethodRefused), method);
    Show(kalvio::FormatText(kalvio::LoadText(kalvio::kTextMethodFailed), reason), true);
    return false;
}

CKEDAAdapter* CKEDAAdapterSettings::Current() {
    CKEDAAdapter* adapter = GetKEDAAdapter(m_currentAddress);
    if (adapter == nullptr) {
        Show(kalvio::FormatText(kalvio::LoadText(kTextNoCurrentAdapter), kSetCurrent), false);
    }
    return adapter;
}

bool CKEDAAdapterSettings::OLESetCurrentDevice(std::int16_t address) {
    const bool possible = IsValidAddress(address, 0) != 0;
    CKEDAAdapter* adapter = possible ? GetKEDAAdapter(static_cast<std::uint8_t>(address)) : nullptr;
    if (adapter == nullptr) {
        Show(kalvio::LoadText(kTextNoSuchAdapter), false);
        return false;
    }
    adapter->RefreshStatus();
    if (!adapter->Status().IsOn()) {
        if (adapter->ResetDevice(1) == 0) {
            return false;
        }
        adapter->UpdateDeviceFromSettings();
    }
    m_currentAddress = static_cast<std::uint8_t>(address);
    return true;
}

CCmdTarget* CKEDAAdapterSettings::OLEGetGenerator() {
    m_group = GROUP_GENERATOR;
    return this;
}

CCmdTarget* CKEDAAdapterSettings::OLEGetAnalyzer() {
    m_group = GROUP_ANALYSER;
    return this;
}

bool CKEDAAdapterSettings::OLESetGeneratorRouting(std::int16_t wire, std::int16_t slot,
                                                  std::int16_t routing) {
    CKEDAAdapter* adapter = Current();
    if (adapter == nullptr) {
        return false;
    }
    if (adapter->SetGenRouting(wire, slot, routing) == 0 || adapter->UpdateGenRouting() != KVNET_OK) {
        return MethodFailed("KEDA_SetGeneratorRouting");
    }
    return true;
}

bool CKEDAAdapterSettings::OLESetAnalyzerRouting(std::int16_t channel, std::int16_t wire, std::int16_t slot) {
    CKEDAAdapter* adapter = Current();
    if (adapter == nullptr) {
        return false;
    }
    if (adapter->SetAnaRouting(channel, wire, slot) == 0 || adapter->UpdateAnaRouting() != KVNET_OK) {
        return MethodFailed("KEDA_SetAnalyzerRouting");
    }
    return true;
}

bool CKEDAAdapterSettings::Transfer(int mode, int count, const VARIANT& transmit, const VARIANT* receive) {
    CKEDAAdapter& adapter = *GetKEDAAdapter(m_currentAddress);
    VARIANT::Array given;
    VARIANT::Array taken;
    std::array<std::uint8_t, CKEDAAdapter::kBufferBytes> bytes{};
    if (adapter.SetControlMode(mode) == 0 || adapter.UpdateCtrlMode() != KVNET_OK || count < 0 ||
        count > CKEDAAdapter::kBufferBytes || !ElementsOf(transmit, count, given) ||
        (receive != nullptr && (!ElementsOf(*receive, count, taken) || taken.size() != given.size()))) {
        return false;
    }
    const std::size_t copied = std::min(given.size(), static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < copied; ++i) {
        if (!LowByte(given[i], bytes[i])) {
            return false;
        }
    }
    if (receive == nullptr) {
        return adapter.SendI2CData(count, bytes.data()) != 0;
    }
    if (adapter.SendSPIData(count, bytes.data()) == 0 || adapter.GetNumReceiveChars() != count) {
        return false;
    }
    for (std::size_t i = 0; i < std::min(taken.size(), static_cast<std::size_t>(count)); ++i) {
        taken[i] = VARIANT::Byte(adapter.GetReceiveBuffer()[i]);
    }
    if (!taken.empty()) {
        StoreReceived(*receive, taken);
    }
    return true;
}

bool CKEDAAdapterSettings::OLESendSPIData(std::int16_t count, const VARIANT& transmit,
                                          const VARIANT& receive) {
    if (Current() == nullptr) {
        return false;
    }
    return Transfer(0, count, transmit, &receive) || MethodFailed("KEDA_SendSPIData");
}

bool CKEDAAdapterSettings::OLESendI2CData(std::int16_t slaveAddress, std::int16_t count,
                                          const VARIANT& data) {
    CKEDAAdapter* adapter = Current();
    if (adapter == nullptr) {
        return false;
    }
    const bool done = adapter->SetSlaveAddress(slaveAddress) != 0 && Transfer(1, count, data, nullptr);
    return done || MethodFailed("KEDA_SendI2CData");
}

bool CKEDAAdapterSettings::AddToArray(const char* method, const CString& name, bool stereo,
                                      const std::function<short()>& add) {
    if (Current() == nullptr) {
        return false;
    }
    kalvio::PeripheralNetwork& network = *kalvio::CurrentPeripheralNetwork();
    CChannelArray* array = network.GetChannelArray(name.c_str());
    short code = KVNET_ERR_ARRAY_NOT_DEFINED;
    if (array != nullptr) {
        code = (array->IsStereoArray() != 0) == stereo ? add() : short{KVNET_ERR_STEREO_MISMATCH};
    }
    if (code != KVNET_OK) {
        network.ReportMethodError(method, GetErrorMessageID(code), kalvio::kNoParameterText);
    }
    return code == KVNET_OK;
}

bool CKEDAAdapterSettings::OLEAddToArray(std::int16_t address, std::int16_t bus, std::int16_t group,
                                         CString name) {
    return AddToArray("KEDA_AddToArray", name, false, [&] {
        return AddBusGroupToArray(name.c_str(), static_cast<std::uint8_t>(address),
                                  static_cast<std::uint8_t>(bus), static_cast<std::uint8_t>(group));
    });
}

bool CKEDAAdapterSettings::OLEAddToStereoArray(std::int16_t address, std::int16_t group, CString name) {
    return AddToArray("KEDA_AddToStereoArray", name, true, [&] {
        return AddGroupToStereoArray(name.c_str(), static_cast<std::uint8_t>(address),
                                     static_cast<std::uint8_t>(group));
    });
}

const kalvio::DispatchTable& CKEDAAdapterSettings::GetDispatchMap() const {
    using Short = std::int16_t;
    using Long = std::int32_t;
    using A = Adapter;
    static const kalvio::DispatchTable kTable{
        Held<bool>("KEDA_EnableGenerator", GetInverse<&A::GetGenBypass>, SetInverse<&A::SetGenBypass>,
                   {kRelay}),
        Held<bool>("KEDA_EnableAnalyzer", GetInverse<&A::GetAnaBypass>, SetInverse<&A::SetAnaBypass>,
                   {kRelay}),
        Held<bool>("KEDA_AudioOn", GetOne<&A::GetAudioOn>, SetOne<&A::SetAudioOn>, {kIO}),
        Held<Short>("KEDA_AudioVoltage", GetOne<&A::GetAudioVoltageSelect>,
                    SetKeepingOutputs<&A::SetAudioVoltageSelect>, {kIO}),
        Constant("KEDA_VSEL_1V8", 0),
        Constant("KEDA_VSEL_2V5", 1),
        Constant("KEDA_VSEL_3V3", 2),
        Constant("KEDA_VSEL_5V0_CMOS", 3),
        Constant("KEDA_VSEL_5V0_TTL", 4),
        Held<bool>("KEDA_ControlOn", GetOne<&A::GetCtrlOn>, SetOne<&A::SetCtrlOn>, {kIO}),
        Held<Short>("KEDA_ControlVoltage", GetOne<&A::GetCtrlVoltageSelect>,
                    SetKeepingOutputs<&A::SetCtrlVoltageSelect>, {kIO}),
        Held<Short>("KEDA_SlotLength", GetOf<&A::GetSlotLength>, SetOf<&A::SetSlotLength>, {kFormat}),
        Held<bool>("KEDA_LSBFirst", GetOf<&A::GetLSBFirst>, SetOf<&A::SetLSBFirst>, {kFormat}),
        Held<Short>("KEDA_LeadPadLength", GetOf<&A::GetLeadPadLength>, SetOf<&A::SetLeadPadLength>,
                    {kFormat}),
        Held<Short>("KEDA_DataLength", GetOf<&A::GetDataLength>, SetOf<&A::SetDataLength>, {kFormat}),
        Shown<Short>("KEDA_TrailPadLength", GetOf<&A::GetTrailPadLength>),
        Held<Short>("KEDA_SlotsPerWire", GetOf<&A::GetSubChannelsPerWire>, SetOf<&A::SetSubChannelsPerWire>,
                    {kFormat}),
        Held<bool>("KEDA_SignExtend", GetOf<&A::GetSignExtend>, SetOf<&A::SetSignExtend>, {kFormat}),
        Held<Short>("KEDA_SerialClockDir", GetOf<&A::GetSerialClockDir>, SetOf<&A::SetSerialClockDir>,
                    kClockDirection),
        Constant("KEDA_CLOCKDIR_NONE", CLOCKDIR_NONE),
        Constant("KEDA_CLOCKDIR_IN", CLOCKDIR_IN),
        Constant("KEDA_CLOCKDIR_OUT", CLOCKDIR_OUT),
        Held<bool>("KEDA_FrameClockInvert", GetOf<&A::GetFrameClockInvert>, SetOf<&A::SetFrameClockInvert>,
                   {kClocks}),
        Held<bool>("KEDA_FrameClock1Bit", GetOf<&A::GetFrameClock1Bit>, SetOf<&A::SetFrameClock1Bit>,
                   {kClocks}),
        Held<bool>("KEDA_FrameClockEarly", GetOf<&A::GetFrameClockEarly>, SetOf<&A::SetFrameClockEarly>,
                   {kClocks}),
        Shown<Long>("KEDA_FrameClockFreq", GetMeasured<&A::GetFrameClockFreq>),
        Held<bool>("KEDA_BitClockInvert", GetOf<&A::GetBitClockInvert>, SetOf<&A::SetBitClockInvert>,
                   {kClocks}),
        Shown<Long>("KEDA_BitClockFreq", GetMeasured<&A::GetBitClockFreq>),
        Held<Short>("KEDA_MasterClockDir", GetOf<&A::GetMasterClockDir>, SetOf<&A::SetMasterClockDir>,
                    kClockDirection),
        Held<Short>("KEDA_MasterClockMultiplier", GetOf<&A::GetMasterClockMultiplier>,
                    SetOf<&A::SetMasterClockMultiplier>, {kClocks}),
        Shown<Long>("KEDA_MasterClockFreq", GetMeasured<&A::GetMasterClockFreq>),
        Held<Short>("KEDA_Delay", GetOf<&A::GetDelay>, SetOf<&A::SetDelay>, {kDelay}),
        Held<bool>("KEDA_SPIClockPolarity", GetOne<&A::GetSPIClockPolarity>, SetOne<&A::SetSPIClockPolarity>,
                   {kControl}),
        Held<bool>("KEDA_SPIClockPhase", GetOne<&A::GetSPIClockPhase>, SetOne<&A::SetSPIClockPhase>,
                   {kControl}),
        Constant("KEDA_ROUTING_OFF", ROUTING_OFF),
        Constant("KEDA_ROUTING_A", ROUTING_A),
        Constant("KEDA_ROUTING_B", ROUTING_B),
        Constant("KEDA_GROUP_GENERATOR", GROUP_GENERATOR),
        Constant("KEDA_GROUP_ANALYZER", GROUP_ANALYSER),
        Method(kSetCurrent, &Document::OLESetCurrentDevice),
        SubObject("Generator", &Document::OLEGetGenerator),
        SubObject("Analyzer", &Document::OLEGetAnalyzer),
        Method("KEDA_SetGeneratorRouting", &Document::OLESetGeneratorRouting),
        Method("KEDA_SetAnalyzerRouting", &Document::OLESetAnalyzerRouting),
        Method("KEDA_SendSPIData", &Document::OLESendSPIData),
        Method("KEDA_SendI2CData", &Document::OLESendI2CData),
        Method("KEDA_AddToArray", &Document::OLEAddToArray),
        Method("KEDA_AddToStereoArray", &Document::OLEAddToStereoArray),
    };
    return kTable;
}

void CKEDAAdapterSettings::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    constexpr int kFirstItem = 11030;
    using enum kalvio::BrowserKind;
    struct Entry {
        unsigned text;
        kalvio::BrowserKind kind;
    };
    constexpr Entry kEntries[] = {
        {kTextSetCurrent, Method},
        {kTextEnableGenerator, Property},
        {kTextEnableAnalyzer, Property},
        {kTextAudioOn, Property},
        {kTextAudioVoltage, Property},
        {kTextControlOn, Property},
        {kTextControlVoltage, Property},
        {kTextSlotLength, Property},
        {kTextLsbFirst, Property},
        {kTextLeadPad, Property},
        {kTextDataLength, Property},
        {kTextTrailPad, Property},
        {kTextSlotsPerWire, Property},
        {kTextSignExtend, Property},
        {kTextSerialClockDir, Property},
        {kTextFrameClockInvert, Property},
        {kTextFrameClock1Bit, Property},
        {kTextFrameClockEarly, Property},
        {kTextFrameClockFreq, Property},
        {kTextBitClockInvert, Property},
        {kTextBitClockFreq, Property},
        {kTextMasterClockDir, Property},
        {kTextMultiplier, Property},
        {kTextMasterClockFreq, Property},
        {kTextDelay, Property},
        {kTextSetGeneratorRouting, Method},
        {kTextSetAnalyzerRouting, Method},
        {kTextSpiPolarity, Property},
        {kTextSpiPhase, Property},
        {kTextSendSpi, Method},
        {kTextSendI2c, Method},
        {kTextAddToArray, Method},
        {kTextAddToStereoArray, Method},
        {kTextGenerator, Property},
        {kTextAnalyzer, Property},
    };
    int item = kFirstItem;
    for (const Entry& entry : kEntries) {
        tree->AddEntry(parent, kalvio::LoadText(entry.text), item++, entry.kind);
    }
}
