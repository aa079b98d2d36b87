#pragma once

// The language of scripts: one automation call a line.
//
//     REG_Result = REG_RESULT_RMSAMPLITUDE   # sets a property
//     HW_GetMainTemp                         # reads a property or calls a method
//     HW_GetMainCalibString(0, 32)           # calls; the brackets may be left away
//     wait 100                               # milliseconds
//     wait-regulation                        # until the regulation has ended
//     read rms                               # measures a result, in its usual unit
//     source gen-ampl                        # what a source is set to
//     save bench.kvc                         # keeps all settings in a file; load takes them from one
//     print "temperature ", HW_GetMainTemp   # texts, numbers, names; also read and source
//     expect read rms within 0.9 1.1         # ends the script unless the value lies there
//     window open adapter                    # and: window show adapter, print, close
//     window act adapter 2900 click          # does to a control, by id or "name", what a user does
//     window dialog 1 click                  # the same for the dialog that comes up next
//     sweep "outputs", read rms              # lets a result settle at every channel of an array; a table
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

// Something that the host measures or puts out, as "read rms" or "source gen-ampl" name it.
enum class QuantityKind { Result, Source };

struct ScriptQuantity {
    QuantityKind kind = QuantityKind::Result;
    std::string name;
};

// A value as written: a literal, the name of a property or variable, or a quantity.
struct ScriptValue {
    std::variant<VARIANT, std::string, ScriptQuantity> content;
    int column = 0;

    [[nodiscard]] const std::string* Name() const { return std::get_if<std::string>(&content); }
    [[nodiscard]] const VARIANT* Literal() const { return std::get_if<VARIANT>(&content); }
    [[nodiscard]] const ScriptQuantity* Quantity() const { return std::get_if<ScriptQuantity>(&content); }
};

enum class StatementKind {
    Call,
    Set,
    Print,
    Wait,
    WaitRegulation,
    Measure,
    Expect,
    Window,
    Sweep,
    Save,
    Load
};

// The words of the script host.
inline constexpr std::string_view kWordPrint = "print";
inline constexpr std::string_view kWordWait = "wait";
inline constexpr std::string_view kWordWaitRegulation = "wait-regulation";
inline constexpr std::string_view kWordRead = "read";
inline constexpr std::string_view kWordSource = "source";
inline constexpr std::string_view kWordExpect = "expect";
inline constexpr std::string_view kWordWindow = "window";
inline constexpr std::string_view kWordSweep = "sweep";
inline constexpr std::string_view kWordSave = "save";
inline constexpr std::string_view kWordLoad = "load";
inline constexpr std::string_view kScriptWords[] = {kWordPrint,  kWordWait,   kWordWaitRegulation, kWordRead,
                                                    kWordSource, kWordExpect, kWordWindow,         kWordSweep,
                                                    kWordSave,   kWordLoad};
inline constexpr std::string_view kWordWithin = "within"; // stands inside an expect

struct ScriptStatement {
    StatementKind kind = StatementKind::Call;
    int line = 0;
    int column = 0; // of the name
    std::string name;
    // Of a call or print; the one value of a set, wait or measure; value, lower and upper bound of an expect;
    // the words of a window statement, as texts; array and result of a sweep.
    std::vector<ScriptValue> arguments;
};

struct ParsedScript {
    std::vector<ScriptStatement> statements;
    std::vector<ScriptError> errors;
};

// One line; nothing is added for an empty one. A byte-order mark before the first line is no part of it.
void ParseScriptLine(std::string_view text, int line, ParsedScript& script);
ParsedScript ParseScript(std::string_view text);

} // namespace kalvio::reference_host
