#pragma once

// The micro-controller's general commands, the ones that travel inside command 22.

#include "simulator/UnitBoards.h"
#include "simulator/commands/CommandFrame.h"
#include "simulator/commands/CommandOutcome.h"

namespace kalvio::simulator {

// Puts the out data of a general command into the command buffer, where it stays for whoever asks.
void KeepCommandBuffer(const CommandFrame& frame, UnitBoards& boards);

CommandOutcome ExecuteGeneral(const CommandFrame& frame, UnitBoards& boards);

} // namespace kalvio::simulator
