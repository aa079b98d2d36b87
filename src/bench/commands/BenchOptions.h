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
};

} // namespace kalvio::bench
