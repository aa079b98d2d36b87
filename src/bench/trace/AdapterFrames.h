#pragma once

// The frames of a KEDA adapter as a trace shows them: the register group and its fields by name.

#include <cstdint>
#include <span>
#include <string>

namespace kalvio::bench {

// "generator clocks: multiplier 64, master clock in 0, ..." for a command and its data bytes, of a request or
// of an answer; without data the name alone. Empty for a command that is none of the adapter's, and for a
// number of data bytes that the command does not have.
std::string DecodeAdapterFrame(std::uint8_t command, std::span<const std::uint8_t> data);

} // namespace kalvio::bench
