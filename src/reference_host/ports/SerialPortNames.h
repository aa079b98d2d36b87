#pragma once

// The names of the current serial port for scripts, which know them before there is a port, and reading until
// a line has ended.

#include "platform/Automation.h"
#include "ports/Ports.h"

#include <cstdint>
#include <functional>

namespace kalvio::reference_host {

// User-interface thread.
class SerialPortNames final : public CCmdTarget {
public:
    // Lets the program go on until `done` answers true, so many milliseconds are over, or it is interrupted.
    using Turns = std::function<void(const std::function<bool()>& done, std::uint32_t milliseconds)>;

    // The ports must outlive it.
    SerialPortNames(CPorts& ports, Turns turns) : m_ports(ports), m_turns(std::move(turns)) {}

    // The serial port's names go to the port that is current when they are used, and fail without one.
    // SERIAL_ReadUntil(end, milliseconds, text) takes what comes in up to and with `end`, 86400000
    // milliseconds at most: true, and the text without the end; false when the time was over, and the text
    // that came so far, which is taken out of the buffer as well.
    [[nodiscard]] const DispatchTable& GetDispatchMap() const override;

private:
    [[nodiscard]] static DispatchEntry Forwarded(const DispatchEntry& entry);
    [[nodiscard]] CSerialPort& Current() const; // throws without one, which the dispatcher makes a fault of
    bool ReadUntil(const CString& end, double milliseconds, VARIANT* text);

    CPorts& m_ports;
    Turns m_turns;
};

} // namespace kalvio::reference_host
