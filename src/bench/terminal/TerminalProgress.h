#pragma once

// A long operation on a terminal: a line for what is being done, and one for every tenth of the way.

#include "host/ProgressWnd.h"

#include <cstdint>
#include <ostream>

namespace kalvio::bench {

// Ctrl-C is the cancel. User-interface thread.
class TerminalProgress final : public ProgressDisplay {
public:
    // A step stands for so many bytes, from which the rate follows.
    TerminalProgress(std::ostream& stream, std::size_t bytesOfStep)
        : m_stream(stream), m_bytesOfStep(bytesOfStep) {}

    void GoModal(const CString& title) override;
    void SetRange(int low, int high, int step) override;
    void SetText(const CString& text) override; // its last line
    void SetPos(int position) override;
    void StepIt() override;
    void PeekAndPump(bool cancelOnEscape) override;
    [[nodiscard]] bool Cancelled() const override;

private:
    std::ostream& m_stream;
    const std::size_t m_bytesOfStep;
    std::uint32_t m_start = 0;
    std::uint64_t m_steps = 0; // made, again after a step back included
    int m_low = 0;
    int m_high = 0;
    int m_step = 1;
    int m_position = 0;
    int m_toldTenths = 0;
};

} // namespace kalvio::bench
