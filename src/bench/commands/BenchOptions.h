#pragma once

// What every command takes, as the command line gave it.

#include "bench/ReferenceHostNames.h"
#include "reference_host/application/ReferenceHostOptions.h"

#include <string>

namespace kalvio::bench {

enum class Answers { Ask, Yes, No };

struct BenchOptions {
    ReferenceHostOptions host;
    std::string traceFile; // empty: none; "-": standard error
    bool traceBytes = false;
    Answers answers = Answers::Ask;
    bool json = false;
    std::string loadFile; // a configuration that is loaded when the unit is up; empty: none
    bool discardStored = false;
    bool applyUnsaved = false;
    std::string groups; // changes of the save table; empty: none
};

} // namespace kalvio::bench
