#include "bench/trace/AdapterFrames.h"

#include "platform/Text.h"

#include <algorithm>
#include <array>

namespace kalvio::bench {

namespace {

constexpr std::uint8_t kStatus = 0xC0;
constexpr std::uint8_t kSpi = 0xCA;
constexpr std::uint8_t kI2c = 0xCB;
constexpr std::uint8_t kRates = 0xCD;

constexpr std::array kSlotCounts{2, 4, 8, 16};
constexpr std::array kSlotBits{8, 16, 24, 32};
constexpr std::array kMultipliers{64, 96, 128, 192, 256, 384, 512, 64};
constexpr std::array kRateHz{0, 32000, 44100, 48000, 88200, 96000, 176400, 192000};
constexpr std::array kDelayNs{0, 35, 28, 21, 14, 7, 0, -7};

// Some bits of one data byte. Without values the code itself is shown, eight bits of slots in hex.
struct Field {
    const char* name;
    std::size_t byte;
    unsigned shift;
    unsigned width;
    std::span<const int> values{};
    bool hex = false;
};

constexpr Field kRelayFields[] = {
    {"reference", 0, 0, 1}, {"analyser", 0, 1, 1}, {"generator through the adapter", 0, 2, 1}};
constexpr Field kIoFields[] = {
    {"audio voltage", 0, 0, 3}, {"audio on", 0, 3, 1}, {"control voltage", 0, 4, 3}, {"control on", 0, 7, 1}};
constexpr Field kGenRoutingFields[] = {{"routed 8-15", 0, 0, 8, {}, true},
                                       {"routed 0-7", 1, 0, 8, {}, true},
                                       {"B 8-15", 2, 0, 8, {}, true},
                                       {"B 0-7", 3, 0, 8, {}, true}};
constexpr Field kAnaRoutingFields[] = {{"A", 0, 0, 8}, {"B", 1, 0, 8}};
constexpr Field kFormatFields[] = {{"slots per wire", 0, 0, 2, kSlotCounts},
                                   {"LSB first", 0, 3, 1},
                                   {"slot length", 0, 4, 2, kSlotBits},
                                   {"sign extend", 0, 7, 1},
                                   {"lead pad", 1, 0, 8},
                                   {"trail pad", 2, 0, 8}};
constexpr Field kClockFields[] = {{"multiplier", 0, 0, 3, kMultipliers},
                                  {"master clock in", 0, 6, 1},
                                  {"master clock off", 0, 7, 1},
                                  {"measured Hz", 1, 0, 3, kRateHz},
                                  {"frame invert", 1, 3, 1},
                                  {"frame early", 1, 4, 1},
                                  {"frame 1 bit", 1, 5, 1},
                                  {"bit invert", 1, 6, 1},
                                  {"serial clocks in", 1, 7, 1}};
constexpr Field kControlFields[] = {{"I2C", 0, 0, 1}, {"phase", 0, 1, 1}, {"polarity", 0, 2, 1}};
constexpr Field kDelayFields[] = {{"generator ns", 0, 0, 3, kDelayNs}, {"analyser ns", 0, 4, 3, kDelayNs}};

// In the order in which the status tells them.
struct RegisterGroup {
    std::uint8_t command;
    const char* name;
    std::size_t bytes;
    std::span<const Field> fields;
};

constexpr RegisterGroup kGroups[] = {
    {0xC1, "relays", 1, kRelayFields},
    {0xC2, "I/O", 1, kIoFields},
    {0xC3, "generator routing", 4, kGenRoutingFields},
    {0xC4, "generator format", 3, kFormatFields},
    {0xC5, "generator clocks", 2, kClockFields},
    {0xC6, "analyser routing", 2, kAnaRoutingFields},
    {0xC7, "analyser format", 3, kFormatFields},
    {0xC8, "analyser clocks", 2, kClockFields},
    {0xC9, "control mode", 1, kControlFields},
    {0xCE, "delays", 1, kDelayFields},
};
constexpr std::size_t kStatusBytes = 20;

std::string DescribeField(const Field& field, std::span<const std::uint8_t> data) {
    const unsigned code = data[field.byte] >> field.shift & ((1U << field.width) - 1U);
    const int value = field.values.empty() ? static_cast<int>(code) : field.values[code];
    return Format(field.hex ? "%s 0x%02X" : "%s %d", field.name, value);
}

std::string DescribeGroup(const RegisterGroup& group, std::span<const std::uint8_t> data) {
    std::string text = group.name;
    const char* separator = ": ";
    for (const Field& field : group.fields) {
        text += separator + DescribeField(field, data);
        separator = ", ";
    }
    return text;
}

std::string DescribeStatus(std::span<const std::uint8_t> data) {
    std::string text;
    for (const RegisterGroup& group : kGroups) {
        text += (text.empty() ? "" : "; ") + DescribeGroup(group, data.first(group.bytes));
        data = data.subspan(group.bytes);
    }
    return text;
}

std::string DescribeRates(std::uint8_t codes) {
    return Format("frame clocks: generator %d Hz, analyser %d Hz", kRateHz[codes & 7U],
                  kRateHz[codes >> 4U & 7U]);
}

std::string DescribeBytes(std::string text, std::span<const std::uint8_t> data) {
    for (const std::uint8_t byte : data) {
        text += Format(" %02X", byte);
    }
    return text;
}

} // namespace

std::string DecodeAdapterFrame(std::uint8_t command, std::span<const std::uint8_t> data) {
    switch (command) {
    case kStatus:
        return data.empty() ? "adapter status" : data.size() == kStatusBytes ? DescribeStatus(data) : "";
    case kRates:
        return data.empty() ? "frame clocks" : data.size() == 1 ? DescribeRates(data[0]) : "";
    case kSpi:
        return DescribeBytes("SPI", data);
    case kI2c:
        return data.empty() ? "I2C" : DescribeBytes(Format("I2C to 0x%02X:", data[0] >> 1U), data.subspan(1));
    default:
        break;
    }
    const auto* const group = std::ranges::find(kGroups, command, &RegisterGroup::command);
    if (group == std::end(kGroups) || (!data.empty() && data.size() != group->bytes)) {
        return {};
    }
    return data.empty() ? group->name : DescribeGroup(*group, data);
}

} // namespace kalvio::bench
