#include "reference_host/script/ScriptRunner.h"

#include "platform/Json.h"
#include "reference_host/script/StoredValue.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kalvio::reference_host {

namespace {

ScriptError ErrorAt(const ScriptStatement& statement, int column, std::string message) {
    return {statement.line, column, std::move(message)};
}

ScriptError ErrorAt(const ScriptStatement& statement, std::string message) {
    return ErrorAt(statement, statement.column, std::move(message));
}

StatementOutcome OutcomeOf(std::optional<ScriptError> error) {
    if (!error) {
        return {};
    }
    return {StatementEnd::Wrong, std::move(*error)};
}

bool IsOutParameter(const DispatchEntry& entry, std::size_t index) {
    return index < entry.parameters.size() && entry.parameters[index] == AutomationType::Reference;
}

WindowRequest RequestOf(const ScriptStatement& statement) {
    const auto word = [&](std::size_t index) {
        return index < statement.arguments.size()
                   ? std::string(statement.arguments[index].Literal()->ToText())
                   : std::string();
    };
    const std::size_t first = word(0) == "dialog" ? 1 : 2; // of the act's words
    return {word(0), first == 1 ? std::string() : word(1), word(first), word(first + 1), word(first + 2)};
}

const char* Plural(std::size_t count) {
    return count == 1 ? "" : "s";
}

CString SweepTable(const CString& result, const std::vector<SweepRow>& rows) {
    CString text = Format("%7s  %-18s  %14s", "channel", "place", result.c_str());
    for (const SweepRow& row : rows) {
        text += Format("\n%7d  %-18s  %14s  %s", row.channel, row.place.c_str(), row.reading.text.c_str(),
                       row.outcome.c_str());
    }
    return text;
}

CString SweepJson(const std::vector<SweepRow>& rows) {
    CString text;
    for (const SweepRow& row : rows) {
        text += Format("%s{\"channel\":%d,\"place\":%s,\"value\":%s,\"unit\":%s,\"outcome\":%s}",
                       text.empty() ? "" : ",", row.channel, JsonText(row.place).c_str(),
                       row.reading.value ? JsonNumber(*row.reading.value).c_str() : "null",
                       JsonText(row.reading.unit).c_str(), JsonText(row.outcome).c_str());
    }
    return "[" + text + "]";
}

} // namespace

std::vector<ScriptError> ScriptRunner::Check(const std::vector<ScriptStatement>& statements) const {
    std::vector<ScriptError> errors;
    Variables known = m_variables;
    for (const ScriptStatement& statement : statements) {
        if (std::optional<ScriptError> error = CheckStatement(statement, known)) {
            errors.push_back(std::move(*error));
        }
    }
    return errors;
}

std::optional<ScriptError> ScriptRunner::CheckStatement(const ScriptStatement& statement,
                                                        Variables& known) const {
    if (statement.kind == StatementKind::Set) {
        if (std::optional<ScriptError> error = CheckSet(statement)) {
            return error;
        }
    } else if (statement.kind == StatementKind::Call) {
        if (std::optional<ScriptError> error = CheckCall(statement, known)) {
            return error;
        }
    }
    if (statement.kind == StatementKind::Window) {
        const CString refusal = m_host.RefuseWindow(RequestOf(statement));
        return refusal.empty() ? std::nullopt : std::optional(ErrorAt(statement, refusal));
    }
    for (const ScriptValue& value : statement.arguments) {
        if (std::optional<ScriptError> error = CheckValue(statement, value, known)) {
            return error;
        }
    }
    return std::nullopt;
}

std::optional<ScriptError> ScriptRunner::CheckCall(const ScriptStatement& statement, Variables& known) const {
    if (statement.arguments.empty() && known.contains(statement.name)) {
        return std::nullopt;
    }
    const ScriptTarget target = m_names.Find(statement.name);
    if (!target) {
        return ErrorAt(statement, m_names.DescribeUnknown(statement.name));
    }
    const DispatchEntry& entry = *target.entry;
    const std::size_t given = statement.arguments.size();
    if (entry.kind != DispatchKind::Method && given != 0) {
        return ErrorAt(statement, Format("%s is a property and takes no arguments", entry.name));
    }
    if (entry.kind == DispatchKind::Method && given != entry.parameters.size()) {
        const std::size_t wanted = entry.parameters.size();
        return ErrorAt(statement, Format("%s takes %zu argument%s, not %zu", DescribeEntry(entry).c_str(),
                                         wanted, Plural(wanted), given));
    }
    for (std::size_t i = 0; i < given; ++i) {
        const ScriptValue& value = statement.arguments[i];
        if (!IsOutParameter(entry, i)) {
            continue;
        }
        if (value.Name() == nullptr) {
            return ErrorAt(statement, value.column,
                           Format("argument %zu of %s must be a name that takes the value", i + 1,
                                  DescribeEntry(entry).c_str()));
        }
        known.try_emplace(*value.Name());
    }
    return std::nullopt;
}

std::optional<ScriptError> ScriptRunner::CheckSet(const ScriptStatement& statement) const {
    const ScriptTarget target = m_names.Find(statement.name);
    if (!target) {
        return ErrorAt(statement, m_names.DescribeUnknown(statement.name));
    }
    if (target.entry->kind == DispatchKind::Method) {
        return ErrorAt(statement, Format("%s is a method and cannot be set", target.entry->name));
    }
    if (target.entry->kind == DispatchKind::ReadOnlyProperty) {
        return ErrorAt(statement, Format("%s is read-only", target.entry->name));
    }
    return std::nullopt;
}

std::optional<ScriptError> ScriptRunner::CheckValue(const ScriptStatement& statement,
                                                    const ScriptValue& value, const Variables& known) const {
    if (const ScriptQuantity* quantity = value.Quantity()) {
        const CString refusal = m_host.RefuseQuantity(*quantity);
        return refusal.empty() ? std::nullopt : std::optional(ErrorAt(statement, value.column, refusal));
    }
    const std::string* name = value.Name();
    if (name == nullptr || known.contains(*name)) {
        return std::nullopt;
    }
    const ScriptTarget target = m_names.Find(*name);
    if (!target) {
        return ErrorAt(statement, value.column, m_names.DescribeUnknown(*name));
    }
    if (target.entry->kind == DispatchKind::Method && !target.entry->parameters.empty()) {
        return ErrorAt(statement, value.column,
                       Format("%s needs arguments and cannot stand for a value", target.entry->name));
    }
    return std::nullopt;
}

StatementOutcome ScriptRunner::Run(const ScriptStatement& statement) {
    if (std::vector<ScriptError> errors = Check({statement}); !errors.empty()) {
        return {StatementEnd::Wrong, std::move(errors.front())};
    }
    switch (statement.kind) {
    case StatementKind::Set:
        return RunSet(statement);
    case StatementKind::Print:
        return RunPrint(statement);
    case StatementKind::Wait:
        return RunWait(statement);
    case StatementKind::WaitRegulation:
        return RunWaitRegulation(statement);
    case StatementKind::Measure:
        return RunMeasure(statement);
    case StatementKind::Expect:
        return RunExpect(statement);
    case StatementKind::Window:
        return RunWindow(statement);
    case StatementKind::Sweep:
        return RunSweep(statement);
    case StatementKind::Save:
    case StatementKind::Load:
        return RunFile(statement);
    case StatementKind::Call:
        break;
    }
    return RunCall(statement);
}

std::optional<ScriptError> ScriptRunner::Evaluate(const ScriptStatement& statement, const ScriptValue& value,
                                                  VARIANT& result) {
    if (const VARIANT* literal = value.Literal()) {
        result = *literal;
        return std::nullopt;
    }
    if (const ScriptQuantity* quantity = value.Quantity()) {
        const QuantityReading reading = m_host.Measure(*quantity);
        if (!reading.value) {
            return ErrorAt(statement, value.column, quantity->name + " has no value");
        }
        result = VARIANT::Double(*reading.value);
        return std::nullopt;
    }
    const std::string& name = *value.Name();
    if (const auto variable = m_variables.find(name); variable != m_variables.end()) {
        result = variable->second;
        return std::nullopt;
    }
    AutomationResult answer = m_names.Find(name).object->Invoke(name, {});
    if (!answer.Ok()) {
        return ErrorAt(statement, value.column, answer.text);
    }
    result = std::move(answer.value);
    return std::nullopt;
}

std::optional<ScriptError> ScriptRunner::EvaluateNumber(const ScriptStatement& statement,
                                                        const ScriptValue& value, double& number) {
    VARIANT result;
    if (std::optional<ScriptError> error = Evaluate(statement, value, result)) {
        return error;
    }
    if (!result.Get(number) || std::isnan(number)) {
        return ErrorAt(statement, value.column, "\"" + result.ToText() + "\" is no number");
    }
    return std::nullopt;
}

std::optional<ScriptError> ScriptRunner::MakeArguments(const ScriptStatement& statement,
                                                       const DispatchEntry& entry,
                                                       std::vector<VARIANT>& arguments) {
    for (std::size_t i = 0; i < statement.arguments.size(); ++i) {
        const ScriptValue& value = statement.arguments[i];
        VARIANT& argument = arguments.emplace_back();
        if (IsOutParameter(entry, i)) {
            argument = VARIANT::Reference(&m_variables[*value.Name()]);
        } else if (std::optional<ScriptError> error = Evaluate(statement, value, argument)) {
            return error;
        }
    }
    return std::nullopt;
}

StatementOutcome ScriptRunner::RunCall(const ScriptStatement& statement) {
    if (const auto variable = m_variables.find(statement.name);
        variable != m_variables.end() && statement.arguments.empty()) {
        ShowValue(statement, variable->first.c_str(), variable->second);
        return {};
    }
    const ScriptTarget target = m_names.Find(statement.name);
    std::vector<VARIANT> arguments;
    if (std::optional<ScriptError> error = MakeArguments(statement, *target.entry, arguments)) {
        return OutcomeOf(std::move(error));
    }
    const AutomationResult answer = target.object->Invoke(statement.name, arguments);
    if (!answer.Ok()) {
        return OutcomeOf(ErrorAt(statement, answer.text));
    }
    const CString warning = StoredOtherwise(*target.object, *target.entry, arguments, answer.value);
    if (target.entry->result != AutomationType::Void) {
        ShowValue(statement, target.entry->name, answer.value, warning);
    } else {
        m_answers.Show({.line = statement.line, .members = {{"name", JsonText(target.entry->name)}}});
    }
    return {StatementEnd::Ok, {}, {}, warning};
}

StatementOutcome ScriptRunner::RunSet(const ScriptStatement& statement) {
    VARIANT value;
    if (std::optional<ScriptError> error = Evaluate(statement, statement.arguments.front(), value)) {
        return OutcomeOf(std::move(error));
    }
    const ScriptTarget target = m_names.Find(statement.name);
    const AutomationResult answer = target.object->SetProperty(statement.name, value);
    if (answer.fault == AutomationFault::Refused) {
        return OutcomeOf(ErrorAt(statement, answer.text + " The value was " + value.ToText() + "."));
    }
    if (!answer.Ok()) {
        return OutcomeOf(ErrorAt(statement, answer.text));
    }
    m_answers.Show({.line = statement.line,
                    .members = {{"name", JsonText(target.entry->name)}, {"set", value.ToJson()}}});
    return {};
}

StatementOutcome ScriptRunner::RunPrint(const ScriptStatement& statement) {
    CString text;
    for (const ScriptValue& value : statement.arguments) {
        if (const ScriptQuantity* quantity = value.Quantity()) {
            text += m_host.Measure(*quantity).text;
            continue;
        }
        VARIANT part;
        if (std::optional<ScriptError> error = Evaluate(statement, value, part)) {
            return OutcomeOf(std::move(error));
        }
        text += part.ToText();
    }
    m_answers.Show(
        {.line = statement.line, .always = true, .text = text, .members = {{"print", JsonText(text)}}});
    return {};
}

StatementOutcome ScriptRunner::RunWait(const ScriptStatement& statement) {
    double milliseconds = 0.0;
    statement.arguments.front().Literal()->Get(milliseconds);
    const PauseEnd end = m_host.Pause(static_cast<std::uint32_t>(milliseconds));
    const bool done = end == PauseEnd::Done;
    m_answers.Show(
        {.line = statement.line,
         .members = {{"wait", JsonNumber(milliseconds)}, {"interrupted", done ? "false" : "true"}}});
    return {done ? StatementEnd::Ok : StatementEnd::Interrupted, {}};
}

StatementOutcome ScriptRunner::RunWaitRegulation(const ScriptStatement& statement) {
    const RegulationEnd end = m_host.WaitForRegulation();
    if (!end.interrupted && !end.succeeded) {
        return {StatementEnd::RegulationFailed, ErrorAt(statement, end.text)};
    }
    m_answers.Show({.line = statement.line,
                    .members = {{"regulation", JsonText(end.text)},
                                {"interrupted", end.interrupted ? "true" : "false"}}});
    return {end.interrupted ? StatementEnd::Interrupted : StatementEnd::Ok, {}};
}

StatementOutcome ScriptRunner::RunMeasure(const ScriptStatement& statement) {
    const ScriptQuantity& quantity = *statement.arguments.front().Quantity();
    const QuantityReading reading = m_host.Measure(quantity);
    ScriptAnswer answer{.line = statement.line,
                        .text = quantity.name + " = " + reading.text,
                        .members = {{"name", JsonText(quantity.name)}}};
    answer.members.emplace_back("value", reading.value ? JsonNumber(*reading.value) : "null");
    answer.members.emplace_back("unit", JsonText(reading.unit));
    m_answers.Show(answer);
    return {};
}

StatementOutcome ScriptRunner::RunExpect(const ScriptStatement& statement) {
    std::array<double, 3> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (std::optional<ScriptError> error =
                EvaluateNumber(statement, statement.arguments[i], numbers[i])) {
            return OutcomeOf(std::move(error));
        }
    }
    const auto [value, low, high] = numbers;
    if (!(value >= low && value <= high)) {
        return {StatementEnd::ExpectationFailed,
                ErrorAt(statement,
                        Format("expected a value within %s and %s, found %s", ShortestText(low).c_str(),
                               ShortestText(high).c_str(), ShortestText(value).c_str()))};
    }
    m_answers.Show(
        {.line = statement.line,
         .members = {{"expect", JsonNumber(value)}, {"low", JsonNumber(low)}, {"high", JsonNumber(high)}}});
    return {};
}

StatementOutcome ScriptRunner::RunWindow(const ScriptStatement& statement) {
    const WindowRequest request = RequestOf(statement);
    const WindowAnswer answer = m_host.Window(request);
    if (!answer.fault.empty()) {
        return OutcomeOf(ErrorAt(statement, answer.fault));
    }
    ScriptAnswer shown{.line = statement.line,
                       .always = request.verb == "show" || request.verb == "print",
                       .members = {{"window", JsonText(request.window)}, {"verb", JsonText(request.verb)}}};
    if (shown.always) {
        shown.text = answer.text;
    }
    if (!answer.json.empty()) {
        shown.members.emplace_back("content", answer.json);
    }
    m_answers.Show(shown);
    return {};
}

StatementOutcome ScriptRunner::RunFile(const ScriptStatement& statement) {
    const CString file = statement.arguments.front().Literal()->ToText();
    const bool saving = statement.kind == StatementKind::Save;
    const ScriptHost::FileAnswer answer =
        saving ? m_host.SaveConfiguration(file) : m_host.LoadConfiguration(file);
    if (!answer.fault.empty()) {
        return OutcomeOf(ErrorAt(statement, answer.fault));
    }
    m_answers.Show(
        {.line = statement.line,
         .text = (saving ? "saved " : "loaded ") + file +
                 (answer.remark.empty() ? CString() : "; not sent: " + answer.remark),
         .members = {{saving ? "save" : "load", JsonText(file)}, {"not-sent", JsonText(answer.remark)}}});
    return {};
}

StatementOutcome ScriptRunner::RunSweep(const ScriptStatement& statement) {
    const CString array = statement.arguments[0].Literal()->ToText();
    const ScriptQuantity& result = *statement.arguments[1].Quantity();
    const SweepEnd end = m_host.Sweep(array, result);
    const ScriptAnswer answer{.line = statement.line,
                              .always = true,
                              .text = SweepTable(result.name, end.rows),
                              .members = {{"sweep", JsonText(array)},
                                          {"result", JsonText(result.name)},
                                          {"rows", SweepJson(end.rows)},
                                          {"interrupted", end.interrupted ? "true" : "false"}}};
    const auto unsettled = static_cast<std::size_t>(
        std::ranges::count_if(end.rows, [](const SweepRow& row) { return !row.settled; }));
    StatementOutcome outcome;
    if (!end.error.empty()) {
        outcome = {StatementEnd::Wrong, ErrorAt(statement, end.error), {}};
    } else if (end.interrupted) {
        outcome.end = StatementEnd::Interrupted;
    } else if (unsettled != 0) {
        outcome = {StatementEnd::ExpectationFailed,
                   ErrorAt(statement, Format("%s did not settle at %zu of %zu channel%s", result.name.c_str(),
                                             unsettled, end.rows.size(), Plural(end.rows.size()))),
                   {}};
    }
    // A record that tells an error holds the rows too.
    const bool failed = outcome.end == StatementEnd::Wrong || outcome.end == StatementEnd::ExpectationFailed;
    if (failed && end.rows.empty()) {
        return outcome;
    }
    if (failed && m_answers.IsJson()) {
        outcome.members = answer.members;
    } else {
        m_answers.Show(answer);
    }
    return outcome;
}

void ScriptRunner::ShowValue(const ScriptStatement& statement, const char* name, const VARIANT& value,
                             const CString& warning) {
    ScriptAnswer answer{.line = statement.line,
                        .text = CString(name) + " = " + value.ToText(),
                        .members = {{"name", JsonText(name)}}};
    if (const CString json = value.ToJson(); json != "null") { // there is nothing to tell of no value
        answer.members.emplace_back("value", json);
    }
    if (!warning.empty()) {
        answer.members.emplace_back("warning", JsonText(warning));
    }
    m_answers.Show(answer);
}

} // namespace kalvio::reference_host
