#include "hardware/link/FrameExchange.h"

#include "platform/formats/Endian.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace kalvio {

namespace {

constexpr std::uint16_t kCommandEndpoint = 2;
constexpr std::uint32_t kFrameMagic = 0x0000ABCD;
constexpr std::uint32_t kRefused = 0x0000B00B;

// Offsets in the response.
constexpr std::size_t kStatusAt = 0;
constexpr std::size_t kEchoAt = 4;
constexpr std::size_t kErrorAt = 8;

void FillHeader(const UsbExchange& exchange) {
    PutBig32(exchange.header, kFrameMagic);
    PutBig32(exchange.header + 4, exchange.command);
    PutBig32(exchange.header + 8, exchange.outLength);
    PutBig32(exchange.header + 12, exchange.inLength);
}

// Big-endian bytes become an integer of the host, in place; the integer.
std::uint32_t ToHostInPlace32(std::uint8_t* at) {
    const std::uint32_t value = GetBig32(at);
    std::memcpy(at, &value, sizeof value);
    return value;
}

std::uint16_t ToHostInPlace16(std::uint8_t* at) {
    const std::uint16_t value = GetBig16(at);
    std::memcpy(at, &value, sizeof value);
    return value;
}

// Moves the data chunk by chunk, the remainder last; false at the first that fails.
template<typename Byte, typename Move>
bool MoveInChunks(std::span<Byte> data, Move move) {
    while (!data.empty()) {
        const auto chunk = data.first(std::min<std::size_t>(kBulkChunkBytes, data.size()));
        if (!move(chunk)) {
            return false;
        }
        data = data.subspan(chunk.size());
    }
    return true;
}

} // namespace

ExchangeOutcome FrameExchange::Run(const UsbExchange& exchange) {
    FillHeader(exchange);
    if (!m_requests.Write({exchange.header, exchange.headerLength})) {
        ++m_linkErrors;
        m_requests.ResetEndpoint(kCommandEndpoint);
        return LinkFailure::Write;
    }
    if (!MoveInChunks(std::span(exchange.outData, exchange.outLength),
                      [this](auto chunk) { return m_requests.Write(chunk); })) {
        return AfterFailure(LinkFailure::Write);
    }
    if (!m_requests.Read({exchange.response, exchange.responseLength})) {
        return AfterFailure(LinkFailure::Read);
    }
    const ExchangeOutcome outcome = CheckResponse(exchange);
    if (outcome.HasFailed()) {
        return outcome;
    }
    return MoveInChunks(std::span(exchange.inData, exchange.inLength),
                        [this](auto chunk) { return m_requests.Read(chunk); })
               ? outcome
               : AfterFailure(LinkFailure::Read);
}

ExchangeOutcome FrameExchange::CheckResponse(const UsbExchange& exchange) {
    if (ToHostInPlace32(exchange.response + kEchoAt) != exchange.command) {
        ++m_linkErrors;
        return AfterFailure(LinkFailure::WrongEcho);
    }
    if (ToHostInPlace32(exchange.response + kStatusAt) != kRefused) {
        return CommandAccepted{};
    }
    ++m_linkErrors;
    return UnitRefusal{ToHostInPlace16(exchange.response + kErrorAt)};
}

ExchangeOutcome FrameExchange::AfterFailure(LinkFailure failure) {
    if (!m_requests.ResetEndpoint(kCommandEndpoint)) {
        ++m_linkErrors;
    }
    return failure;
}

} // namespace kalvio
