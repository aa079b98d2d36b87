#pragma once

// The reference host on a terminal: with its questions and answers, Ctrl-C, and a trace of the exchanges.

#include "bench/commands/BenchOptions.h"
#include "bench/commands/ExitCode.h"
#include "bench/output/OutputFile.h"
#include "bench/terminal/LineSource.h"
#include "bench/terminal/Terminal.h"
#include "bench/terminal/TerminalUserInterface.h"
#include "bench/trace/DriverTrace.h"
#include "reference_host/application/ReferenceHost.h"

#include <functional>
#include <memory>

namespace kalvio::bench {

// User-interface thread.
class BenchApplication {
public:
    BenchApplication(const BenchOptions& options, Terminal& terminal);
    ~BenchApplication();
    BenchApplication(const BenchApplication&) = delete;
    BenchApplication& operator=(const BenchApplication&) = delete;

    // Called with every line of the library's debug file, from the thread that writes it; set before
    // BringUp.
    std::function<void(const CString& line)> onDebugLine;

    // Opens the files that the options name and brings the host up; says what went wrong.
    ExitCode BringUp();
    // True unless the trace could not be written to its end.
    [[nodiscard]] bool IsTraceWhole();

    [[nodiscard]] ReferenceHost& Host() { return m_host; }
    [[nodiscard]] TerminalUserInterface& User() { return m_user; }
    [[nodiscard]] LineSource& Lines() { return m_lines; }

private:
    ExitCode SettleTrace(ExitCode code);
    ReferenceHostOptions TracedOptions();
    void TracePeripherals(const CString& text);

    const BenchOptions m_options;
    Terminal& m_terminal;
    LineSource m_lines;
    TerminalUserInterface m_user;
    OutputFile m_traceFile;         // guarded by the trace's lock once it is open
    DriverTrace* m_trace = nullptr; // the host's; null: none was asked for
    ReferenceHost m_host;
};

} // namespace kalvio::bench
