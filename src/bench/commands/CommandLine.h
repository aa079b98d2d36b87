#pragma once

// From the words of the command line to a command that ran.

#include "bench/terminal/Terminal.h"

#include <string>
#include <vector>

namespace kalvio::bench {

// Runs the command that the arguments name (without the program's own name); the exit code. `threaded` is
// BenchOptions::threaded.
int RunCommandLine(const std::vector<std::string>& arguments, Terminal& terminal, bool threaded = true);

} // namespace kalvio::bench
