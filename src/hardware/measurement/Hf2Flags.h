#pragma once

// The DSPs' flags that say that new results stand in their memory.

#include "hardware/CommandSet.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace kalvio {

// Any thread. DSP 1 is B, any other A.
class Hf2Flags {
public:
    explicit Hf2Flags(CommandSet& commands) : m_commands(commands) {}

    // 1 when the DSP has new results, unless arrivals are to be ignored, of which each look that reached the
    // unit takes one.
    int IsReady(std::uint8_t dsp);
    std::int16_t Reset(std::uint8_t dsp);
    void SetIgnoreCount(std::uint8_t dsp, std::int16_t count) { m_ignore[dsp == 1 ? 1 : 0].store(count); }

private:
    CommandSet& m_commands;
    std::array<std::atomic<std::int16_t>, 2> m_ignore{};
};

} // namespace kalvio
