// The IOSWITCHER_ names, and those of the network and the switchers that scripts reach here as well.

#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/AutomationTable.h"
#include "switching/ChannelArray.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherCommands.h"
#include "switching/SwitcherSettings.h"

#include <array>

using namespace kalvio;
using kalvio::automation::Constant;
using kalvio::automation::Method;
using kalvio::automation::Property;

namespace {

constexpr std::size_t kFlagsByte = 2;

constexpr const char* kSwitcherNames[] = {
    "SWITCHER_ExclusiveChannel", "SWITCHER_NotChannel",        "SWITCHER_AddChannel",
    "SWITCHER_RemoveChannel",    "SWITCHER_ClearChannels",     "SWITCHER_Balance",
    "SWITCHER_DefineArray",      "SWITCHER_DefineStereoArray", "SWITCHER_RemoveArray",
};

bool Refuse(const char* method, unsigned reason, int parameter = kNoParameterText) {
    if (PeripheralNetwork* network = CurrentPeripheralNetwork(); network != nullptr) {
        network->ReportMethodError(method, reason, parameter);
    }
    return false;
}

bool RefuseParameter(const char* method, int parameter) {
    return Refuse(method, kTextReasonParameter, parameter);
}

bool Report(const char* method, short code) {
    return code == KVNET_OK || Refuse(method, GetErrorMessageID(code));
}

// An output that a script may leave out.
void Put(VARIANT* output, const VARIANT& value) {
    if (output != nullptr) {
        *output = value;
    }
}

VARIANT BusState(std::uint8_t x, std::uint8_t y, std::uint8_t flags) {
    return VARIANT::Long(
        static_cast<std::int32_t>(std::uint32_t{x} | std::uint32_t{y} << 8U | std::uint32_t{flags} << 16U));
}

} // namespace

const DispatchTable& CIOSwitcherSettings::GetDispatchMap() const {
    using Document = CIOSwitcherSettings;
    static const DispatchTable kTable = [this] {
        DispatchTable table{
            Property("KVNET_ShowErrorMessages", &Document::OLEGetShowErrorMessages,
                     &Document::OLESetShowErrorMessages),
            Constant("IOSWITCHER_BUS_A", 0),
            Constant("IOSWITCHER_BUS_B", 1),
            Constant("IOSWITCHER_GROUP_X", 0),
            Constant("IOSWITCHER_GROUP_Y", 1),
            Method("KVNET_GetStatus", &Document::OLEGetStatus),
            Method("KVNET_Reset", &Document::OLEReset),
        };
        for (const char* name : kSwitcherNames) {
            DispatchEntry entry = *m_switchers.FindName(name);
            entry.call = [call = entry.call](CCmdTarget& document, std::span<const VARIANT> arguments) {
                return call(static_cast<Document&>(document).m_switchers, arguments);
            };
            table.push_back(std::move(entry));
        }
        table.push_back(Method("IOSWITCHER_GetBusStatus", &Document::OLEGetBusStatus));
        table.push_back(Method("IOSWITCHER_GetFullStatus", &Document::OLEGetFullStatus));
        table.push_back(Method("IOSWITCHER_BusGroupSwitch", &Document::OLEBusGroupSwitch));
        table.push_back(Method("IOSWITCHER_BusLoad", &Document::OLEBusLoad));
        table.push_back(Method("IOSWITCHER_BusBalance", &Document::OLEBusBalance));
        table.push_back(Method("IOSWITCHER_AddToArray", &Document::OLEAddToArray));
        table.push_back(Method("IOSWITCHER_AddToStereoArray", &Document::OLEAddToStereoArray));
        table.push_back(Method("IOSWITCHER_GetBusDC", &Document::OLEGetBusDC));
        return table;
    }();
    return kTable;
}

bool CIOSwitcherSettings::OLEGetShowErrorMessages() {
    const PeripheralNetwork* network = CurrentPeripheralNetwork();
    return network != nullptr && network->GetShowErrorMessages() != 0;
}

void CIOSwitcherSettings::OLESetShowErrorMessages(bool show) {
    if (PeripheralNetwork* network = CurrentPeripheralNetwork(); network != nullptr) {
        network->SetShowErrorMessages(show ? 1 : 0);
    }
}

// The network takes addresses as bytes: what does not fit one is refused here, as it would be there.
bool CIOSwitcherSettings::OLEGetStatus(std::int16_t address, VARIANT* status) {
    if (IsValidAddress(address, 0) == 0) {
        return RefuseParameter("KVNET_GetStatus", kTextParameterAddress);
    }
    PeripheralNetwork* network = CurrentPeripheralNetwork();
    return network != nullptr && network->GetStatus(static_cast<std::uint8_t>(address), status) == KVNET_OK;
}

bool CIOSwitcherSettings::OLEReset(std::int16_t address, bool on, VARIANT* status) {
    if (IsValidAddress(address, 1) == 0) {
        return RefuseParameter("KVNET_Reset", kTextParameterAddress);
    }
    PeripheralNetwork* network = CurrentPeripheralNetwork();
    return network != nullptr &&
           network->Reset(static_cast<std::uint8_t>(address), on ? 1 : 0, status) == KVNET_OK;
}

// The device object for an address that a script gave; null when it was refused.
CIOSwitcher* CIOSwitcherSettings::FindSwitcher(const char* method, std::int16_t address) {
    if (address == KVNET_ADDRESS_NONE) {
        Refuse(method, kTextReasonUnknownDevice);
        return nullptr;
    }
    if (IsValidAddress(address, 0) == 0) {
        RefuseParameter(method, kTextParameterAddress);
        return nullptr;
    }
    return GetIOSwitcher(static_cast<std::uint8_t>(address));
}

bool CIOSwitcherSettings::CheckBus(const char* method, std::int16_t bus) {
    return m_switcher.IsBusValid(bus) != 0 || RefuseParameter(method, kTextParameterBus);
}

bool CIOSwitcherSettings::CheckGroup(const char* method, std::int16_t group) {
    return m_switcher.IsGroupValid(group) != 0 || RefuseParameter(method, kTextParameterGroup);
}

bool CIOSwitcherSettings::OLEGetBusStatus(std::int16_t address, std::int16_t bus, VARIANT* state) {
    constexpr const char* kMethod = "IOSWITCHER_GetBusStatus";
    Put(state, VARIANT::Long(0));
    CIOSwitcher* switcher = FindSwitcher(kMethod, address);
    if (switcher == nullptr || !CheckBus(kMethod, bus)) {
        return false;
    }
    STRUCT_RESPONSE_RELAY_STATUS_BUS answer;
    if (!Report(kMethod, switcher->GetBusStatus(static_cast<std::uint8_t>(bus), &answer))) {
        return false;
    }
    Put(state, BusState(answer.groupX, answer.groupY, answer.flags));
    return true;
}

bool CIOSwitcherSettings::OLEGetFullStatus(std::int16_t address, VARIANT* busA, VARIANT* busB) {
    constexpr const char* kMethod = "IOSWITCHER_GetFullStatus";
    Put(busA, VARIANT::Long(0));
    Put(busB, VARIANT::Long(0));
    const CIOSwitcher* switcher = FindSwitcher(kMethod, address);
    if (switcher == nullptr) {
        return false;
    }
    KvNetExchange exchange(switcher->GetAddress());
    if (!Report(kMethod, exchange.Send(kSwitcherGetBothBuses, {}, "CIOSwitcherSettings::GetFullStatus\n"))) {
        return false;
    }
    const auto answer = exchange.AnswerData();
    Put(busA, BusState(answer[0], answer[1], answer[2]));
    Put(busB, BusState(answer[3], answer[4], answer[5]));
    return true;
}

bool CIOSwitcherSettings::OLEBusGroupSwitch(std::int16_t address, std::int16_t bus, std::int16_t group,
                                            std::int16_t mask) {
    return ChangeBus(address, bus,
                     {.method = "IOSWITCHER_BusGroupSwitch",
                      .trace = "CIOSwitcherSettings::BusGroupSwitch\n",
                      .group = group,
                      .bits = 0xFF,
                      .value = static_cast<std::uint8_t>(mask),
                      .mismatch = kTextParameterMask});
}

bool CIOSwitcherSettings::OLEBusLoad(std::int16_t address, std::int16_t bus, bool load) {
    const bool done = ChangeBus(address, bus,
                                {.method = "IOSWITCHER_BusLoad",
                                 .trace = "CIOSwitcherSettings::BusLoad\n",
                                 .bits = kChannelLoaded,
                                 .value = load ? kChannelLoaded : std::uint8_t{0},
                                 .mismatch = kTextParameterOn});
    if (done) {
        CurrentPeripheralNetwork()->UpdateLoadStatusForAllArrays(
            static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(bus), load ? 1 : 0);
    }
    return done;
}

bool CIOSwitcherSettings::OLEBusBalance(std::int16_t address, std::int16_t bus, bool balance) {
    return ChangeBus(address, bus,
                     {.method = "IOSWITCHER_BusBalance",
                      .trace = "CIOSwitcherSettings::BusBalance\n",
                      .bits = kChannelBalanced,
                      .value = balance ? kChannelBalanced : std::uint8_t{0},
                      .mismatch = kTextParameterOn});
}

// Reads the state of a bus and sends it back changed, everything else as it was read.
bool CIOSwitcherSettings::ChangeBus(std::int16_t address, std::int16_t bus, const BusChange& change) {
    CIOSwitcher* switcher = FindSwitcher(change.method, address);
    if (switcher == nullptr || !CheckBus(change.method, bus)) {
        return false;
    }
    const bool ofGroup = change.group.has_value();
    if (ofGroup && !CheckGroup(change.method, *change.group)) {
        return false;
    }
    const auto busByte = static_cast<std::uint8_t>(bus);
    STRUCT_RESPONSE_RELAY_STATUS_BUS now;
    if (!Report(change.method, switcher->GetBusStatus(busByte, &now))) {
        return false;
    }
    const std::size_t place = ofGroup ? static_cast<std::size_t>(*change.group) : kFlagsByte;
    std::array<std::uint8_t, 3> state{now.groupX, now.groupY, now.flags};
    state[place] = static_cast<std::uint8_t>((state[place] & ~change.bits) | change.value);

    KvNetExchange exchange(static_cast<std::uint8_t>(address));
    if (!Report(change.method, exchange.Send(OnBus(kSwitcherSetBus, busByte), state, change.trace))) {
        return false;
    }
    TellSwitcherChanged(exchange.Address(), busByte,
                        ofGroup ? static_cast<std::uint8_t>(*change.group) : kAllGroups);
    const bool asSent = ((exchange.AnswerData()[place] ^ state[place]) & change.bits) == 0;
    return asSent || Refuse(change.method, kTextReasonFieldMismatch, change.mismatch);
}

bool CIOSwitcherSettings::CheckArray(const char* method, const CString& name, bool stereo) {
    PeripheralNetwork* network = CurrentPeripheralNetwork();
    const CChannelArray* array = network != nullptr ? network->GetChannelArray(name.c_str()) : nullptr;
    if (array == nullptr) {
        return Refuse(method, kTextReasonArrayNotDefined);
    }
    return (array->IsStereoArray() != 0) == stereo || Refuse(method, kTextReasonStereoMismatch);
}

bool CIOSwitcherSettings::OLEAddToArray(std::int16_t address, std::int16_t bus, std::int16_t group,
                                        const CString& array) {
    constexpr const char* kMethod = "IOSWITCHER_AddToArray";
    return FindSwitcher(kMethod, address) != nullptr && CheckBus(kMethod, bus) &&
           CheckGroup(kMethod, group) && CheckArray(kMethod, array, false) &&
           Report(kMethod,
                  AddBusGroupToArray(array.c_str(), static_cast<std::uint8_t>(address),
                                     static_cast<std::uint8_t>(bus), static_cast<std::uint8_t>(group)));
}

bool CIOSwitcherSettings::OLEAddToStereoArray(std::int16_t address, std::int16_t group,
                                              const CString& array) {
    constexpr const char* kMethod = "IOSWITCHER_AddToStereoArray";
    return FindSwitcher(kMethod, address) != nullptr && CheckGroup(kMethod, group) &&
           CheckArray(kMethod, array, true) &&
           Report(kMethod, AddGroupToStereoArray(array.c_str(), static_cast<std::uint8_t>(address),
                                                 static_cast<std::uint8_t>(group)));
}

bool CIOSwitcherSettings::OLEGetBusDC(std::int16_t address, std::int16_t bus, VARIANT* positive,
                                      VARIANT* negative) {
    constexpr const char* kMethod = "IOSWITCHER_GetBusDC";
    Put(positive, VARIANT::Short(0));
    Put(negative, VARIANT::Short(0));
    CIOSwitcher* switcher = FindSwitcher(kMethod, address);
    if (switcher == nullptr || !CheckBus(kMethod, bus)) {
        return false;
    }
    signed char plus = 0;
    signed char minus = 0;
    short code = KVNET_OK;
    const int done = bus == 0 ? switcher->GetDCMeasurement(&plus, &minus, nullptr, nullptr, &code)
                              : switcher->GetDCMeasurement(nullptr, nullptr, &plus, &minus, &code);
    if (done == 0) {
        return Report(kMethod, code);
    }
    Put(positive, VARIANT::Short(plus));
    Put(negative, VARIANT::Short(minus));
    return true;
}
