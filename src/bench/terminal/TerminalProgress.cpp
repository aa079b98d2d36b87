#include "bench/terminal/TerminalProgress.h"

#include "bench/terminal/Interrupt.h"
#include "host/HostApplication.h"
#include "platform/Clock.h"

#include <algorithm>

namespace kalvio::bench {

void TerminalProgress::GoModal(const CString&) {
    m_start = GetTickCount();
}

void TerminalProgress::SetRange(int low, int high, int step) {
    m_low = low;
    m_high = std::max(low, high);
    m_step = step;
    m_position = low;
    m_toldTenths = 0;
}

void TerminalProgress::SetText(const CString& text) {
    m_stream << text.substr(text.rfind('\n') + 1) << std::endl;
}

void TerminalProgress::SetPos(int position) {
    m_position = std::clamp(position, m_low, m_high);
    const int tenths = m_high == m_low ? 0 : (m_position - m_low) * 10 / (m_high - m_low);
    if (tenths > m_toldTenths) {
        const std::uint32_t spent = GetTickCount() - m_start;
        m_stream << Format("  %3d %%", tenths * 10);
        if (spent != 0) { // bytes in a millisecond are kilobytes in a second
            m_stream << Format(", %.1f kB/s", static_cast<double>(m_steps * m_bytesOfStep) / spent);
        }
        m_stream << std::endl;
    }
    m_toldTenths = tenths;
}

void TerminalProgress::StepIt() {
    ++m_steps;
    SetPos(m_position + m_step);
}

void TerminalProgress::PeekAndPump(bool) {
    GetHostApplication().DoMessageLoop();
}

bool TerminalProgress::Cancelled() const {
    return IsInterrupted();
}

} // namespace kalvio::bench
