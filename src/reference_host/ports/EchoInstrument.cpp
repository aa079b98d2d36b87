#include "reference_host/ports/EchoInstrument.h"

#include <array>

namespace kalvio::reference_host {

namespace {

constexpr unsigned kTimerId = 1;
constexpr std::uint32_t kTimerMs = 2;
constexpr std::size_t kPieceBytes = 4096;
constexpr std::size_t kMostWaiting = 65536; // beyond that it takes nothing until it got rid of something

} // namespace

EchoInstrument::EchoInstrument() {
    m_window.ShowWindow(false);
    SetTimer(m_window.Handle(), kTimerId, kTimerMs);
}

LRESULT EchoInstrument::Window::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_TIMER) {
        return CWnd::OnMessage(message, wParam, lParam);
    }
    m_owner.Poll();
    return 0;
}

void EchoInstrument::Poll() {
    std::array<char, kPieceBytes> piece{};
    if (m_output.size() + m_input.size() < kMostWaiting) {
        m_input.append(piece.data(), m_terminal.Read(piece));
    }
    for (std::size_t end = m_input.find('\n'); end != std::string::npos; end = m_input.find('\n')) {
        std::string line = m_input.substr(0, end);
        m_input.erase(0, end + 1);
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        m_output += Answer(line) + "\n";
    }
    m_output.erase(0, m_terminal.Write(m_output));
}

std::string EchoInstrument::Answer(const std::string& line) {
    ++m_lines;
    if (line == "*IDN?") {
        return "Kalvio,Echo Instrument,1042,1.0";
    }
    return line == "COUNT?" ? std::to_string(m_lines) : line;
}

} // namespace kalvio::reference_host
