#pragma once

// The three program images that the unit runs.

#include "hardware/CommandSet.h"

#include <cstdint>

namespace kalvio {

// User-interface thread.
class ProgramImages {
public:
    explicit ProgramImages(CommandSet& commands) : m_commands(commands) {}

    // Loads gate array, DSP A and DSP B from the files that the registry names ("Hardware": "FPGAFile",
    // "DSPAFile", "DSPBFile"). The first failure is told to the user, and to the debug file with file and
    // registry value; its status, else 0.
    std::int16_t Load();

private:
    std::int16_t LoadGateArray();
    std::int16_t LoadDsp(std::uint8_t dsp);

    CommandSet& m_commands;
};

} // namespace kalvio
