#include "hardware/KvNetFrame.h"

#include <algorithm>
#include <numeric>

namespace kalvio {

namespace {

constexpr std::uint8_t kChecksumBase = 0x55;
constexpr std::uint8_t kAnswer = 0xAA;
constexpr std::uint8_t kNoAnswer = 0xA5;

} // namespace

std::uint8_t CalculateChecksum(const std::uint8_t* frame, int length) {
    if (length - 2 < 2) {
        return kChecksumBase;
    }
    return static_cast<std::uint8_t>(kChecksumBase - std::accumulate(frame + 1, frame + length - 2, 0));
}

std::uint8_t GetTerminator(std::uint8_t address, bool useResponses) {
    return address != kKvNetBroadcast && useResponses ? kAnswer : kNoAnswer;
}

std::size_t BuildKvNetFrame(std::uint8_t* frame, std::uint8_t address, std::uint8_t command,
                            const std::uint8_t* data, std::size_t length, bool useResponses) {
    if (length > kKvNetLongestData) {
        return 0;
    }
    const std::size_t whole = length + kKvNetFramingBytes;
    frame[0] = kKvNetStart;
    frame[1] = address;
    frame[2] = static_cast<std::uint8_t>(length);
    frame[3] = command;
    std::copy_n(data, length, frame + kKvNetDataAt);
    frame[whole - 2] = CalculateChecksum(frame, static_cast<int>(whole));
    frame[whole - 1] = GetTerminator(address, useResponses);
    return whole;
}

} // namespace kalvio
