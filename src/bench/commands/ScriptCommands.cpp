// run and console.

#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "bench/output/JsonOutput.h"
#include "bench/terminal/Interrupt.h"
#include "platform/Files.h"
#include "reference_host/script/ReferenceScriptHost.h"
#include "reference_host/script/ScriptRunner.h"

namespace kalvio::bench {

namespace {

constexpr const char* kConsoleName = "console";

void Complain(const ScriptError& error, const std::string& file, bool json, Terminal& terminal) {
    if (json)
        terminal.out << DumpJson({{"line", error.line}, {"column", error.column}, {"error", error.message}},
                                 -1)
                     << std::endl;
    else
        terminal.err << error.ToText(file) << std::endl;
}

bool ReadScript(const std::string& file, std::string& text, Terminal& terminal) {
    std::vector<std::uint8_t> bytes;
    if (ReadFile(file, bytes) != FileStatus::Ok) {
        terminal.err << "kalvio-bench: cannot read " << file << std::endl;
        return false;
    }
    text.assign(bytes.begin(), bytes.end());
    return true;
}

int ExitCodeOf(StatementEnd end) {
    switch (end) {
    case StatementEnd::Wrong:
        return kExitScript;
    case StatementEnd::RegulationFailed:
        return kExitRunFailed;
    case StatementEnd::Interrupted:
        return kExitInterrupted;
    case StatementEnd::Ok:
        break;
    }
    return kExitOk;
}

// A script or a console: the same statements on the same objects.
class ScriptExecution {
public:
    ScriptExecution(BenchApplication& application, const BenchOptions& options, const ScriptOptions& script,
                    Terminal& terminal)
        : m_names(application.Host().AutomationObjects()),
          m_host(application.Host()),
          m_runner(m_names, m_host, {terminal.out, options.json, script.quiet}),
          m_application(application),
          m_file(script.file.empty() ? kConsoleName : script.file),
          m_json(options.json),
          m_terminal(terminal) {}

    int RunAll(const ParsedScript& script) {
        for (const ScriptError& error : m_runner.Check(script.statements))
            Tell(error);
        if (m_faults != 0)
            return kExitScript;
        for (const ScriptStatement& statement : script.statements) {
            const StatementEnd end = RunOne(statement);
            if (end != StatementEnd::Ok)
                return ExitCodeOf(end);
        }
        return kExitOk;
    }

    // Runs lines as they come; a faulty one does not end it.
    void RunLines() {
        for (int line = 1;; ++line) {
            const std::optional<std::string> text =
                m_application.Lines().Take([this] { m_application.Host().Turn(); });
            if (!text)
                return;
            ParsedScript script;
            ParseScriptLine(*text, line, script);
            for (const ScriptError& error : script.errors)
                Tell(error);
            for (const ScriptStatement& statement : script.statements)
                RunOne(statement);
        }
    }

    void Tell(const ScriptError& error) {
        ++m_faults;
        Complain(error, m_file, m_json, m_terminal);
    }

    [[nodiscard]] unsigned Faults() const { return m_faults; }

private:
    StatementEnd RunOne(const ScriptStatement& statement) {
        m_application.Host().DoMessageLoop();
        const StatementOutcome outcome = m_runner.Run(statement);
        if (outcome.end == StatementEnd::Wrong || outcome.end == StatementEnd::RegulationFailed)
            Tell(outcome.error);
        return IsInterrupted() ? StatementEnd::Interrupted : outcome.end;
    }

    ScriptNames m_names;
    ReferenceScriptHost m_host;
    ScriptRunner m_runner;
    BenchApplication& m_application;
    std::string m_file;
    bool m_json;
    Terminal& m_terminal;
    unsigned m_faults = 0;
};

} // namespace

int RunScript(const BenchOptions& options, const ScriptOptions& script, Terminal& terminal) {
    std::string text;
    if (!ReadScript(script.file, text, terminal))
        return kExitScript;
    const ParsedScript parsed = ParseScript(text);
    for (const ScriptError& error : parsed.errors)
        Complain(error, script.file, options.json, terminal);
    if (!parsed.errors.empty())
        return kExitScript;
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) {
                        return ScriptExecution(application, options, script, terminal).RunAll(parsed);
                    }});
}

int RunConsole(const BenchOptions& options, const ScriptOptions& script, Terminal& terminal) {
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) -> int {
                        ScriptExecution execution(application, options, script, terminal);
                        execution.RunLines();
                        return script.strict && execution.Faults() != 0 ? kExitScript : kExitOk;
                    }});
}

} // namespace kalvio::bench
