#pragma once

// Automation: values, and dispatch tables of names that scripts call, read and set.

#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace kalvio {

// Kinds of automation values and parameters.
enum class AutomationType { Empty, Short, Long, Double, Bool, String, Byte, Array, Reference, Void };

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
    // For people: numbers in their shortest exact form, texts bare, arrays in brackets.
    [[nodiscard]] CString ToText() const;
    // As JSON; null for the empty value and for numbers that are not finite.
    [[nodiscard]] CString ToJson() const;

private:
    using Storage = std::variant<std::monostate, std::int16_t, std::int32_t, double, bool, CString,
                                 std::uint8_t, std::shared_ptr<Array>, VARIANT*>;
    // What the value is worth as a number; none when it is no number.
    [[nodiscard]] std::optional<double> Number() const;

    explicit VARIANT(Storage value) : m_value(std::move(value)) {}
    Storage m_value;
};

namespace kalvio {

// Why a request was refused. Failed: the member threw; the text says what.
enum class AutomationFault {
    None,
    UnknownName,
    WrongCount,
    WrongType,
    ReadOnly,
    NotAProperty,
    NotAMethod,
    Failed
};

// What an automation request gave: a value, or a fault with a clear text.
struct AutomationResult {
    AutomationFault fault = AutomationFault::None;
    CString text;
    VARIANT value;
    [[nodiscard]] bool Ok() const { return fault == AutomationFault::None; }
};

enum class DispatchKind { Method, Property, ReadOnlyProperty };

// One name of a dispatch table, without its object's type.
struct DispatchEntry {
    const char* name = "";
    DispatchKind kind = DispatchKind::Method;
    AutomationType result = AutomationType::Void;
    std::vector<AutomationType> parameters;
    std::function<VARIANT(void* object, std::span<const VARIANT> arguments)>
        call; // arguments already of the right types
    std::function<VARIANT(void* object)> get;
    std::function<void(void* object, const VARIANT& value)> set;
};

using DispatchTable = std::vector<DispatchEntry>;

} // namespace kalvio

// The base of every object that scripts reach. Calls run on the host's user-interface thread. Unknown
// names, wrong arguments and setting a read-only property give a fault, never an exception.
class KALVIO_API CCmdTarget {
public:
    virtual ~CCmdTarget() = default;

    // The ordered table of the object's names.
    [[nodiscard]] virtual const kalvio::DispatchTable& GetDispatchMap() const;

    // Names compare without case. Arguments and values are converted to the types of the table. Invoke of a
    // property without arguments reads it; a method is no property.
    kalvio::AutomationResult Invoke(const CString& name, std::span<const VARIANT> arguments);
    kalvio::AutomationResult GetProperty(const CString& name);
    kalvio::AutomationResult SetProperty(const CString& name, const VARIANT& value);

protected:
    // What the table's functions get as their object.
    virtual void* DispatchObject() { return this; }
};
