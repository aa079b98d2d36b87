#pragma once

// What the unit does with each command.

#include "simulator/UnitBoards.h"
#include "simulator/commands/CommandFrame.h"
#include "simulator/commands/CommandOutcome.h"

namespace kalvio::simulator {

CommandOutcome ExecuteCommand(const CommandFrame& frame, UnitBoards& boards);

} // namespace kalvio::simulator
