#include "bench/trace/SwitcherFrames.h"

#include "platform/Text.h"

namespace kalvio::bench {

namespace {

constexpr std::size_t kBusBytes = 3; // group X, group Y, flags
constexpr std::size_t kDcBytes = 4;
constexpr unsigned kRelaysOfGroup = 8;

std::string BusState(std::span<const std::uint8_t> bytes) {
    return Format("X %02X, Y %02X, flags %02X", bytes[0], bytes[1], bytes[2]);
}

std::string Bus(const BusBytes& frame) {
    return frame.data.size() < kBusBytes ? "" : BusState(frame.data);
}

std::string BothBuses(const BusBytes& frame) {
    if (frame.data.size() < 2 * kBusBytes) {
        return {};
    }
    return "A: " + BusState(frame.data) + ", B: " + BusState(frame.data.subspan(kBusBytes));
}

std::string Relay(const BusBytes& frame) {
    if (frame.data.empty()) {
        return {};
    }
    const unsigned relay = frame.data[0];
    if (relay >= 2 * kRelaysOfGroup) {
        return Format("relay %u", relay);
    }
    return Format("relay %c%u", relay < kRelaysOfGroup ? 'X' : 'Y', relay % kRelaysOfGroup);
}

std::string Mask(const BusBytes& frame) {
    return frame.data.empty() ? "" : Format("mask %02X", frame.data[0]);
}

std::string Flags(const BusBytes& frame) {
    return frame.data.empty() ? "" : Format("flags %02X", frame.data[0]);
}

std::string Voltages(const BusBytes& frame) {
    if (frame.data.size() < kDcBytes) {
        return {};
    }
    const auto volts = [&frame](std::size_t at) { return int{static_cast<std::int8_t>(frame.data[at])}; };
    return Format("A %+d %+d, B %+d %+d", volts(0), volts(1), volts(2), volts(3));
}

constexpr BusCommand kCommands[] = {
    {0x80, "GetBothBuses", nullptr, BothBuses},
    {0x81, "SetBothBuses", BothBuses, BothBuses},
    {0x82, "SetBusA", Bus, Bus},
    {0x83, "SetBusB", Bus, Bus},
    {0x84, "RelayOnA", Relay, Bus},
    {0x85, "RelayOnB", Relay, Bus},
    {0x86, "RelayOffA", Relay, Bus},
    {0x87, "RelayOffB", Relay, Bus},
    {0x88, "GetBusA", nullptr, Bus},
    {0x89, "GetBusB", nullptr, Bus},
    {0x8A, "SetFlagsA", Flags, Bus},
    {0x8B, "SetFlagsB", Flags, Bus},
    {0x8C, "SetGroupAX", Mask, Mask},
    {0x8D, "SetGroupBX", Mask, Mask},
    {0x8E, "SetGroupAY", Mask, Mask},
    {0x8F, "SetGroupBY", Mask, Mask},
    {0x92, "GetDC", nullptr, Voltages},
};

} // namespace

std::span<const BusCommand> SwitcherCommands() {
    return kCommands;
}

} // namespace kalvio::bench
