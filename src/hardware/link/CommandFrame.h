#pragma once

// One command to the unit while it is built and sent: header, parameters and response, all on the stack.

#include "hardware/UsbTransport.h"
#include "platform/formats/Endian.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kalvio {

enum class CommandCode : std::uint32_t {
    Initialise = 1,
    Terminate = 2,
    MicroGetMem = 3,
    MicroGetBit = 4,
    DSPGetMem24 = 5,
    DSPGetBit = 6,
    MicroPutMem = 7,
    MicroPutBit = 8,
    DSPPutMem24 = 9,
    DSPPutBit = 10,
    MicroGetMemBlock = 11,
    DSPGetMemBlock24 = 12,
    MicroPutMemBlock = 13,
    DSPPutMemBlock24 = 14,
    MicroFillMemBlock = 15,
    DSPFillMemBlock24 = 16,
    MicroWaitBit = 17,
    DSPWaitBit = 18,
    MicroLoad = 19,
    FPGALoad = 20,
    DSPLoad = 21,
    DoCommand = 22,
    DSPSendCommand = 23,
    MicroPutBits = 24,
};

// What is fixed for a command code: the name in reports and the lengths on the wire, in bytes.
struct CommandShape {
    const char* name;
    std::uint32_t headerLength;
    std::uint32_t responseLength;
};

// By command code, from 1.
inline constexpr std::array<CommandShape, 24> kCommandShapes{{
    {"Initialise", 20, 12},        {"Terminate", 20, 12},        {"MicroGetMem", 20, 16},
    {"MicroGetBit", 24, 16},       {"DSPGetMem24", 24, 16},      {"DSPGetBit", 28, 16},
    {"MicroPutMem", 24, 12},       {"MicroPutBit", 24, 12},      {"DSPPutMem24", 28, 12},
    {"DSPPutBit", 28, 12},         {"MicroGetMemBlock", 20, 12}, {"DSPGetMemBlock24", 24, 12},
    {"MicroPutMemBlock", 20, 12},  {"DSPPutMemBlock24", 24, 12}, {"MicroFillMemBlock", 24, 12},
    {"DSPFillMemBlock24", 32, 12}, {"MicroWaitBit", 24, 16},     {"DSPWaitBit", 32, 16},
    {"MicroLoad", 20, 12},         {"FPGALoad", 16, 12},         {"DSPLoad", 20, 12},
    {"DoCommand", 20, 12},         {"DSPSendCommand", 20, 12},   {"MicroPutBits", 28, 12},
}};

// Parameters are put by their offset in the parameter block, which begins at header offset 16; multi-byte
// ones big-endian. Used by one thread.
class CommandFrame {
public:
    explicit CommandFrame(CommandCode code) : m_shape(kCommandShapes[static_cast<std::size_t>(code) - 1]) {
        m_exchange.command = static_cast<std::uint32_t>(code);
        m_exchange.headerLength = m_shape.headerLength;
        m_exchange.header = m_header.data();
        m_exchange.responseLength = m_shape.responseLength;
        m_exchange.response = m_response.data();
    }
    CommandFrame(const CommandFrame&) = delete;
    CommandFrame& operator=(const CommandFrame&) = delete;

    CommandFrame& Put8(std::size_t offset, std::uint8_t value) {
        m_header[kParametersAt + offset] = value;
        return *this;
    }
    CommandFrame& Put16(std::size_t offset, std::uint16_t value) {
        PutBig16(&m_header[kParametersAt + offset], value);
        return *this;
    }
    CommandFrame& Put32(std::size_t offset, std::uint32_t value) {
        PutBig32(&m_header[kParametersAt + offset], value);
        return *this;
    }
    // Goes out after the header.
    CommandFrame& WithData(const std::uint8_t* data, std::uint32_t length) {
        m_exchange.outData = data;
        m_exchange.outLength = length;
        return *this;
    }
    // Takes what comes in after the response.
    CommandFrame& Into(std::uint8_t* data, std::uint32_t length) {
        m_exchange.inData = data;
        m_exchange.inLength = length;
        return *this;
    }

    [[nodiscard]] const UsbExchange& Exchange() const { return m_exchange; }
    [[nodiscard]] const char* Name() const { return m_shape.name; }

    // What the response carried, after the exchange.
    [[nodiscard]] std::uint8_t ResultByte() const { return m_response[kResultAt]; }
    [[nodiscard]] std::uint32_t ResultWord() const { return GetBig32(&m_response[kResultAt]); }
    [[nodiscard]] bool HasUnitError() const {
        return m_response[kUnitErrorAt] != 0 || m_response[kUnitErrorAt + 1] != 0;
    }

private:
    static constexpr std::size_t kLongestHeader = 32;
    static constexpr std::size_t kLongestResponse = 16;
    static constexpr std::size_t kParametersAt = 16;
    static constexpr std::size_t kUnitErrorAt = 8;
    static constexpr std::size_t kResultAt = 12;

    const CommandShape& m_shape;
    std::array<std::uint8_t, kLongestHeader> m_header{};
    std::array<std::uint8_t, kLongestResponse> m_response{};
    UsbExchange m_exchange;
};

} // namespace kalvio
