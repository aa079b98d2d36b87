#pragma once

// Scripts for every command that runs one.

#include "bench/commands/BenchApplication.h"
#include "bench/commands/Commands.h"
#include "reference_host/script/Script.h"

#include <optional>

namespace kalvio::bench {

// Reads and parses a script; none when it cannot be read or is faulty, which is told.
std::optional<ParsedScript> LoadScript(const BenchOptions& options, const ScriptOptions& script,
                                       Terminal& terminal);
// Checks the statements and runs them on a unit that is up; an exit code.
int RunParsedScript(BenchApplication& application, const BenchOptions& options, const ScriptOptions& script,
                    const ParsedScript& parsed, Terminal& terminal);

} // namespace kalvio::bench
