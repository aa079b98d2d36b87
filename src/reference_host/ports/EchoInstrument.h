#pragma once

// A small instrument for trying serial ports without hardware. It takes lines that end with LF or CR LF and
// answers each with a line: *IDN? with its name, COUNT? with the number of lines so far, anything else with
// the line itself.

#include "platform/Window.h"
#include "reference_host/ports/PseudoTerminal.h"

#include <string>

namespace kalvio::reference_host {

// Works in the message loop of its thread, the user-interface thread.
class EchoInstrument {
public:
    EchoInstrument();

    // What to open it by; empty when the system has no pseudo-terminal to give.
    [[nodiscard]] const std::string& Device() const { return m_terminal.Device(); }

private:
    class Window final : public CWnd {
    public:
        explicit Window(EchoInstrument& owner) : m_owner(owner) {}
        LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

    private:
        EchoInstrument& m_owner;
    };

    void Poll();
    std::string Answer(const std::string& line);

    PseudoTerminal m_terminal;
    std::string m_input;  // of a line that has not ended
    std::string m_output; // not taken yet
    unsigned m_lines = 0;
    Window m_window{*this};
};

} // namespace kalvio::reference_host
