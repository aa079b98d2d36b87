#pragma once

// A script or a console at work: the same statements on the same objects.

#include "bench/commands/BenchApplication.h"
#include "bench/commands/Commands.h"
#include "reference_host/script/ReferenceScriptHost.h"
#include "reference_host/script/ScriptRunner.h"

namespace kalvio::bench {

// What messages call the place where lines come from.
std::string NameOfPlace(const std::string& file);
// Tells what is wrong with a line: as a record with these members besides, or on standard error.
void Complain(const ScriptError& error, const std::string& place, ScriptAnswers& answers, Terminal& terminal,
              const AnswerMembers& members = {});

// User-interface thread.
class ScriptExecution {
public:
    ScriptExecution(BenchApplication& application, const BenchOptions& options, const ScriptOptions& script,
                    Terminal& terminal);

    // Checks everything, then runs statement after statement until one fails; an exit code.
    int RunAll(const ParsedScript& script);
    // Runs a line by itself. As JSON every line gives one record, an empty one too.
    void RunLine(const std::string& text, int line);
    void Tell(const ScriptError& error, const AnswerMembers& members = {});

    [[nodiscard]] ScriptAnswers& Answers() { return m_runner.Answers(); }
    [[nodiscard]] const ScriptNames& Names() const { return m_names; }
    [[nodiscard]] unsigned Faults() const { return m_faults; } // told so far

private:
    StatementEnd RunOne(const ScriptStatement& statement);

    ScriptNames m_names;
    ReferenceScriptHost m_host;
    ScriptRunner m_runner;
    BenchApplication& m_application;
    std::string m_place;
    Terminal& m_terminal;
    unsigned m_faults = 0;
};

} // namespace kalvio::bench
