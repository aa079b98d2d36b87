#pragma once

// What the unit does with each command.

#include "simulator/CommandFrame.h"
#include "simulator/CommandOutcome.h"
#include "simulator/UnitBoards.h"

namespace kalvio::simulator {

CommandOutcome ExecuteCommand(const CommandFrame& frame, UnitBoards& boards);

} // namespace kalvio::simulator
