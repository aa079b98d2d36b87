#pragma once

// The unit's I2C bus with everything that is soldered to it.

#include "simulator/UnitMemories.h"
#include "simulator/boards/AnalogueBoard.h"
#include "simulator/boards/CalibrationEeprom.h"

#include <map>

namespace kalvio::simulator {

class I2cBus {
public:
    I2cBus(AnalogueBoard& board, FaultPlan& faults, std::int16_t mainHalfDegrees,
           std::int16_t analogueHalfDegrees);

    UnitError Read(std::uint32_t address, ByteSpan into, const I2cTransaction& transaction);
    UnitError Write(std::uint32_t address, ByteView bytes, const I2cTransaction& transaction);

    [[nodiscard]] CalibrationEeprom& Memory(CalibrationMemory memory);

private:
    [[nodiscard]] I2cDevice* Find(std::uint32_t address);

    std::map<std::uint32_t, std::unique_ptr<I2cDevice>> m_devices;
    CalibrationEeprom m_mainMemory;
    CalibrationEeprom m_analogueMemory;
};

} // namespace kalvio::simulator
