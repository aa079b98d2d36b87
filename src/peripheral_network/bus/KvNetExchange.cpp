#include "peripheral_network/bus/KvNetExchange.h"

#include "hardware/Hardware.h"
#include "host/HostApplication.h"
#include "peripheral_network/bus/KvNetErrors.h"
#include "peripheral_network/bus/KvNetTrace.h"

#include <algorithm>

namespace kalvio {

short KvNetExchange::Send(const KvNetCommand& command, std::span<const std::uint8_t> data,
                          const char* operation, std::uint16_t timeout) {
    if (data.size() > command.dataBytes) {
        return KVNET_ERR_PARAMETER;
    }
    const CHostApplication& host = GetHostApplication();
    std::array<std::uint8_t, kKvNetLongestData> padded{};
    std::ranges::copy(data, padded.begin());
    std::array<std::uint8_t, kKvNetLongestFrame> frame{};
    const bool useResponses = host.kvNet == nullptr || host.kvNet->UseResponses() != 0;
    const std::size_t length = BuildKvNetFrame(frame.data(), m_address, command.code, padded.data(),
                                               command.dataBytes, useResponses);
    if (operation != nullptr) {
        TraceKvNet(operation);
    }
    TraceKvNetCommand(std::span(frame).first(length));

    m_answer.fill(0);
    m_answerDataBytes = command.answerDataBytes;
    if (host.hardware == nullptr) {
        return KVNET_ERR_HARDWARE;
    }
    const std::size_t answerLength = m_answerDataBytes + kKvNetFramingBytes;
    const auto status = static_cast<short>(
        host.hardware->SendKvNetCommand(frame.data(), static_cast<std::uint8_t>(length), m_answer.data(),
                                        static_cast<std::uint8_t>(answerLength), timeout));
    if (status == KVNET_OK) {
        TraceKvNetResponse(std::span(m_answer).first(answerLength));
    }
    return status;
}

} // namespace kalvio
