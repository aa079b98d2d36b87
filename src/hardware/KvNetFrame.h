#pragma once

// Frames of the peripheral bus: start byte 0x55, address, number of data bytes, command, data, checksum,
// terminator. Pure functions; any thread.

#include "platform/Export.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kalvio {

inline constexpr std::uint8_t kKvNetStart = 0x55;
inline constexpr std::uint8_t kKvNetBroadcast = 255;
inline constexpr std::size_t kKvNetLongestData = 34;
inline constexpr std::size_t kKvNetFramingBytes = 6;
inline constexpr std::size_t kKvNetDataAt = 4;
inline constexpr std::size_t kKvNetLongestFrame = kKvNetLongestData + kKvNetFramingBytes;

// 0x55 less the sum of the bytes from offset 1 to the last data byte; `length` is the whole frame's. 0x55
// for a length that leaves nothing to sum.
[[nodiscard]] std::uint8_t CalculateChecksum(const std::uint8_t* frame, int length);

// 0xAA asks the device to answer, 0xA5 does not. A broadcast is never answered.
[[nodiscard]] std::uint8_t GetTerminator(std::uint8_t address, bool useResponses);

// Builds the whole frame in `frame` (room for length + 6 bytes) from at most 34 bytes of data; its length,
// or 0 for more.
std::size_t BuildKvNetFrame(std::uint8_t* frame, std::uint8_t address, std::uint8_t command,
                            const std::uint8_t* data, std::size_t length, bool useResponses);

} // namespace kalvio
