#pragma once

// The commands of the program. Each returns an exit code and talks through the terminal it is given.

#include "bench/ReferenceHostNames.h"
#include "bench/commands/BenchOptions.h"
#include "bench/terminal/Terminal.h"
#include "reference_host/application/ReferenceHost.h"
#include "reference_host/regulation/RegulationSetup.h"
#include "reference_host/results/ResultCatalogue.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::bench {

struct DemoOptions {
    std::string directory = "demo"; // where the plots go
};

inline constexpr std::string_view kStandardInput = "-"; // as the file of a script

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

struct WindowOptions {
    std::string name;
    std::vector<std::string> acts; // "CONTROL ACT VALUE", carried out before it is shown
    std::string svgFile;
    bool print = false; // the print-out instead of the window
};

struct RegulateOptions {
    RegulationSetup setup;
    std::string plotFile;
    GeneratorOptions generator;
};

struct DownloadOptions {
    std::string file;
    int address = 0;
};

struct ArraysOptions {
    std::string script; // defines the arrays and switches them; empty: none
    bool csv = false;
};

struct ConfigOptions {
    std::string action; // show, check, diff, save
    std::vector<std::string> files;
    bool showGroups = false; // the save table, beside what is saved
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
int RunWindow(const BenchOptions& options, const WindowOptions& window, Terminal& terminal);
int RunWatch(const BenchOptions& options, const WatchOptions& watch, Terminal& terminal);
int RunRegulate(const BenchOptions& options, const RegulateOptions& regulate, Terminal& terminal);
int RunNetwork(const BenchOptions& options, Terminal& terminal);
int RunArrays(const BenchOptions& options, const ArraysOptions& arrays, Terminal& terminal);
int RunDownload(const BenchOptions& options, const DownloadOptions& download, Terminal& terminal);
int RunFirmware(const BenchOptions& options, const std::string& path, Terminal& terminal); // needs no unit

int RunConfig(const BenchOptions& options, const ConfigOptions& config, Terminal& terminal);

// Takes what the options say of configurations into a host that is up: the file that is loaded, the load
// switches, the save table. An exit code.
int LoadConfiguration(const BenchOptions& options, ReferenceHost& host, Terminal& terminal);

} // namespace kalvio::bench
