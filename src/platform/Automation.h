#pragma once

// Automation: values, and dispatch tables of names that scripts call, read and set.

#include "platform/Export.h"
#include "platform/Text.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>

class CCmdTarget;

namespace kalvio {

// Kinds of automation values and parameters. Variant is a parameter that takes any value as it is; Object a
// value that is itself a target of automation.
enum class AutomationType {
    Empty,
    Short,
    Long,
    Double,
    Bool,
    String,
    Byte,
    Array,
    Reference,
    Void,
    Variant,
    Object
};

// A name for messages: "short", "long", "double", "BOOL", "string", …
[[nodiscard]] KALVIO_API const char* NameOf(AutomationType type);

} // namespace kalvio

// One automation value. A reference points at a value of the caller, which a method may set.
class KALVIO_API VARIANT {
public:
    using Array = std::vector<VARIANT>;

    VARIANT() = default;
    static VARIANT Short(std::int16_t value);
    static VARIANT Long(std::int32_t value);
    static VARIANT Double(double value);
    static VARIANT Bool(bool value); // -1 or 0 at the edge
    static VARIANT String(CString value);
    static VARIANT Byte(std::uint8_t value);
    static VARIANT FromArray(Array value);
    static VARIANT Reference(VARIANT* target);
    static VARIANT Object(CCmdTarget* object); // not owned

    [[nodiscard]] kalvio::AutomationType Type() const;
    // Conversions as automation makes them: numbers among each other (rounded, halves to the even neighbour;
    // refused when out of range), BOOL and numbers (true is -1; every number but 0 is true), numbers and
    // texts that are numbers, BOOL and the texts "true" and "false". A reference gives what it points at.
    // False leaves `out` alone.
    bool Get(std::int16_t& out) const;
    bool Get(std::int32_t& out) const;
    bool Get(double& out) const;
    bool Get(bool& out) const;
    bool Get(CString& out) const;
    bool Get(std::uint8_t& out) const;
    [[nodiscard]] const Array* GetArray() const;
    [[nodiscard]] VARIANT* GetReference() const;
    [[nodiscard]] CCmdTarget* GetTarget() const; // of an object; null for anything else
    // The value itself, or what the chain of references that begins here ends at; null when it ends nowhere.
    [[nodiscard]] const VARIANT* Resolved() const;
    // For people: numbers in their shortest exact form, texts bare, arrays in brackets.
    [[nodiscard]] CString ToText() const;
    // As JSON; null for the empty value and for numbers that are not finite.
    [[nodiscard]] CString ToJson() const;

private:
    using Storage = std::variant<std::monostate, std::int16_t, std::int32_t, double, bool, CString,
                                 std::uint8_t, std::shared_ptr<Array>, VARIANT*, CCmdTarget*>;
    // What the value is worth as a number; none when it is no number.
    [[nodiscard]] std::optional<double> Number() const;

    explicit VARIANT(Storage value) : m_value(std::move(value)) {}
    Storage m_value;
};

namespace kalvio {

// Whether a value was taken; a refusal says why, with the range or the choices that hold.
struct SetOutcome {
    bool taken = true;
    CString refusal;
    static SetOutcome Refused(CString why) { return {false, std::move(why)}; }
    operator bool() const { return taken; }
};

// Why a request was not carried out. Refused: the object does not take the value; the text holds its range or
// choices. Failed: the member threw; the text says what.
enum class AutomationFault {
    None,
    UnknownName,
    WrongCount,
    WrongType,
    ReadOnly,
    NotAProperty,
    NotAMethod,
    Failed,
    Refused
};

// What an automation request gave: a value, or a fault with a clear text.
struct AutomationResult {
    AutomationFault fault = AutomationFault::None;
    CString text;
    VARIANT value;
    [[nodiscard]] bool Ok() const { return fault == AutomationFault::None; }
};

enum class DispatchKind { Method, Property, ReadOnlyProperty };

// One of the values that a property chooses from.
struct ValueChoice {
    std::int32_t value = 0;
    CString text;
    CString constant; // the script name that stands for the value; empty without one
};

// What a property holds, for programs and people. The limits are those of the moment.
struct ValueDescription {
    CString title;
    CString unit; // empty without one
    CString help;
    double minimum = -std::numeric_limits<double>::infinity();
    double maximum = std::numeric_limits<double>::infinity();
    std::vector<ValueChoice> choices;
};

// One name of a dispatch table. The functions get the object whose table it is.
struct DispatchEntry {
    const char* name = "";
    DispatchKind kind = DispatchKind::Method;
    AutomationType result = AutomationType::Void;
    std::vector<AutomationType> parameters;
    // The arguments are of the parameters' types already.
    std::function<VARIANT(CCmdTarget& object, std::span<const VARIANT> arguments)> call;
    std::function<VARIANT(const CCmdTarget& object)> get;
    std::function<SetOutcome(CCmdTarget& object, const VARIANT& value)> set;
    std::function<ValueDescription(const CCmdTarget& object)> describe; // may be empty
};

using DispatchTable = std::vector<DispatchEntry>;

// The least number of letters that must be put in, taken out or replaced to make one name of the other,
// without case; at most `limit`, which also bounds the work. Any thread.
[[nodiscard]] KALVIO_API std::size_t EditDistance(std::string_view a, std::string_view b,
                                                  std::size_t limit = SIZE_MAX);

} // namespace kalvio

// The base of every object that scripts reach. Calls run on the host's user-interface thread. Unknown
// names, wrong arguments and setting a read-only property give a fault, never an exception.
class KALVIO_API CCmdTarget {
public:
    virtual ~CCmdTarget() = default;

    // The ordered table of the object's names.
    [[nodiscard]] virtual const kalvio::DispatchTable& GetDispatchMap() const;

    // Names compare without case. Arguments and values are converted to the types of the table. Invoke of a
    // property without arguments reads it; a method is no property. A value that the object does not take is
    // Refused.
    kalvio::AutomationResult Invoke(const CString& name, std::span<const VARIANT> arguments);
    kalvio::AutomationResult GetProperty(const CString& name);
    kalvio::AutomationResult SetProperty(const CString& name, const VARIANT& value);
    // What a name of the table is: its entry (null: no such name), and for a property what it holds.
    [[nodiscard]] const kalvio::DispatchEntry* FindName(const CString& name) const;
    [[nodiscard]] kalvio::ValueDescription DescribeProperty(const kalvio::DispatchEntry& entry) const;
};
