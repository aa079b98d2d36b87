#pragma once

// The I/O switcher's commands.

#include "bench/trace/BusCommand.h"

namespace kalvio::bench {

std::span<const BusCommand> SwitcherCommands();

} // namespace kalvio::bench
