#include "bench/trace/TraceDecoder.h"

#include "bench/trace/CommandNames.h"
#include "bench/trace/HexText.h"
#include "bench/trace/PeripheralFrames.h"
#include "platform/Text.h"
#include "platform/formats/Endian.h"

#include <algorithm>

namespace kalvio::bench {

namespace {

constexpr std::uint32_t kMagic = 0x0000ABCD;
constexpr std::uint32_t kRefused = 0x0000B00B;
constexpr std::size_t kHeaderBytes = 16; // before the parameters
constexpr std::size_t kResponseBytes = 12;
constexpr std::size_t kShownDataBytes = 8;
constexpr std::size_t kKeptDataBytes = kPeripheralBlockBytes; // enough to tell what an exchange was about
constexpr std::size_t kHexLineBytes = 48;
constexpr std::uint8_t kResetEndpoint = 0xB0;

void KeepStart(std::vector<std::uint8_t>& start, std::span<const std::uint8_t> data) {
    const std::size_t wanted = std::min(data.size(), kKeptDataBytes - start.size());
    start.insert(start.end(), data.begin(), data.begin() + static_cast<std::ptrdiff_t>(wanted));
}

std::string DescribeData(const char* direction, std::uint32_t length, std::span<const std::uint8_t> start) {
    if (length == 0) {
        return {};
    }
    return Format(", %u bytes %s [%s]", length, direction, HexText(start, kShownDataBytes).c_str());
}

std::string DescribeAnswer(std::uint32_t command, std::span<const std::uint8_t> response) {
    if (response.size() < kResponseBytes) {
        return Format("short answer of %zu bytes", response.size());
    }
    const std::uint32_t echo = GetBig32(&response[4]);
    if (echo != command) {
        return Format("wrong echo %u", echo);
    }
    if (GetBig32(&response[0]) == kRefused) {
        return Format("refused, error 0x%04X", GetBig16(&response[8]));
    }
    const std::size_t bytes = ResultBytes(command);
    if (bytes == 0 || response.size() < kResponseBytes + bytes) {
        return "ok";
    }
    const std::uint32_t value = bytes == 1 ? response[kResponseBytes] : GetBig32(&response[kResponseBytes]);
    return Format("ok, 0x%X", value);
}

std::string DescribeVendorRequest(std::span<const std::uint8_t> block) {
    if (block.size() < 8) {
        return "vendor request";
    }
    const std::uint16_t value = GetLittle16(&block[6]);
    if (block[4] == kResetEndpoint) {
        return Format("reset endpoint %u", value);
    }
    return Format("vendor request 0x%02X, value %u", block[4], value);
}

// Requests that are no part of a command.
std::string DescribeRequest(const TracedRequest& request) {
    switch (request.code) {
    case kControlGetDescriptor:
        if (request.fromUnit.size() >= 14) {
            return Format("get descriptor, release %u", GetLittle16(&request.fromUnit[12]));
        }
        return Format("get descriptor, %zu bytes", request.fromUnit.size());
    case kControlResetDevice:
        return "reset device";
    case kControlResetPipe:
        return request.input.size() < 4 ? "reset pipe"
                                        : Format("reset pipe %u", GetLittle32(request.input.data()));
    case kControlVendorRequest:
        return DescribeVendorRequest(request.input);
    case kControlLastUsbError:
        return request.fromUnit.size() < 4
                   ? "last error"
                   : Format("last error 0x%08X", GetLittle32(request.fromUnit.data()));
    case kControlBulkRead:
        return Format("read outside a command, %zu bytes", request.fromUnit.size());
    case kControlBulkWrite:
        return Format("write outside a command, %zu bytes", request.toUnit.size());
    default:
        return Format("control 0x%08X", request.code);
    }
}

} // namespace

TraceDecoder::TraceDecoder(Sink sink, bool bytes, std::uint32_t startTick)
    : m_sink(std::move(sink)), m_bytes(bytes), m_startTick(startTick) {}

void TraceDecoder::Take(const TracedRequest& request) {
    if (request.code == kControlBulkWrite) {
        TakeWrite(request);
    } else if (request.code == kControlBulkRead && m_exchange) {
        TakeRead(request);
    } else {
        const std::string failed = request.ok ? "" : Format(" -> failed, error %u", request.error);
        Emit(request.tick, DescribeRequest(request) + failed, request.duration);
    }
}

void TraceDecoder::TakeWrite(const TracedRequest& request) {
    if (!m_exchange || m_exchange->outLeft == 0) {
        Begin(request);
    } else {
        const auto moved = static_cast<std::uint32_t>(request.toUnit.size());
        m_exchange->outLeft -= std::min(m_exchange->outLeft, moved);
        KeepStart(m_exchange->outStart, request.toUnit);
    }
    if (!m_exchange) {
        return;
    }
    NoteBytes("> ", request.toUnit);
    if (!request.ok) {
        Finish(Format("write failed, error %u", request.error), request);
    }
}

void TraceDecoder::Begin(const TracedRequest& request) {
    if (m_exchange) {
        Finish("no answer", request);
    }
    const std::span<const std::uint8_t> header = request.toUnit;
    if (header.size() < kHeaderBytes || GetBig32(header.data()) != kMagic) {
        Emit(request.tick, DescribeRequest(request), request.duration);
        return;
    }
    Exchange& exchange = m_exchange.emplace(Exchange{});
    exchange.command = GetBig32(&header[4]);
    exchange.outLength = exchange.outLeft = GetBig32(&header[8]);
    exchange.inLength = exchange.inLeft = GetBig32(&header[12]);
    exchange.call = DescribeCommand(exchange.command, header.subspan(kHeaderBytes));
    exchange.isPeripheral = exchange.command == kGeneralCommand && header.size() > kHeaderBytes &&
                            header[kHeaderBytes] == kPeripheralExchange;
    exchange.tick = request.tick;
}

void TraceDecoder::TakeRead(const TracedRequest& request) {
    NoteBytes("< ", request.fromUnit);
    if (!request.ok) {
        Finish(Format("read failed, error %u", request.error), request);
        return;
    }
    if (m_exchange->responded) {
        TakeInData(request.fromUnit);
    } else {
        TakeResponse(request.fromUnit);
    }
    FinishIfComplete(request);
}

void TraceDecoder::TakeResponse(std::span<const std::uint8_t> response) {
    m_exchange->responded = true;
    m_exchange->answer = DescribeAnswer(m_exchange->command, response);
    if (!m_exchange->answer.starts_with("ok")) {
        m_exchange->inLeft = m_exchange->inLength = 0; // the unit sends data only with a good answer
    }
}

void TraceDecoder::TakeInData(std::span<const std::uint8_t> data) {
    KeepStart(m_exchange->inStart, data);
    const auto moved = static_cast<std::uint32_t>(data.size());
    m_exchange->inLeft -= std::min(m_exchange->inLeft, moved);
    if (moved == 0) {
        m_exchange->inLeft = 0; // nothing more will come
    }
}

void TraceDecoder::FinishIfComplete(const TracedRequest& request) {
    if (m_exchange->inLeft == 0) {
        const std::string answer = m_exchange->answer; // outlives the exchange
        Finish(answer, request);
    }
}

std::string TraceDecoder::Text(const Exchange& exchange, const std::string& outcome) {
    return exchange.call + DescribeData("out", exchange.outLength, exchange.outStart) + " -> " + outcome +
           DescribeData("in", exchange.inLength, exchange.inStart);
}

// The frame and its answer instead of the blocks around them; what the unit itself made of it when it did not
// get that far.
std::string TraceDecoder::PeripheralText(const Exchange& exchange, const std::string& outcome) {
    const bool carried = outcome == "ok" && !exchange.inStart.empty();
    return exchange.call + ": " + DescribeBusCall(exchange.outStart) + " -> " +
           (carried ? DescribeBusAnswer(exchange.outStart, exchange.inStart) : outcome);
}

void TraceDecoder::Finish(const std::string& outcome, const TracedRequest& request) {
    const Exchange exchange = std::move(*m_exchange);
    m_exchange.reset();
    Emit(exchange.tick, exchange.isPeripheral ? PeripheralText(exchange, outcome) : Text(exchange, outcome),
         request.tick + request.duration - exchange.tick);
    for (const std::string& line : exchange.hex) {
        m_sink(line);
    }
}

void TraceDecoder::NoteBytes(const char* arrow, std::span<const std::uint8_t> bytes) {
    if (m_bytes) {
        m_exchange->hex.push_back(std::string(11, ' ') + arrow + HexText(bytes, kHexLineBytes));
    }
}

void TraceDecoder::Emit(std::uint32_t tick, const std::string& text, std::uint32_t duration) {
    m_sink(Format("%7u ms %s (%u ms)", tick - m_startTick, text.c_str(), duration));
}

} // namespace kalvio::bench
