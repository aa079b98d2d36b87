#pragma once

// What every command does around its own work: the unit comes up before and is shut down after.

#include "bench/commands/BenchApplication.h"

#include <functional>
#include <string>

namespace kalvio::bench {

// What a command does with the unit.
struct UnitWork {
    // Before the unit is touched: takes the command's values into the documents. Empty, or what was refused;
    // that is a fault of the command line.
    std::function<std::string(ReferenceHost&)> prepare{};
    std::function<int(BenchApplication&)> run;
    std::function<void(const CString&)> onDebugLine{};
};

// The exit code: of the preparation or the bring-up when that failed, kExitInterrupted after Ctrl-C, else
// that of the run. A trace that could not be written to its end is a failed run.
int WithUnit(const BenchOptions& options, Terminal& terminal, const UnitWork& work);

} // namespace kalvio::bench
