#include "hardware/CommandFrame.h"

#include "platform/Endian.h"

namespace kalvio {

namespace {

constexpr std::size_t kParametersAt = 16;
constexpr std::size_t kUnitErrorAt = 8;
constexpr std::size_t kResultAt = 12;

// By command code, from 1.
constexpr std::array<CommandShape, 24> kShapes{{
    {"Initialise", 20, 12},        {"Terminate", 20, 12},        {"MicroGetMem", 20, 16},
    {"MicroGetBit", 24, 16},       {"DSPGetMem24", 24, 16},      {"DSPGetBit", 28, 16},
    {"MicroPutMem", 24, 12},       {"MicroPutBit", 24, 12},      {"DSPPutMem24", 28, 12},
    {"DSPPutBit", 28, 12},         {"MicroGetMemBlock", 20, 12}, {"DSPGetMemBlock24", 24, 12},
    {"MicroPutMemBlock", 20, 12},  {"DSPPutMemBlock24", 24, 12}, {"MicroFillMemBlock", 24, 12},
    {"DSPFillMemBlock24", 32, 12}, {"MicroWaitBit", 24, 16},     {"DSPWaitBit", 32, 16},
    {"MicroLoad", 20, 12},         {"FPGALoad", 16, 12},         {"DSPLoad", 20, 12},
    {"DoCommand", 20, 12},         {"DSPSendCommand", 20, 12},   {"MicroPutBits", 28, 12},
}};

} // namespace

const CommandShape& ShapeOf(CommandCode code) {
    return kShapes[static_cast<std::size_t>(code) - 1];
}

CommandFrame::CommandFrame(CommandCode code) : m_code(code) {
    const CommandShape& shape = ShapeOf(code);
    m_exchange.command = static_cast<std::uint32_t>(code);
    m_exchange.headerLength = shape.headerLength;
    m_exchange.header = m_header.data();
    m_exchange.responseLength = shape.responseLength;
    m_exchange.response = m_response.data();
}

const char* CommandFrame::Name() const {
    return ShapeOf(m_code).name;
}

CommandFrame& CommandFrame::Put8(std::size_t offset, std::uint8_t value) {
    m_header[kParametersAt + offset] = value;
    return *this;
}

CommandFrame& CommandFrame::Put16(std::size_t offset, std::uint16_t value) {
    PutBig16(&m_header[kParametersAt + offset], value);
    return *this;
}

CommandFrame& CommandFrame::Put32(std::size_t offset, std::uint32_t value) {
    PutBig32(&m_header[kParametersAt + offset], value);
    return *this;
}

CommandFrame& CommandFrame::Send(const std::uint8_t* data, std::uint32_t length) {
    m_exchange.outData = data;
    m_exchange.outLength = length;
    return *this;
}

CommandFrame& CommandFrame::Receive(std::uint8_t* data, std::uint32_t length) {
    m_exchange.inData = data;
    m_exchange.inLength = length;
    return *this;
}

std::uint8_t CommandFrame::ResultByte() const {
    return m_response[kResultAt];
}

std::uint32_t CommandFrame::ResultWord() const {
    return GetBig32(&m_response[kResultAt]);
}

bool CommandFrame::HasUnitError() const {
    return m_response[kUnitErrorAt] != 0 || m_response[kUnitErrorAt + 1] != 0;
}

} // namespace kalvio
