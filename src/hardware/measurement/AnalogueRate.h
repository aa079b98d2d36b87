#pragma once

// The analogue sample rate and what goes with it: registers, converters, DSP coefficients.

#include "hardware/CommandSet.h"
#include "hardware/SampleRate.h"
#include "hardware/registers/AnalogueRegisters.h"
#include "hardware/registers/LinkFit.h"

#include <atomic>
#include <cstdint>

namespace kalvio {

// User-interface thread; what is asked for is any thread's.
class AnalogueRate {
public:
    AnalogueRate(CommandSet& commands, AnalogueRegisters& analogue, const LinkFit& links)
        : m_commands(commands), m_analogue(analogue), m_links(links) {}

    // Nothing for the rate in force unless forced. With resetConverters it waits up to about 1.5 s. The
    // status of the first register write that failed (the rate counts as set), else 0.
    std::int16_t Set(SampleRate rate, bool resetConverters, bool force);
    [[nodiscard]] SampleRate Get() const { return m_rate.load(); }
    [[nodiscard]] double Hertz() const;
    // The converters have just been set; the next reset of them keeps its distance.
    void StampConverters();
    // To both DSPs, for this rate and, when one is set, the host's digital rate.
    std::int16_t WriteCoefficients();

private:
    std::int16_t Select(SampleRate rate);
    std::int16_t ResetConverters();
    std::int16_t SetConverters(SampleRate rate, bool resetConverters);

    CommandSet& m_commands;
    AnalogueRegisters& m_analogue;
    const LinkFit& m_links;
    std::atomic<SampleRate> m_rate{SampleRate::k96kHz};
    std::atomic<std::uint32_t> m_converterStamp{0}; // tick
};

} // namespace kalvio
