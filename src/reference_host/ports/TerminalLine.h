#pragma once

// An open serial device, as the system's terminal interface gives it.

#include "platform/CommunicationsControl.h"
#include "reference_host/ports/LineSettings.h"
#include "reference_host/ports/SystemCalls.h"

#include <span>
#include <string>
#include <string_view>

namespace kalvio::reference_host {

enum class OutputLine { Dtr, Rts };

// The lines that the other side drives.
struct InputLines {
    bool carrier = false;
    bool clearToSend = false;
    bool dataSetReady = false;
    bool ring = false;
};

// Texts say why something failed, without a full stop; empty when it did not. One thread.
class TerminalLine {
public:
    explicit TerminalLine(const SystemCalls& calls) : m_calls(calls) {}
    ~TerminalLine() { Close(); }
    TerminalLine(const TerminalLine&) = delete;
    TerminalLine& operator=(const TerminalLine&) = delete;

    // For this program alone, with received bytes marked as MarkedInput.h reads them. Once until it is
    // closed.
    std::string Open(const std::string& device, const LineSettings& settings, CommHandshaking handshaking);
    void Close();
    [[nodiscard]] bool IsOpen() const { return m_descriptor >= 0; }
    [[nodiscard]] int Descriptor() const { return m_descriptor; } // -1: not open

    std::string Configure(const LineSettings& settings, CommHandshaking handshaking);

    // The number of bytes that passed, 0 when none can just now; -1 when the device has gone.
    long Read(std::span<char> bytes);
    long Write(std::string_view bytes);

    // Whether all that was written has left the computer.
    [[nodiscard]] bool IsSent() const;
    void DiscardOutput();

    // Devices without such lines, as pseudo-terminals, read as low and take every setting.
    [[nodiscard]] InputLines Lines() const;
    std::string SetLine(OutputLine line, bool high);
    std::string SetBreak(bool on);

private:
    std::string TakeDevice(const LineSettings& settings, CommHandshaking handshaking);
    [[nodiscard]] std::string Explain(int error) const;

    const SystemCalls m_calls;
    std::string m_device;
    int m_descriptor = -1;
    bool m_hasLines = false;
};

} // namespace kalvio::reference_host
