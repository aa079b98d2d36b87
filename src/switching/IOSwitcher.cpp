#include "switching/IOSwitcher.h"

#include "peripheral_network/bus/KvNetErrors.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "switching/SwitcherCommands.h"

#include <algorithm>
#include <utility>

namespace {

using namespace kalvio;

constexpr std::uint8_t kFlagBits = kChannelBalanced | kChannelLoaded;
constexpr unsigned kRelaysInGroup = 8;
constexpr std::size_t kBusBytes = 3; // group X, group Y, flags
constexpr std::size_t kFlagsByte = 2;
constexpr short kHighestChannel = 2048;
constexpr std::uint8_t kAllOfA = 0x55; // the relays of pairs on bus A
constexpr std::uint8_t kAllOfB = 0xAA;

// What a frame carries.
enum class Form { Bus, BothBuses, Group, Relay, Flags };
// How the relays of masks lie: one against all others, or all alike.
enum class Relays { One, All };

// One operation.
struct Operation {
    const char* name; // in the trace
    Form form;
    Relays relays = Relays::All;
    bool pair = false;                           // both buses: in one frame, or one after the other
    std::array<std::uint8_t, 2> all{0xFF, 0xFF}; // of bus A and bus B
    std::uint8_t flag = 0;                       // that it switches
};

enum Row : std::size_t {
    kBusExclusive,
    kBusGroupExclusive,
    kBusAll,
    kBusGroupAll,
    kBusChannel,
    kBusBalance,
    kBusLoad,
    kPairExclusive,
    kPairGroupExclusive,
    kPairAll,
    kPairGroupAll,
    kPairChannel,
    kPairBalance,
    kPairLoad,
};

constexpr Operation kOperations[] = {
    {"CIOSwitcher::BusExclusiveChannel\n", Form::Bus, Relays::One},
    {"CIOSwitcher::BusGroupExclusiveChannel\n", Form::Group, Relays::One},
    {"CIOSwitcher::BusAll\n", Form::Bus},
    {"CIOSwitcher::BusGroupAll\n", Form::Group},
    {"CIOSwitcher::BusChannel\n", Form::Relay},
    {.name = "CIOSwitcher::BusBalance\n", .form = Form::Flags, .flag = kChannelBalanced},
    {.name = "CIOSwitcher::BusLoad\n", .form = Form::Flags, .flag = kChannelLoaded},
    {"CIOSwitcher::StereoPairExclusiveChannel\n", Form::BothBuses, Relays::One, true, {kAllOfA, kAllOfB}},
    {"CIOSwitcher::StereoPairGroupExclusiveChannel\n", Form::Group, Relays::One, true},
    {"CIOSwitcher::StereoPairAll\n", Form::BothBuses, Relays::All, true, {kAllOfA, kAllOfB}},
    {"CIOSwitcher::StereoPairGroupAll\n", Form::Group, Relays::All, true, {kAllOfA, kAllOfB}},
    {"CIOSwitcher::StereoPairChannel\n", Form::Relay, Relays::All, true},
    {.name = "CIOSwitcher::StereoPairBalance\n", .form = Form::Flags, .pair = true, .flag = kChannelBalanced},
    {.name = "CIOSwitcher::StereoPairLoad\n", .form = Form::Flags, .pair = true, .flag = kChannelLoaded},
};

// What an operation is called with.
struct Selection {
    std::uint8_t bus = 0;
    std::uint8_t group = 0;
    std::uint8_t channel = 0;
    std::uint8_t partner = 0;
    std::uint8_t flags = 0;
    std::uint8_t on = 0;
};

// One frame of an operation, and how its answer is judged.
struct Frame {
    KvNetCommand command;
    std::array<std::uint8_t, 2 * kBusBytes> data{};
    std::uint8_t echoed = 0;      // a bit for each data byte that the answer must repeat
    std::size_t echoAt = 0;       // where the first data byte stands in the answer
    std::uint8_t bus = kAllBuses; // told to views
    std::uint8_t group = kAllGroups;
};

std::uint8_t RelayBit(std::uint8_t channel) {
    return channel < kRelaysInGroup ? static_cast<std::uint8_t>(1U << channel) : std::uint8_t{0};
}

std::uint8_t Other(std::uint8_t bus) {
    return bus == 0 ? 1 : 0;
}

std::size_t PlaceOf(std::uint8_t group) {
    return group != 0 ? 1 : 0;
}

// The masks of group X and group Y of one bus.
std::array<std::uint8_t, 2> Masks(const Operation& operation, const Selection& selection, unsigned bus) {
    const std::uint8_t all = operation.all[bus];
    const bool on = selection.on != 0;
    if (operation.relays == Relays::All) {
        const std::uint8_t mask = on ? all : std::uint8_t{0};
        return {mask, mask};
    }
    const std::uint8_t relay = RelayBit(operation.pair && bus != 0 ? selection.partner : selection.channel);
    std::array<std::uint8_t, 2> masks;
    masks.fill(on ? std::uint8_t{0} : all); // the other group
    masks[PlaceOf(selection.group)] = on ? relay : static_cast<std::uint8_t>(all & ~relay);
    return masks;
}

Frame BusFrame(const Operation& operation, const Selection& selection) {
    const auto masks = Masks(operation, selection, selection.bus != 0 ? 1 : 0);
    const bool one = operation.relays == Relays::One;
    Frame frame{.command = OnBus(kSwitcherSetBus, selection.bus), .bus = selection.bus};
    frame.data = {masks[0], masks[1], static_cast<std::uint8_t>(selection.flags & kFlagBits)};
    frame.echoed = static_cast<std::uint8_t>(one ? 1U << PlaceOf(selection.group) : 0b011U);
    frame.group = one ? selection.group : kAllGroups;
    return frame;
}

Frame BothBusesFrame(const Operation& operation, const Selection& selection) {
    const auto a = Masks(operation, selection, 0);
    const auto b = Masks(operation, selection, 1);
    const auto flags = static_cast<std::uint8_t>(selection.flags & kFlagBits);
    const bool one = operation.relays == Relays::One;
    Frame frame{.command = kSwitcherSetBothBuses};
    frame.data = {a[0], a[1], flags, b[0], b[1], flags};
    frame.echoed = static_cast<std::uint8_t>(one ? 0b001001U << PlaceOf(selection.group) : 0b011011U);
    frame.group = one ? selection.group : kAllGroups;
    return frame;
}

Frame GroupFrame(const Operation& operation, const Selection& selection) {
    const std::size_t group = PlaceOf(selection.group);
    Frame frame{.command = OnBus(kSwitcherSetGroup, selection.bus), .bus = selection.bus};
    frame.command.code = static_cast<std::uint8_t>(frame.command.code + 2 * group);
    frame.data[0] = Masks(operation, selection, selection.bus != 0 ? 1 : 0)[group];
    frame.echoed = 0b1;
    frame.group = selection.group;
    return frame;
}

Frame RelayFrame(const Selection& selection) {
    const KvNetCommand& command = selection.on != 0 ? kSwitcherRelayOn : kSwitcherRelayOff;
    Frame frame{.command = OnBus(command, selection.bus), .bus = selection.bus, .group = selection.group};
    frame.data[0] =
        static_cast<std::uint8_t>(selection.channel + (selection.group != 0 ? kRelaysInGroup : 0));
    return frame;
}

Frame FlagsFrame(const Operation& operation, const Selection& selection) {
    Frame frame{.command = OnBus(kSwitcherSetFlags, selection.bus), .bus = selection.bus};
    const unsigned others = selection.flags & kFlagBits & ~unsigned{operation.flag};
    frame.data[0] = static_cast<std::uint8_t>(others | (selection.on != 0 ? operation.flag : 0U));
    frame.echoed = 0b1;
    frame.echoAt = kFlagsByte;
    return frame;
}

Frame MakeFrame(const Operation& operation, const Selection& selection) {
    switch (operation.form) {
    case Form::Bus:
        return BusFrame(operation, selection);
    case Form::BothBuses:
        return BothBusesFrame(operation, selection);
    case Form::Group:
        return GroupFrame(operation, selection);
    case Form::Relay:
        return RelayFrame(selection);
    case Form::Flags:
        break;
    }
    return FlagsFrame(operation, selection);
}

STRUCT_RESPONSE_RELAY_STATUS_BUS BusAnswer(const KvNetExchange& exchange) {
    const auto bytes = exchange.AnswerFrame();
    return {bytes[0], bytes[1], bytes[2], bytes[3], bytes[4], bytes[5], bytes[6], bytes[7], bytes[8]};
}

bool IsRelayCommand(std::uint8_t code) {
    return code >= kSwitcherRelayOn.code && code < kSwitcherGetBus.code;
}

bool IsAnswered(const Frame& frame, const KvNetExchange& exchange) {
    if (IsRelayCommand(frame.command.code)) {
        const STRUCT_COMMAND_RELAY_ADDREMOVE_BUS sent{.address = exchange.Address(),
                                                      .dataLength = frame.command.dataBytes,
                                                      .command = frame.command.code,
                                                      .channel = frame.data[0]};
        const bool remove = frame.command.code >= kSwitcherRelayOff.code;
        return AddRemoveResponseMatches(sent, BusAnswer(exchange), remove ? 1 : 0) != 0;
    }
    const auto answer = exchange.AnswerData();
    for (std::size_t place = 0; place < frame.command.dataBytes; ++place) {
        const bool echoed = (frame.echoed >> place & 1U) != 0;
        if (echoed && answer[place + frame.echoAt] != frame.data[place]) {
            return false;
        }
    }
    return true;
}

enum class Tell { No, Yes };

short SendFrame(KvNetExchange& exchange, const Frame& frame, const char* name, Tell tell = Tell::Yes) {
    const auto data = std::span(frame.data).first(frame.command.dataBytes);
    if (const short code = exchange.Send(frame.command, data, name); code != KVNET_OK) {
        return code;
    }
    if (tell == Tell::Yes) {
        TellSwitcherChanged(exchange.Address(), frame.bus, frame.group);
    }
    return IsAnswered(frame, exchange) ? short{KVNET_OK} : short{KVNET_ERR_RESPONSE_MISMATCH};
}

// The second frame of a pair goes to the other bus.
short RunPair(KvNetExchange& exchange, const Operation& operation, Selection selection) {
    const bool flags = operation.form == Form::Flags;
    const short code =
        SendFrame(exchange, MakeFrame(operation, selection), operation.name, flags ? Tell::No : Tell::Yes);
    if (code != KVNET_OK) {
        return code;
    }
    selection.bus = Other(selection.bus);
    selection.channel ^= 1U;
    Frame frame = MakeFrame(operation, selection);
    frame.bus = flags ? kAllBuses : frame.bus;
    return SendFrame(exchange, frame, nullptr);
}

// The address is the one that the device had at the start: what is told to views may turn the object to
// another.
short Run(Row row, std::uint8_t address, Selection selection) {
    if (IsValidAddress(address, 0) == 0) {
        return KVNET_ERR_PARAMETER;
    }
    const Operation& operation = kOperations[row];
    if (operation.pair && operation.relays == Relays::One && selection.channel % 2 != 0) {
        std::swap(selection.channel, selection.partner);
    }
    KvNetExchange exchange(address);
    if (operation.pair && operation.form != Form::BothBuses) {
        return RunPair(exchange, operation, selection);
    }
    return SendFrame(exchange, MakeFrame(operation, selection), operation.name);
}

} // namespace

int CIOSwitcher::CanDownloadFirmware() {
    return 0;
}

int CIOSwitcher::IsBusValid(short bus) {
    return bus == 0 || bus == 1 ? 1 : 0;
}

int CIOSwitcher::IsGroupValid(short group) {
    return group == 0 || group == 1 ? 1 : 0;
}

int CIOSwitcher::IsChannelValid(short channel) {
    return channel >= 1 && channel <= kHighestChannel ? 1 : 0;
}

short CIOSwitcher::GetBusStatus(std::uint8_t bus, STRUCT_RESPONSE_RELAY_STATUS_BUS* state) {
    if (IsValidAddress(GetAddress(), 0) == 0) {
        return KVNET_ERR_PARAMETER;
    }
    KvNetExchange exchange(GetAddress());
    const short code = exchange.Send(OnBus(kSwitcherGetBus, bus), {}, "CIOSwitcher::GetBusStatus\n");
    if (code == KVNET_OK && state != nullptr) {
        *state = BusAnswer(exchange);
    }
    return code;
}

int CIOSwitcher::ResetChannelArrayDevice() {
    return ResetDevice(1);
}

short CIOSwitcher::BusExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                       std::uint8_t flags, std::uint8_t on) {
    return Run(kBusExclusive, GetAddress(),
               {.bus = bus, .group = group, .channel = channel, .flags = flags, .on = on});
}

short CIOSwitcher::BusGroupExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                            std::uint8_t on) {
    return Run(kBusGroupExclusive, GetAddress(), {.bus = bus, .group = group, .channel = channel, .on = on});
}

short CIOSwitcher::BusAll(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) {
    return Run(kBusAll, GetAddress(), {.bus = bus, .flags = flags, .on = on});
}

short CIOSwitcher::BusGroupAll(std::uint8_t bus, std::uint8_t group, std::uint8_t on) {
    return Run(kBusGroupAll, GetAddress(), {.bus = bus, .group = group, .on = on});
}

short CIOSwitcher::BusChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel, std::uint8_t on) {
    return Run(kBusChannel, GetAddress(), {.bus = bus, .group = group, .channel = channel, .on = on});
}

short CIOSwitcher::BusBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) {
    return Run(kBusBalance, GetAddress(), {.bus = bus, .flags = flags, .on = on});
}

short CIOSwitcher::BusLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) {
    const std::uint8_t address = GetAddress();
    const short code = Run(kBusLoad, address, {.bus = bus, .flags = flags, .on = on});
    if (code == KVNET_OK) {
        TellLoad(address, bus, on);
    }
    return code;
}

short CIOSwitcher::StereoPairExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                              std::uint8_t partnerChannel, std::uint8_t flags,
                                              std::uint8_t on) {
    return Run(kPairExclusive, GetAddress(),
               {.group = group, .channel = channel, .partner = partnerChannel, .flags = flags, .on = on});
}

short CIOSwitcher::StereoPairGroupExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                                   std::uint8_t partnerChannel, std::uint8_t on) {
    return Run(kPairGroupExclusive, GetAddress(),
               {.group = group, .channel = channel, .partner = partnerChannel, .on = on});
}

short CIOSwitcher::StereoPairAll(std::uint8_t flags, std::uint8_t on) {
    return Run(kPairAll, GetAddress(), {.flags = flags, .on = on});
}

short CIOSwitcher::StereoPairGroupAll(std::uint8_t group, std::uint8_t on) {
    return Run(kPairGroupAll, GetAddress(), {.group = group, .on = on});
}

short CIOSwitcher::StereoPairChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                     std::uint8_t on) {
    return Run(kPairChannel, GetAddress(), {.bus = bus, .group = group, .channel = channel, .on = on});
}

short CIOSwitcher::StereoPairBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) {
    return Run(kPairBalance, GetAddress(), {.bus = bus, .flags = flags, .on = on});
}

short CIOSwitcher::StereoPairLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) {
    const std::uint8_t address = GetAddress();
    const short code = Run(kPairLoad, address, {.bus = bus, .flags = flags, .on = on});
    if (code == KVNET_OK) {
        TellLoad(address, kAllBuses, on);
    }
    return code;
}

void CIOSwitcher::TellLoad(std::uint8_t address, std::uint8_t bus, std::uint8_t on) const {
    if (PeripheralNetwork* network = CurrentPeripheralNetwork(); network != nullptr) {
        network->UpdateLoadStatusForAllArrays(address, bus, on != 0 ? 1 : 0);
    }
}

void* CIOSwitcher::GetChannelArrayDetails() {
    return new CIOSwitcherDetails;
}

int CIOSwitcher::AddChannelToChannelArrayDetails(void* details, ChannelDetails* channel) {
    auto& block = *static_cast<CIOSwitcherDetails*>(details);
    const std::size_t bus = channel->bus != 0 ? 1 : 0;
    std::uint8_t& mask = block.bus[bus][PlaceOf(channel->group)];
    const std::uint8_t relay = RelayBit(channel->channel);
    mask = static_cast<std::uint8_t>(channel->state == 1 ? mask | relay : mask & ~relay);
    block.bus[bus][kFlagsByte] |= channel->flags & kFlagBits;
    block.used[bus] = 1;
    return 1;
}

short CIOSwitcher::UpdateDeviceWithChannelArrayDetails(void* details) {
    if (IsValidAddress(GetAddress(), 0) == 0) {
        return KVNET_ERR_PARAMETER;
    }
    const auto& block = *static_cast<const CIOSwitcherDetails*>(details);
    Frame frame;
    frame.echoed = 0b111111;
    if ((block.used[0] != 0) == (block.used[1] != 0)) {
        frame.command = kSwitcherSetBothBuses;
        std::ranges::copy(block.bus[0], frame.data.begin());
        std::ranges::copy(block.bus[1], frame.data.begin() + kBusBytes);
    } else {
        const unsigned bus = block.used[1] != 0 ? 1 : 0;
        frame.command = OnBus(kSwitcherSetBus, bus);
        std::ranges::copy(block.bus[bus], frame.data.begin());
    }
    KvNetExchange exchange(GetAddress());
    return SendFrame(exchange, frame, "CIOSwitcher::UpdateDeviceWithChannelArrayDetails\n");
}

int CIOSwitcher::GetDCMeasurement(signed char* positiveA, signed char* negativeA, signed char* positiveB,
                                  signed char* negativeB, short* status) {
    if (IsValidAddress(GetAddress(), 0) == 0) {
        return 0;
    }
    KvNetExchange exchange(GetAddress());
    const short code = exchange.Send(kSwitcherGetDC, {}, "CIOSwitcher::GetDCMeasurement\n");
    if (status != nullptr) {
        *status = code;
    }
    if (code != KVNET_OK) {
        return 0;
    }
    signed char* const outputs[] = {positiveA, negativeA, positiveB, negativeB};
    for (std::size_t place = 0; place < std::size(outputs); ++place) {
        if (outputs[place] != nullptr) {
            *outputs[place] = static_cast<signed char>(exchange.AnswerData()[place]);
        }
    }
    return 1;
}
