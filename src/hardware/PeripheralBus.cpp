// Frames of the peripheral bus on their way through the unit.

#include "hardware/Hardware.h"
#include "hardware/KvNetFrame.h"
#include "host/HostApplication.h"
#include "platform/Endian.h"

#include <algorithm>
#include <mutex>

namespace {

// What goes to the unit: frame length, response length, time-out (16 bits), the frame. What comes back:
// status (16 bits), two bytes, the response.
constexpr std::size_t kBlockBytes = 44;
constexpr std::size_t kFrameAt = 4;
constexpr std::size_t kLongestInBlock = kBlockBytes - kFrameAt;
constexpr int kAttempts = 2;

using Block = std::array<std::uint8_t, kBlockBytes>;

} // namespace

std::uint16_t CHardware::SendKvNetCommand(const std::uint8_t* frame, std::uint8_t frameLength,
                                          std::uint8_t* response, std::uint8_t responseLength,
                                          std::uint16_t timeout) {
    if (!m_commands.IsActive()) {
        std::fill_n(response, responseLength, std::uint8_t{0});
        return kalvio::kPeripheralFailed;
    }
    if (frameLength > kLongestInBlock || responseLength > kLongestInBlock) {
        return kalvio::kPeripheralTooLong;
    }
    Block block{frameLength, responseLength};
    kalvio::PutBig16(&block[2], timeout);
    std::copy_n(frame, frameLength, &block[kFrameAt]);

    const std::scoped_lock exchange(m_commands.HardwareAccess());
    Block reply{};
    std::uint16_t status = 0;
    for (int attempt = 0; attempt == 0 || (status != 0 && attempt < kAttempts); ++attempt) {
        if (DoCommand(kalvio::kCommandPeripheralBus, block.size(), block.data(), reply.size(),
                      reply.data()) != 0) {
            return kalvio::kPeripheralFailed;
        }
        status = kalvio::GetBig16(reply.data());
    }
    std::copy_n(&reply[kFrameAt], responseLength, response);
    return status;
}

std::int16_t CHardware::SendKvNetData(std::uint8_t address, std::uint8_t command, std::uint8_t length,
                                      const std::uint8_t* data, std::uint8_t responseLength,
                                      std::uint8_t* response) {
    using namespace kalvio;
    if (length > kKvNetLongestData || responseLength > kKvNetLongestData) {
        return static_cast<std::int16_t>(kPeripheralTooLong);
    }
    CHostApplication& host = GetHostApplication();
    std::fill_n(response, responseLength, std::uint8_t{0});
    if (host.hardware == nullptr) {
        return static_cast<std::int16_t>(kPeripheralFailed);
    }
    std::array<std::uint8_t, kKvNetLongestFrame> frame{};
    std::array<std::uint8_t, kKvNetLongestFrame> answer{};
    const bool useResponses =
        host.kvNet != nullptr ? host.kvNet->UseResponses() != 0 : host.kvNetUseResponses.load();
    const std::size_t frameLength =
        BuildKvNetFrame(frame.data(), address, command, data, length, useResponses);
    const std::uint16_t status =
        host.hardware->SendKvNetCommand(frame.data(), static_cast<std::uint8_t>(frameLength), answer.data(),
                                        static_cast<std::uint8_t>(responseLength + kKvNetFramingBytes), 0);
    if (status == 0) {
        std::copy_n(&answer[kKvNetDataAt], responseLength, response);
    }
    return static_cast<std::int16_t>(status);
}
