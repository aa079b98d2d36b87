#include "hardware/PeripheralExchange.h"

#include "hardware/link/Holding.h"
#include "hardware/link/QuietLock.h"
#include "platform/formats/Endian.h"

#include <algorithm>
#include <array>

namespace kalvio {

namespace {

// What goes to the unit: frame length, response length, time-out (16 bits), the frame. What comes back:
// status (16 bits), two bytes, the response.
constexpr std::size_t kBlockBytes = 44;
constexpr std::size_t kTimeoutAt = 2;
constexpr std::size_t kFrameAt = 4;
constexpr std::size_t kLongestInBlock = kBlockBytes - kFrameAt;
constexpr int kAttempts = 2;

std::uint16_t WithoutUnit(std::span<std::uint8_t> response) {
    std::ranges::fill(response, std::uint8_t{0});
    return kPeripheralFailed;
}

} // namespace

// Whether the unit is there shows only once the command was sent: it may be parked while the lock is waited
// for.
std::uint16_t PeripheralExchange::Send(std::span<const std::uint8_t> frame, std::span<std::uint8_t> response,
                                       std::uint16_t timeout) {
    if (!m_commands.IsActive()) {
        return WithoutUnit(response);
    }
    if (frame.size() > kLongestInBlock || response.size() > kLongestInBlock) {
        return kPeripheralTooLong;
    }
    std::array<std::uint8_t, kBlockBytes> block{static_cast<std::uint8_t>(frame.size()),
                                                static_cast<std::uint8_t>(response.size())};
    PutBig16(&block[kTimeoutAt], timeout);
    std::ranges::copy(frame, block.begin() + kFrameAt);

    const Holding exchange(m_commands.HardwareAccess());
    std::array<std::uint8_t, kBlockBytes> reply{};
    std::uint16_t status = 0;
    for (int attempt = 0; attempt == 0 || (status != 0 && attempt < kAttempts); ++attempt) {
        const auto sent = m_commands.DoCommandIfActive(kCommandPeripheralBus, block.size(), block.data(),
                                                       reply.size(), reply.data());
        if (!sent.has_value()) {
            return WithoutUnit(response);
        }
        if (*sent != 0) {
            return kPeripheralFailed;
        }
        status = GetBig16(reply.data());
    }
    std::copy_n(reply.begin() + kFrameAt, response.size(), response.begin());
    return status;
}

} // namespace kalvio
