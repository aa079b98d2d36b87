#pragma once

// The unit's own maker of calibration tables, as the factory left them.

#include "simulator/Bytes.h"
#include "simulator/UnitMemories.h"

namespace kalvio::simulator {

inline constexpr std::size_t kCalibrationDataBytes = 512;
inline constexpr std::size_t kCalibrationImageBytes = kCalibrationDataBytes + 128;
inline constexpr std::size_t kCalibrationMirror = 0;    // where the working copy stands in a memory
inline constexpr std::size_t kCalibrationMaster = 2048; // where the factory copy stands

// A valid table image for a board of that version and options.
ByteVector MakeCalibrationImage(CalibrationMemory memory, std::uint8_t version, std::uint8_t options);

} // namespace kalvio::simulator
