#include "bench/commands/BenchApplication.h"

#include "bench/terminal/Interrupt.h"

#include <cerrno>
#include <cstring>

namespace kalvio::bench {

namespace {

ExitCode ExitCodeOf(BringUpStatus status) {
    switch (status) {
    case BringUpStatus::Ok:
        return kExitOk;
    case BringUpStatus::NoImages:
        return kExitRunFailed;
    case BringUpStatus::NoUnit:
        return kExitNoUnit;
    case BringUpStatus::Interrupted:
        break;
    }
    return kExitInterrupted;
}

} // namespace

BenchApplication::BenchApplication(const BenchOptions& options, Terminal& terminal)
    : m_options(options),
      m_terminal(terminal),
      m_lines(terminal.in),
      m_user(terminal, m_lines, options.answers, options.host.unit == UnitKind::None),
      m_host(TracedOptions()) {
    m_host.onTurn = [this] { m_user.AnswerDialog(); };
    m_host.isInterrupted = [this] { return IsInterrupted() || !m_terminal.out; };
    m_host.onDebugLine = [this](const CString& line) {
        if (m_trace != nullptr)
            m_trace->Note(Trim(line));
        if (onDebugLine)
            onDebugLine(line);
    };
}

ReferenceHostOptions BenchApplication::TracedOptions() {
    ReferenceHostOptions options = m_options.host;
    if (m_options.traceFile.empty())
        return options;
    options.wrapDriver = [this](DeviceDriver& unit) {
        std::ostream& stream = m_options.traceFile == "-" ? m_terminal.err : m_traceFile;
        auto trace = std::make_unique<DriverTrace>(
            unit, [&stream](const std::string& line) { stream << line << '\n'; }, m_options.traceBytes);
        m_trace = trace.get();
        return trace;
    };
    return options;
}

bool BenchApplication::OpenTrace() {
    if (m_options.traceFile.empty() || m_options.traceFile == "-")
        return true;
    m_traceFile.open(m_options.traceFile);
    if (m_traceFile)
        return true;
    m_terminal.err << "kalvio-bench: cannot write " << m_options.traceFile << ": " << std::strerror(errno)
                   << std::endl;
    return false;
}

ExitCode BenchApplication::BringUp() {
    if (!OpenTrace())
        return kExitRunFailed;
    const BringUpResult result = m_host.BringUp();
    if (!result.text.empty())
        m_terminal.err << "kalvio-bench: " << result.text << std::endl;
    return ExitCodeOf(result.status);
}

bool BenchApplication::IsTraceWhole() const {
    return !m_traceFile.is_open() || m_traceFile.good();
}

} // namespace kalvio::bench
