#pragma once

// The serial devices of this computer.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace kalvio::reference_host {

// The paths of the devices that are there, by name and then by number, so that ttyS2 stands before ttyS10.
// `classFolder` is where the system lists its terminals.
std::vector<std::string> FindSerialDevices(const std::string& classFolder = "/sys/class/tty");

// The device of a port: the one chosen for it, else the n-th that is there; empty: none.
std::string DeviceOfPort(std::int16_t port, const std::map<std::int16_t, std::string>& chosen);

} // namespace kalvio::reference_host
