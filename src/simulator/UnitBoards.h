#pragma once

// Everything inside the unit that a command can reach.

#include "simulator/PeripheralBus.h"
#include "simulator/UnitOptions.h"
#include "simulator/boards/I2cBus.h"
#include "simulator/signals/MeasurementModel.h"

#include <optional>

namespace kalvio::simulator {

inline constexpr std::size_t kMainBoardRelayCount = 8;

struct UnitBoards {
    UnitBoards(const UnitOptions& options, std::uint32_t tick);

    FaultPlan faults;
    Log<std::string> protocolErrors;
    MicroMemory micro;
    std::array<DspMemory, 2> dsps;
    AnalogueBoard analogue;
    I2cBus i2c;
    MeasurementModel measurement;
    PeripheralBus peripherals;
    std::array<std::uint8_t, kMainBoardRelayCount> relays{};
    Log<LoadedImage> images;
    std::optional<std::uint16_t> armedAddress; // for the next checked write
    bool initialised = false;
};

} // namespace kalvio::simulator
