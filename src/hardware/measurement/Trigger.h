#pragma once

// Arming the trigger of both DSPs.

#include "hardware/CommandSet.h"
#include "hardware/measurement/AnalyserInput.h"

class CFFTParametersSettings;

namespace kalvio {

// User-interface thread.
class Trigger {
public:
    Trigger(CommandSet& commands, AnalyserInput& input) : m_commands(commands), m_input(input) {}

    // Sets both DSPs up from the settings, arms them and clears the pending flag, under the settings' own
    // lock; everything is told when that is released. Statuses of the commands are not checked.
    void Arm(CFFTParametersSettings& settings);

private:
    void Write(const CFFTParametersSettings& settings, std::uint32_t bufferLength);

    CommandSet& m_commands;
    AnalyserInput& m_input;
};

} // namespace kalvio
