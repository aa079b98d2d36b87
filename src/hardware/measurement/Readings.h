#pragma once

// Small readings of the unit: peak detectors and temperatures.

#include "hardware/CommandSet.h"

#include <cstdint>

namespace kalvio {

// Any thread.
class Readings {
public:
    explicit Readings(CommandSet& commands) : m_commands(commands) {}

    // 8 bytes each as the unit sends them, or null; zeroes when the exchange failed, nothing without a unit.
    void ReadPeaks(std::uint8_t* peakA, std::uint8_t* peakB);
    // Degrees in steps of 0.5; untouched when the read failed, whose status is the answer.
    std::int16_t ReadTemperature(std::uint8_t sensor, double& degrees, bool evenIfSuspended);
    double Temperature(std::uint8_t sensor); // from a suspended unit too; 0.0 when it cannot be read

private:
    CommandSet& m_commands;
};

} // namespace kalvio
