#pragma once

// Where things stand in the unit's memories, as far as more than one part needs to know.

#include <cstdint>

namespace kalvio::address {

// Control registers in 'S'. They can only be written; the unit keeps what was written last in 'X'.
inline constexpr std::uint16_t kControl0 = 0x8000;
inline constexpr std::uint16_t kControl1 = 0x8080;
inline constexpr std::uint16_t kControl2 = 0x8800;
inline constexpr std::uint16_t kControl3 = 0x8880;
inline constexpr std::uint16_t kControlShadow0 = 0x7AFC; // the others follow

// Further hardware registers in 'S'.
inline constexpr std::uint16_t kMonitorControl = 0x9000; // eight of them
inline constexpr std::uint16_t kAesReceiver1 = 0xA802;
inline constexpr std::uint16_t kAesReceiver2 = 0xA803;
inline constexpr std::uint16_t kLastSetting = 0xA001; // written when all else is set
inline constexpr std::uint32_t kRateBit = 0xA00008;   // bit address

// Data of the micro-controller in 'X'.
inline constexpr std::uint16_t kMainBoardVersion = 0x8000;
inline constexpr std::uint16_t kMainBoardOptions = 0x8001;
inline constexpr std::uint16_t kAesInterrupt1 = 0xA800;
inline constexpr std::uint16_t kAesInterrupt2 = 0xA801;

// Devices of the I2C bus.
inline constexpr std::uint8_t kMainBoardSensor = 72;
inline constexpr std::uint8_t kAnalogueBoardSensor = 73;

// Words of each DSP in 'X'.
inline constexpr std::uint16_t kControlWord = 24;
inline constexpr std::uint16_t kPostTriggerCount = 47;
inline constexpr std::uint16_t kPreTriggerCount = 48;
inline constexpr std::uint16_t kTriggerLevel = 49;
inline constexpr std::uint16_t kTriggerMode = 50;
inline constexpr std::uint16_t kAnalyserCoefficients = 51;  // two
inline constexpr std::uint16_t kGeneratorCoefficients = 56; // four, of DSP A

// Words of each DSP in 'Y'.
inline constexpr std::uint32_t kRateCoefficients = 400;

} // namespace kalvio::address
