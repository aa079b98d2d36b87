#pragma once

// What a virtual unit is built from.

#include <cstdint>
#include <functional>
#include <string>

namespace kalvio::simulator {

// The unit's own sense of time, in milliseconds; both are given by whoever builds the unit, so that a
// test's clock rules here too. `sleep` is used for slow answers only. Neither is called while the unit
// holds its lock.
struct UnitClock {
    std::function<std::uint32_t()> now;
    std::function<void(std::uint32_t)> sleep;
};

struct UnitOptions {
    std::string deviceName = R"(\\.\kvusb-0)";
    std::uint16_t releaseNumber = 267;    // bcdDevice of the descriptor
    std::uint32_t absentOpens = 0;        // so many first opens fail, as if the unit were not plugged in
    bool present = true;                  // false: every open fails
    std::uint8_t mainBoardVersion = 0x21; // micro 'X' 0x8000
    std::uint8_t mainBoardOptions = 0x05; // micro 'X' 0x8001
    std::uint8_t analogueVersion = 0x12;  // analogue register 'p' read back
    std::uint8_t linkFit = 0x13;          // analogue register 'q' read back
    std::int16_t mainTemperatureHalfDegrees = 61;     // 30.5 degrees
    std::int16_t analogueTemperatureHalfDegrees = 66; // 33.0 degrees
    std::uint32_t resultCadenceMs = 20;               // a new result block every so often
    double digitalFrameRateHz = 48000.0;
    double referenceFrameRateHz = 48000.0;
};

} // namespace kalvio::simulator
