#pragma once

// The system's device by which programs with the rights write to I/O ports: a file whose places are the
// ports.

#include "platform/PortOutput.h"

#include <string>

namespace kalvio::reference_host {

// One thread.
class PortDevice {
public:
    PortDevice() = default;
    ~PortDevice();
    PortDevice(const PortDevice&) = delete;
    PortDevice& operator=(const PortDevice&) = delete;

    // Empty when it is open, else why it is not. Once.
    std::string Open(const std::string& path);
    [[nodiscard]] bool IsOpen() const { return m_descriptor >= 0; }

    // True when all bytes were written. The system makes one access of each byte, to the ports from the given
    // one on, low byte first.
    bool Write(const PortWrite& write);

private:
    int m_descriptor = -1;
};

} // namespace kalvio::reference_host
