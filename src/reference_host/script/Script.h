#pragma once

// The language of scripts: one automation call a line.
//
//     REG_Result = REG_RESULT_RMSAMPLITUDE   # sets a property
//     HW_GetMainTemp                         # reads a property or calls a method
//     HW_GetMainCalibString(0, 32)           # calls; the brackets may be left away
//     wait 100                               # milliseconds
//     wait-regulation                        # until the regulation has ended
//     print "temperature ", HW_GetMainTemp   # texts, numbers, names
//
// Parsing has no side effects and needs nothing but the text.

#include "platform/Automation.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kalvio::reference_host {

// What is wrong with a line.
struct ScriptError {
    int line = 0;
    int column = 0; // from 1; 0 when the whole line is meant
    std::string message;

    // "file:3:14: message".
    [[nodiscard]] std::string ToText(std::string_view file) const;
};

// A value as written: a literal, or the name of a property or variable.
struct ScriptValue {
    std::variant<VARIANT, std::string> content;
    int column = 0;

    [[nodiscard]] const std::string* Name() const { return std::get_if<std::string>(&content); }
    [[nodiscard]] const VARIANT* Literal() const { return std::get_if<VARIANT>(&content); }
};

enum class StatementKind { Call, Set, Print, Wait, WaitRegulation };

// The words of the script host.
inline constexpr std::string_view kWordPrint = "print";
inline constexpr std::string_view kWordWait = "wait";
inline constexpr std::string_view kWordWaitRegulation = "wait-regulation";

struct ScriptStatement {
    StatementKind kind = StatementKind::Call;
    int line = 0;
    int column = 0; // of the name
    std::string name;
    std::vector<ScriptValue> arguments; // of a call or print; the one value of a set or wait
};

struct ParsedScript {
    std::vector<ScriptStatement> statements;
    std::vector<ScriptError> errors;
};

// One line; nothing is added for an empty one.
void ParseScriptLine(std::string_view text, int line, ParsedScript& script);
ParsedScript ParseScript(std::string_view text);

} // namespace kalvio::reference_host
