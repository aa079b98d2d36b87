#pragma once

// A pair of terminals of which one is a device that programs open as a serial port, and the other is ours.

#include <span>
#include <string>
#include <string_view>

namespace kalvio::reference_host {

// Never waits. One thread.
class PseudoTerminal {
public:
    PseudoTerminal();
    ~PseudoTerminal() { Close(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    // The path of the device; empty when the system gave none.
    [[nodiscard]] const std::string& Device() const { return m_device; }
    // The number of bytes that passed; 0: none just now, or nobody has the device open.
    std::size_t Read(std::span<char> bytes);
    std::size_t Write(std::string_view bytes);
    // As when the device is unplugged.
    void Close();

private:
    int m_descriptor = -1;
    std::string m_device;
};

} // namespace kalvio::reference_host
