#pragma once

// The unit's initial settings as data: what is done, in which order, and how a failure is told.

#include <cstdint>
#include <span>

namespace kalvio {

enum class BringUpAction : std::uint8_t {
    PutAnalogue,     // register `address` of the analogue board = `value`, with the relay guard
    BusyWait,        // `value` milliseconds
    StampConverters, // the analogue relays are set from now on
    ReadLinks,       // read the links back from analogue register `address`
    PutControl,      // control register `address` = `value`
    PutRelay,        // main-board relay `address` = `value`
    PutMicro,        // micro-controller memory: `space`, `address` = `value`, unchecked
    PutControlWord,  // DSP `dsp`: the control word that goes with the input coupling
    PutCalibration,  // DSP `dsp` 'X' `address` = entry `value` of the analogue board's calibration
};

struct BringUpStep {
    BringUpAction action;
    std::uint16_t address = 0;
    std::uint8_t value = 0;
    int stepCode = 0;            // names the step in the failure text; 0: cannot fail
    const char* trace = nullptr; // written once the step is done
    std::uint8_t space = 0;
    std::uint8_t dsp = 0;
};

// In order; the first failure ends the sequence. Any thread.
[[nodiscard]] std::span<const BringUpStep> BringUpSteps();

} // namespace kalvio
