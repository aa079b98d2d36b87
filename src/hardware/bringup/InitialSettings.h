#pragma once

// The unit's initial settings, written step by step.

#include "hardware/bringup/BringUpSteps.h"
#include "hardware/calibration/BoardTables.h"
#include "hardware/measurement/AnalogueRate.h"
#include "hardware/registers/AnalogueRegisters.h"
#include "hardware/registers/ControlWords.h"
#include "hardware/registers/LinkFit.h"
#include "hardware/registers/MainBoard.h"

#include <cstdint>

namespace kalvio {

// What the settings are written to; the coefficients come from the analogue board's table.
struct SettingsTargets {
    CommandSet& commands;
    AnalogueRegisters& analogue;
    MainBoard& mainBoard;
    ControlWords& controlWords;
    AnalogueRate& rate;
    LinkFit& links;
    const BoardTables& boards;
};

// User-interface thread.
class InitialSettings {
public:
    explicit InitialSettings(const SettingsTargets& targets) : m_targets(targets) {}

    // All steps in order; at the first that fails its status, with its code in `stepCode`.
    std::int16_t Write(int& stepCode);

private:
    std::int16_t Run(const BringUpStep& step);
    std::int16_t ReadLinkFit(std::uint8_t reg);

    SettingsTargets m_targets;
};

} // namespace kalvio
