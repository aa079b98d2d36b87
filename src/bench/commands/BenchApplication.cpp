#include "bench/commands/BenchApplication.h"

#include "bench/terminal/Interrupt.h"
#include "peripheral_network/bus/KvNetTrace.h"

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
      m_lines(terminal.in, terminal.keyboard),
      m_user(terminal, m_lines, options.answers, options.host.unit == UnitKind::None),
      m_traceFile(options.traceFile == "-" ? "" : options.traceFile),
      m_host(TracedOptions()) {
    m_user.onDialogShown = [this](CDialog& dialog) { m_host.WindowsByName().DialogShown(dialog); };
    m_user.onDialogClosed = [this](CDialog& dialog) { m_host.WindowsByName().DialogClosed(dialog); };
    m_host.onTurn = [this] { m_user.AnswerDialog(); };
    m_host.isInterrupted = [this] { return IsInterrupted() || !m_terminal.out; };
    m_host.onDebugLine = [this](const CString& line) {
        if (m_trace != nullptr) {
            m_trace->Note(Trim(line));
        }
        if (onDebugLine) {
            onDebugLine(line);
        }
    };
    if (m_trace != nullptr) {
        SetKvNetTraceHook([this](const CString& text) { TracePeripherals(text); });
    }
}

BenchApplication::~BenchApplication() {
    SetKvNetTraceHook(nullptr);
}

// Names of operations and failures; the frames, which are indented, stand in the line of their exchange.
void BenchApplication::TracePeripherals(const CString& text) {
    if (!text.starts_with(' ') || m_options.traceBytes) {
        m_trace->Note(Trim(text));
    }
}

ReferenceHostOptions BenchApplication::TracedOptions() {
    ReferenceHostOptions options = m_options.host;
    if (m_options.traceFile.empty()) {
        return options;
    }
    options.wrapDriver = [this](DeviceDriver& unit) {
        std::ostream& stream = m_options.traceFile == "-" ? m_terminal.err : m_traceFile.Stream();
        auto trace = std::make_unique<DriverTrace>(
            unit, [&stream](const std::string& line) { stream << line << '\n'; }, m_options.traceBytes);
        m_trace = trace.get();
        return trace;
    };
    return options;
}

// The trace of a bring-up that failed is what its user needs, but an older trace is not given up for it.
ExitCode BenchApplication::SettleTrace(ExitCode code) {
    if (code == kExitOk) {
        return m_traceFile.Publish(m_terminal.err) ? kExitOk : kExitRunFailed;
    }
    if (const std::string left = m_traceFile.Abandon(); !left.empty()) {
        m_terminal.err << "kalvio-bench: the trace of this attempt is in " << left << std::endl;
    }
    return code;
}

ExitCode BenchApplication::BringUp() {
    if (!m_traceFile.Open(m_terminal.err)) {
        return kExitRunFailed;
    }
    const BringUpResult result = m_host.BringUp();
    if (!result.text.empty()) {
        m_terminal.err << "kalvio-bench: " << result.text << std::endl;
    }
    if (!result.note.empty()) {
        m_terminal.err << "kalvio-bench: " << result.note << std::endl;
    }
    return SettleTrace(ExitCodeOf(result.status));
}

bool BenchApplication::IsTraceWhole() {
    return !m_traceFile.Stream().is_open() || m_traceFile.Stream().flush().good();
}

} // namespace kalvio::bench
