#pragma once

// The commands of the program. Each returns an exit code and talks through the terminal it is given.

#include "bench/ReferenceHostNames.h"
#include "bench/commands/BenchOptions.h"
#include "bench/terminal/Terminal.h"
#include "reference_host/regulation/RegulationSetup.h"
#include "reference_host/results/ResultCatalogue.h"

#include <optional>
#include <string>
#include <vector>

namespace kalvio::bench {

struct DemoOptions {
    std::string directory = "demo"; // where the plots go
};

struct ScriptOptions {
    std::string file;    // of run
    bool quiet = false;  // only what the script prints
    bool strict = false; // of console: a faulty line decides the exit code
};

// What the generator puts out when a command starts.
struct GeneratorOptions {
    double volts = 1.0;
    double hertz = 1000.0;
};

// Settling parameters for the results of a watch; what is absent keeps its default.
struct SettlingOptions {
    std::optional<double> tolerance; // percent
    std::string type;                // none, normal, exponential
    std::optional<int> count;
    std::optional<int> time; // milliseconds
    bool average = false;
};

struct WatchOptions {
    std::vector<ResultChoice> results;
    std::string unit; // empty: each result's own
    std::string csvFile;
    std::string plotFile;
    std::uint32_t timeoutMs = 10000;
    bool keepTrying = false; // start again while results do not settle, until the time-out
    bool follow = false;     // start again after every verdict, until Ctrl-C or the time-out
    GeneratorOptions generator;
    SettlingOptions settling;
};

struct RegulateOptions {
    RegulationSetup setup;
    std::string plotFile;
    GeneratorOptions generator;
};

struct AdapterOptions {
    int address = 8;
    bool fromUnit = false; // read the registers back and tell what differs from the image
};

int RunDemo(const BenchOptions& options, const DemoOptions& demo, Terminal& terminal);
int RunInfo(const BenchOptions& options, Terminal& terminal);
int RunAdapter(const BenchOptions& options, const AdapterOptions& adapter, Terminal& terminal);
int RunScript(const BenchOptions& options, const ScriptOptions& script, Terminal& terminal);
int RunConsole(const BenchOptions& options, const ScriptOptions& script, Terminal& terminal);
int RunWatch(const BenchOptions& options, const WatchOptions& watch, Terminal& terminal);
int RunRegulate(const BenchOptions& options, const RegulateOptions& regulate, Terminal& terminal);

} // namespace kalvio::bench
