#pragma once

// What a report of a failed command says of its parameters. Any thread.

#include "platform/Text.h"

#include <cstdint>

namespace kalvio::details {

[[nodiscard]] CString MicroMemory(std::uint8_t space, std::uint16_t address, std::uint8_t data);
[[nodiscard]] CString MicroBit(std::uint8_t space, std::uint32_t bitAddress);
[[nodiscard]] CString MicroBits(std::uint8_t space, std::uint16_t address, std::uint8_t offBits,
                                std::uint8_t onBits);
[[nodiscard]] CString MicroBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length);
[[nodiscard]] CString DspAddress(std::uint8_t dsp, std::uint8_t space, std::uint32_t address);
[[nodiscard]] CString DspData(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                              std::uint32_t data);
[[nodiscard]] CString DspMask(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                              std::uint32_t mask);
[[nodiscard]] CString DspMaskState(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t mask, std::uint8_t state);
[[nodiscard]] CString DspBlock(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                               std::uint32_t length);
[[nodiscard]] CString DspCommand(std::uint8_t command);
[[nodiscard]] CString GeneralCommand(std::uint8_t id, std::uint8_t first, std::uint8_t second);

} // namespace kalvio::details
