#pragma once

// What a program decides about the ports of its reference host.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kalvio::reference_host {

// Stands for a device in PortOptions: the built-in instrument of EchoInstrument.h.
inline constexpr std::string_view kEchoDevice = "echo";

struct PortOptions {
    // The devices of serial ports by number. Port n is else the n-th device of this computer.
    std::map<std::int16_t, std::string> serialPorts{};
    // The system's port device, for those who have the rights, by which I/O ports are written; empty: they
    // are not written, only recorded.
    std::string portDevice{};
};

inline constexpr std::string_view kSystemPortDevice = "/dev/port";

// Takes "N=DEVICE", with N from 1 to 32767, or "echo" for "1=echo". Empty when all was well, else what was
// wrong; the options are then unchanged.
std::string ParseSerialOption(std::string_view text, PortOptions& options);

} // namespace kalvio::reference_host
