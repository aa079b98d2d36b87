#pragma once

// One command to the unit while it is built and sent: header, parameters and response, all on the stack.

#include "hardware/UsbTransport.h"

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

[[nodiscard]] const CommandShape& ShapeOf(CommandCode code);

// Parameters are put by their offset in the parameter block, which begins at header offset 16; multi-byte
// ones big-endian. Used by one thread.
class CommandFrame {
public:
    explicit CommandFrame(CommandCode code);
    CommandFrame(const CommandFrame&) = delete;
    CommandFrame& operator=(const CommandFrame&) = delete;

    CommandFrame& Put8(std::size_t offset, std::uint8_t value);
    CommandFrame& Put16(std::size_t offset, std::uint16_t value);
    CommandFrame& Put32(std::size_t offset, std::uint32_t value);
    CommandFrame& Send(const std::uint8_t* data, std::uint32_t length); // goes out after the header
    CommandFrame& Receive(std::uint8_t* data, std::uint32_t length);    // comes in after the response

    [[nodiscard]] const UsbExchange& Exchange() const { return m_exchange; }
    [[nodiscard]] const char* Name() const;

    // What the response carried, after the exchange.
    [[nodiscard]] std::uint8_t ResultByte() const;
    [[nodiscard]] std::uint32_t ResultWord() const;
    [[nodiscard]] bool HasUnitError() const;

private:
    static constexpr std::size_t kLongestHeader = 32;
    static constexpr std::size_t kLongestResponse = 16;
    CommandCode m_code;
    std::array<std::uint8_t, kLongestHeader> m_header{};
    std::array<std::uint8_t, kLongestResponse> m_response{};
    UsbExchange m_exchange;
};

} // namespace kalvio
