#pragma once

// What every command does around its own work: the unit comes up before and is shut down after.

#include "bench/commands/BenchApplication.h"

#include <functional>

namespace kalvio::bench {

// The exit code: of the bring-up when that failed, kExitInterrupted after Ctrl-C, else that of `work`. A
// trace that could not be written to its end is a failed run.
int WithUnit(const BenchOptions& options, Terminal& terminal,
             const std::function<int(BenchApplication&)>& work,
             std::function<void(const CString&)> onDebugLine = nullptr);

} // namespace kalvio::bench
