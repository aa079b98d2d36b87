#include "bench/commands/WithUnit.h"

#include "bench/commands/Commands.h"
#include "bench/terminal/Interrupt.h"

namespace kalvio::bench {

int WithUnit(const BenchOptions& options, Terminal& terminal, const UnitWork& work) {
    BenchApplication application(options, terminal);
    application.onDebugLine = work.onDebugLine;
    if (const std::string refusal = work.prepare ? work.prepare(application.Host()) : ""; !refusal.empty()) {
        terminal.err << "kalvio-bench: " << refusal << std::endl;
        return kExitUsage;
    }
    if (const ExitCode code = application.BringUp(); code != kExitOk) {
        return code;
    }
    if (const int code = LoadConfiguration(options, application.Host(), terminal); code != kExitOk) {
        return code;
    }
    if (!options.loadFile.empty() && work.prepare) {
        work.prepare(application.Host()); // what the command line says goes before what the file says
    }
    const int code = work.run(application);
    if (IsInterrupted()) {
        return kExitInterrupted;
    }
    if (!terminal.out.flush() && IsReaderGone()) {
        return kExitOk; // the reader has what it wanted
    }
    if (!terminal.out || !application.IsTraceWhole()) {
        terminal.err << "kalvio-bench: the " << (terminal.out ? "trace" : "output")
                     << " could not be written to its end" << std::endl;
        return kExitRunFailed;
    }
    return code;
}

} // namespace kalvio::bench
