#include "bench/commands/Commands.h"

#include "bench/commands/ScriptCommands.h"
#include "bench/commands/WithUnit.h"
#include "bench/output/ArrayReport.h"
#include "bench/output/JsonOutput.h"

namespace kalvio::bench {

namespace {

void Print(const CChannelArrayList& arrays, const BenchOptions& options, bool csv, std::ostream& out) {
    if (options.json) {
        out << DumpJson(ArraysJson(arrays)) << std::endl;
    } else if (csv) {
        WriteArraysCsv(out, arrays);
    } else {
        out << ArraysTable(arrays) << std::flush;
    }
}

} // namespace

int RunArrays(const BenchOptions& options, const ArraysOptions& arrays, Terminal& terminal) {
    // What the script says is told aside: the table alone is the output.
    Terminal aside{terminal.in, terminal.err, terminal.err};
    BenchOptions asideOptions = options;
    asideOptions.json = false;
    const ScriptOptions script{.file = arrays.script, .quiet = true};
    std::optional<ParsedScript> parsed;
    if (!script.file.empty()) {
        parsed = LoadScript(asideOptions, script, aside);
        if (!parsed) {
            return kExitScript;
        }
    }
    return WithUnit(
        options, terminal, {.run = [&](BenchApplication& application) -> int {
            const int code =
                parsed ? RunParsedScript(application, asideOptions, script, *parsed, aside) : int{kExitOk};
            if (code == kExitOk) {
                Print(*application.Host().Network().GetChannelArrayList(), options, arrays.csv, terminal.out);
            }
            return code;
        }});
}

} // namespace kalvio::bench
