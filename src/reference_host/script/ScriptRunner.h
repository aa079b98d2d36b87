#pragma once

// Checks and carries out script statements.

#include "platform/Text.h"
#include "reference_host/script/Script.h"
#include "reference_host/script/ScriptAnswers.h"
#include "reference_host/script/ScriptHost.h"
#include "reference_host/script/ScriptNames.h"

#include <map>
#include <optional>

namespace kalvio::reference_host {

enum class StatementEnd { Ok, Wrong, RegulationFailed, Interrupted, ExpectationFailed };

struct StatementOutcome {
    StatementEnd end = StatementEnd::Ok;
    ScriptError error;       // of a wrong statement, a failed regulation or expectation
    AnswerMembers members{}; // of the record that tells the error
    CString warning{};       // of a statement that was carried out, but not as its words say
};

// User-interface thread.
class ScriptRunner {
public:
    ScriptRunner(const ScriptNames& names, ScriptHost& host, ScriptOutput output)
        : m_names(names), m_host(host), m_answers(output) {}

    // What is wrong with the statements before any of them runs: names, kinds, numbers of arguments.
    [[nodiscard]] std::vector<ScriptError> Check(const std::vector<ScriptStatement>& statements) const;

    // Carries a statement out and shows its answer; an error is left to the caller to show.
    StatementOutcome Run(const ScriptStatement& statement);

    [[nodiscard]] ScriptAnswers& Answers() { return m_answers; }

private:
    struct CaseLess {
        bool operator()(const std::string& a, const std::string& b) const { return CompareNoCase(a, b) < 0; }
    };
    // Out-parameters of methods, by name.
    using Variables = std::map<std::string, VARIANT, CaseLess>;

    // The first thing that is wrong, if any. `known` gains the statement's variables.
    std::optional<ScriptError> CheckStatement(const ScriptStatement& statement, Variables& known) const;
    std::optional<ScriptError> CheckCall(const ScriptStatement& statement, Variables& known) const;
    std::optional<ScriptError> CheckSet(const ScriptStatement& statement) const;
    std::optional<ScriptError> CheckValue(const ScriptStatement& statement, const ScriptValue& value,
                                          const Variables& known) const;

    StatementOutcome RunCall(const ScriptStatement& statement);
    StatementOutcome RunSet(const ScriptStatement& statement);
    StatementOutcome RunPrint(const ScriptStatement& statement);
    StatementOutcome RunWait(const ScriptStatement& statement);
    StatementOutcome RunWaitRegulation(const ScriptStatement& statement);
    StatementOutcome RunMeasure(const ScriptStatement& statement);
    StatementOutcome RunExpect(const ScriptStatement& statement);
    StatementOutcome RunFile(const ScriptStatement& statement);
    StatementOutcome RunWindow(const ScriptStatement& statement);
    StatementOutcome RunSweep(const ScriptStatement& statement);

    std::optional<ScriptError> Evaluate(const ScriptStatement& statement, const ScriptValue& value,
                                        VARIANT& result);
    std::optional<ScriptError> EvaluateNumber(const ScriptStatement& statement, const ScriptValue& value,
                                              double& number);
    std::optional<ScriptError> MakeArguments(const ScriptStatement& statement, const DispatchEntry& entry,
                                             std::vector<VARIANT>& arguments);
    void ShowValue(const ScriptStatement& statement, const char* name, const VARIANT& value,
                   const CString& warning = {});

    const ScriptNames& m_names;
    ScriptHost& m_host;
    ScriptAnswers m_answers;
    Variables m_variables;
};

} // namespace kalvio::reference_host
