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
constexpr std::size_t kIndent = 11; // of the bytes
constexpr std::size_t kTickWidth = 7;
constexpr std::size_t kUsualLine = 96;     // characters
constexpr std::size_t kUsualTransfers = 4; // of a command: header, data out, response, data in
constexpr std::uint8_t kResetEndpoint = 0xB0;

void KeepStart(std::vector<std::uint8_t>& start, std::span<const std::uint8_t> data) {
    const std::size_t wanted = std::min(data.size(), kKeptDataBytes - start.size());
    start.insert(start.end(), data.begin(), data.begin() + static_cast<std::ptrdiff_t>(wanted));
}

void AppendData(std::string& text, const char* direction, std::uint32_t length,
                std::span<const std::uint8_t> start) {
    if (length != 0) {
        text += ", ";
        AppendDecimal(text, length);
        text.append(" bytes ").append(direction).append(" [");
        AppendHexBytes(text, start, kShownDataBytes);
        text += ']';
    }
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
    std::string text = "ok, ";
    AppendHex(text, value);
    return text;
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
        BeginLine(request.tick);
        EmitLine(DescribeRequest(request) + failed, request.duration);
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
        BeginLine(request.tick);
        EmitLine(DescribeRequest(request), request.duration);
        return;
    }
    Exchange& exchange = m_exchange.emplace(Exchange{});
    exchange.command = GetBig32(&header[4]);
    exchange.outLength = exchange.outLeft = GetBig32(&header[8]);
    exchange.inLength = exchange.inLeft = GetBig32(&header[12]);
    exchange.call.reserve(kUsualLine);
    exchange.hex.reserve(m_bytes ? kUsualTransfers : 0);
    AppendCommand(exchange.call, exchange.command, header.subspan(kHeaderBytes));
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

void TraceDecoder::AppendCall(const Exchange& exchange, const std::string& outcome) {
    m_line += exchange.call;
    AppendData(m_line, "out", exchange.outLength, exchange.outStart);
    m_line.append(" -> ").append(outcome);
    AppendData(m_line, "in", exchange.inLength, exchange.inStart);
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
    BeginLine(exchange.tick);
    if (exchange.isPeripheral) {
        m_line += PeripheralText(exchange, outcome);
    } else {
        AppendCall(exchange, outcome);
    }
    EmitLine("", request.tick + request.duration - exchange.tick);
    for (const std::string& line : exchange.hex) {
        m_sink(line);
    }
}

void TraceDecoder::NoteBytes(const char* arrow, std::span<const std::uint8_t> bytes) {
    if (m_bytes) {
        std::string& line = m_exchange->hex.emplace_back();
        line.reserve(kUsualLine);
        line.append(kIndent, ' ').append(arrow);
        AppendHexBytes(line, bytes, kHexLineBytes);
    }
}

void TraceDecoder::BeginLine(std::uint32_t tick) {
    m_line.clear();
    AppendDecimal(m_line, tick - m_startTick, kTickWidth);
    m_line += " ms ";
}

void TraceDecoder::EmitLine(const std::string& rest, std::uint32_t duration) {
    m_line.append(rest).append(" (");
    AppendDecimal(m_line, duration);
    m_line += " ms)";
    m_sink(m_line);
}

} // namespace kalvio::bench
