#include "bench/commands/ScriptExecution.h"

#include "bench/terminal/Interrupt.h"
#include "platform/Json.h"

namespace kalvio::bench {

namespace {

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

} // namespace

std::string NameOfPlace(const std::string& file) {
    if (file.empty()) {
        return "console";
    }
    return file == kStandardInput ? "standard input" : file;
}

void Complain(const ScriptError& error, const std::string& place, ScriptAnswers& answers, Terminal& terminal,
              const AnswerMembers& members) {
    if (!answers.IsJson()) {
        terminal.err << error.ToText(place) << std::endl;
        return;
    }
    ScriptAnswer answer{
        .line = error.line,
        .always = true,
        .members = {{"column", std::to_string(error.column)}, {"error", JsonText(error.message)}}};
    answer.members.insert(answer.members.end(), members.begin(), members.end());
    answers.Show(answer);
}

ScriptExecution::ScriptExecution(BenchApplication& application, const BenchOptions& options,
                                 const ScriptOptions& script, Terminal& terminal)
    : m_names(application.Host().AutomationObjects()),
      m_host(application.Host()),
      m_runner(m_names, m_host, {terminal.out, options.json, script.quiet}),
      m_application(application),
      m_place(NameOfPlace(script.file)),
      m_terminal(terminal) {}

int ScriptExecution::RunAll(const ParsedScript& script) {
    for (const ScriptError& error : m_runner.Check(script.statements)) {
        Tell(error);
    }
    if (m_faults != 0) {
        return kExitScript;
    }
    for (const ScriptStatement& statement : script.statements) {
        const StatementEnd end = RunOne(statement);
        if (end != StatementEnd::Ok) {
            return ExitCodeOf(end);
        }
    }
    return kExitOk;
}

void ScriptExecution::RunLine(const std::string& text, int line) {
    ParsedScript script;
    ParseScriptLine(text, line, script);
    for (const ScriptError& error : script.errors) {
        Tell(error);
    }
    for (const ScriptStatement& statement : script.statements) {
        RunOne(statement);
    }
    if (script.errors.empty() && script.statements.empty()) {
        Answers().Show({.line = line});
    }
}

void ScriptExecution::Tell(const ScriptError& error, const AnswerMembers& members) {
    ++m_faults;
    Complain(error, m_place, Answers(), m_terminal, members);
}

StatementEnd ScriptExecution::RunOne(const ScriptStatement& statement) {
    m_application.Host().DoMessageLoop();
    const StatementOutcome outcome = m_runner.Run(statement);
    if (outcome.end != StatementEnd::Ok && outcome.end != StatementEnd::Interrupted) {
        Tell(outcome.error, outcome.members);
    }
    if (!outcome.warning.empty() && !Answers().IsJson()) { // a record tells it itself
        m_terminal.err << m_place << ":" << statement.line << ": warning: " << outcome.warning << std::endl;
    }
    return IsInterrupted() ? StatementEnd::Interrupted : outcome.end;
}

} // namespace kalvio::bench
