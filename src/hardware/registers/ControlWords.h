#pragma once

// The control word of each DSP, as it was last written.

#include "hardware/CommandSet.h"
#include "hardware/link/QuietLock.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace kalvio {

// Any thread. DSP 0 is A, any other B. Lock order: after relay timing, before endpoint.
class ControlWords {
public:
    explicit ControlWords(CommandSet& commands) : m_commands(commands) {}

    [[nodiscard]] std::uint32_t Get(std::uint8_t dsp) const; // without asking the unit or waiting
    std::int16_t Put(std::uint8_t dsp, std::uint32_t word);
    std::int16_t PutBits(std::uint8_t dsp, std::uint32_t clearMask, std::uint32_t setBits);

private:
    std::int16_t PutHeld(std::uint8_t dsp, std::uint32_t word) KALVIO_REQUIRES(m_lock);

    CommandSet& m_commands;
    QuietLock m_lock;                                    // from computing a word until it is sent
    std::array<std::atomic<std::uint32_t>, 2> m_words{}; // written under m_lock, read by anyone
};

} // namespace kalvio
