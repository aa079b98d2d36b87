#pragma once

// What every command takes, as the command line gave it.

#include "simulator/DeviceUnderTest.h"

#include <optional>
#include <string>

namespace kalvio::bench {

enum class UnitKind {
    Simulated, // the virtual unit
    None,      // no unit: the access dialog is answered with "continue without hardware"
    Absent,    // a unit that is not plugged in: the access dialog asks
};

enum class Answers { Ask, Yes, No };

struct BenchOptions {
    UnitKind unit = UnitKind::Simulated;
    std::string traceFile; // empty: none; "-": standard error
    bool traceBytes = false;
    Answers answers = Answers::Ask;
    std::string registryFile; // empty: memory only
    bool json = false;
    simulator::DeviceUnderTest device;
    int securityLevel = 4;
    // Whether the pre-processor runs on its thread. Without it the program's turns do its work, for
    // programs that drive everything themselves on a clock that moves only when told.
    bool threaded = true;
};

} // namespace kalvio::bench
