#include "bench/commands/WithUnit.h"

#include "bench/terminal/Interrupt.h"

namespace kalvio::bench {

int WithUnit(const BenchOptions& options, Terminal& terminal,
             const std::function<int(BenchApplication&)>& work,
             std::function<void(const CString&)> onDebugLine) {
    BenchApplication application(options, terminal);
    application.onDebugLine = std::move(onDebugLine);
    if (const ExitCode code = application.BringUp(); code != kExitOk)
        return code;
    const int code = work(application);
    if (IsInterrupted())
        return kExitInterrupted;
    if (!terminal.out.flush() || !application.IsTraceWhole()) {
        terminal.err << "kalvio-bench: the " << (terminal.out ? "trace" : "output")
                     << " could not be written to its end" << std::endl;
        return kExitRunFailed;
    }
    return code;
}

} // namespace kalvio::bench
