// run and console.

#include "bench/commands/ScriptCommands.h"

#include "bench/commands/WithUnit.h"
#include "bench/terminal/Interrupt.h"
#include "platform/Json.h"
#include "reference_host/script/ReferenceScriptHost.h"
#include "reference_host/script/ScriptRunner.h"

#include <array>
#include <fstream>

namespace kalvio::bench {

namespace {

constexpr std::string_view kStandardInput = "-";

// What messages call the place where lines come from.
std::string NameOf(const std::string& file) {
    if (file.empty())
        return "console";
    return file == kStandardInput ? "standard input" : file;
}

constexpr std::size_t kLargestScript = 0x4000000;

void Complain(const ScriptError& error, const std::string& file, ScriptAnswers& answers, Terminal& terminal) {
    if (answers.IsJson())
        answers.Show(
            {.line = error.line,
             .always = true,
             .members = {{"column", std::to_string(error.column)}, {"error", JsonText(error.message)}}});
    else
        terminal.err << error.ToText(file) << std::endl;
}

// The whole of a stream, which may be a pipe; false when it cannot be read or is no script by its size.
bool ReadAll(std::istream& stream, std::string& text) {
    std::array<char, 0x10000> part{};
    while (stream.read(part.data(), part.size()) || stream.gcount() != 0) {
        text.append(part.data(), static_cast<std::size_t>(stream.gcount()));
        if (text.size() > kLargestScript)
            return false;
    }
    return stream.eof() && !stream.bad();
}

bool ReadScript(const std::string& file, std::string& text, Terminal& terminal) {
    if (file == kStandardInput && ReadAll(terminal.in, text))
        return true;
    std::ifstream stream(file, std::ios::binary);
    if (file != kStandardInput && ReadAll(stream, text))
        return true;
    terminal.err << "kalvio-bench: cannot read " << NameOf(file) << std::endl;
    return false;
}

int ExitCodeOf(StatementEnd end) {
    switch (end) {
    case StatementEnd::Wrong:
        return kExitScript;
    case StatementEnd::RegulationFailed:
    case StatementEnd::ExpectationFailed:
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
          m_file(NameOf(script.file)),
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
        Complain(error, m_file, m_runner.Answers(), m_terminal);
    }

    [[nodiscard]] unsigned Faults() const { return m_faults; }

private:
    StatementEnd RunOne(const ScriptStatement& statement) {
        m_application.Host().DoMessageLoop();
        const StatementOutcome outcome = m_runner.Run(statement);
        if (outcome.end != StatementEnd::Ok && outcome.end != StatementEnd::Interrupted)
            Tell(outcome.error);
        return IsInterrupted() ? StatementEnd::Interrupted : outcome.end;
    }

    ScriptNames m_names;
    ReferenceScriptHost m_host;
    ScriptRunner m_runner;
    BenchApplication& m_application;
    std::string m_file;
    Terminal& m_terminal;
    unsigned m_faults = 0;
};

} // namespace

std::optional<ParsedScript> LoadScript(const BenchOptions& options, const ScriptOptions& script,
                                       Terminal& terminal) {
    std::string text;
    if (!ReadScript(script.file, text, terminal))
        return std::nullopt;
    ParsedScript parsed = ParseScript(text);
    ScriptAnswers answers({terminal.out, options.json});
    for (const ScriptError& error : parsed.errors)
        Complain(error, NameOf(script.file), answers, terminal);
    return parsed.errors.empty() ? std::optional(std::move(parsed)) : std::nullopt;
}

int RunParsedScript(BenchApplication& application, const BenchOptions& options, const ScriptOptions& script,
                    const ParsedScript& parsed, Terminal& terminal) {
    return ScriptExecution(application, options, script, terminal).RunAll(parsed);
}

int RunScript(const BenchOptions& options, const ScriptOptions& script, Terminal& terminal) {
    const std::optional<ParsedScript> parsed = LoadScript(options, script, terminal);
    if (!parsed)
        return kExitScript;
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) {
                        return RunParsedScript(application, options, script, *parsed, terminal);
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
