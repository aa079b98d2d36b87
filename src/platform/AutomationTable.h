#pragma once

// Builds dispatch entries from member pointers: name, kind and types follow from the members.

#include "platform/Automation.h"

#include <tuple>
#include <type_traits>
#include <utility>

namespace kalvio::automation {

template<typename T>
struct TypeOf;
template<>
struct TypeOf<std::int16_t> {
    static constexpr AutomationType value = AutomationType::Short;
    static VARIANT Make(std::int16_t v) { return VARIANT::Short(v); }
};
template<>
struct TypeOf<std::int32_t> {
    static constexpr AutomationType value = AutomationType::Long;
    static VARIANT Make(std::int32_t v) { return VARIANT::Long(v); }
};
template<>
struct TypeOf<double> {
    static constexpr AutomationType value = AutomationType::Double;
    static VARIANT Make(double v) { return VARIANT::Double(v); }
};
template<>
struct TypeOf<bool> {
    static constexpr AutomationType value = AutomationType::Bool;
    static VARIANT Make(bool v) { return VARIANT::Bool(v); }
};
template<>
struct TypeOf<CString> {
    static constexpr AutomationType value = AutomationType::String;
    static VARIANT Make(CString v) { return VARIANT::String(std::move(v)); }
};
template<>
struct TypeOf<std::uint8_t> {
    static constexpr AutomationType value = AutomationType::Byte;
    static VARIANT Make(std::uint8_t v) { return VARIANT::Byte(v); }
};
template<>
struct TypeOf<VARIANT> { // any value as it is
    static constexpr AutomationType value = AutomationType::Variant;
    static VARIANT Make(VARIANT v) { return v; }
};
template<>
struct TypeOf<VARIANT*> {
    static constexpr AutomationType value = AutomationType::Reference;
};
template<>
struct TypeOf<CCmdTarget*> {
    static constexpr AutomationType value = AutomationType::Object;
    static VARIANT Make(CCmdTarget* v) { return VARIANT::Object(v); }
};
template<>
struct TypeOf<void> {
    static constexpr AutomationType value = AutomationType::Void;
};

template<typename T>
T Take(const VARIANT& argument) {
    if constexpr (std::is_same_v<T, VARIANT*>) {
        return argument.GetReference();
    } else if constexpr (std::is_same_v<T, VARIANT>) {
        return argument;
    } else {
        T value{};
        argument.Get(value);
        return value;
    }
}

// What a setter's answer says: nothing means taken; a BOOL or an outcome says it.
template<typename Set>
SetOutcome OutcomeOf(Set set) {
    using Answer = decltype(set());
    if constexpr (std::is_void_v<Answer>) {
        set();
        return {};
    } else if constexpr (std::is_same_v<Answer, SetOutcome>) {
        return set();
    } else {
        return {set() != 0, {}};
    }
}

template<typename Object, typename Result, typename Member, typename... Arguments, std::size_t... Index>
DispatchEntry MethodEntry(const char* name, Member method, std::index_sequence<Index...>) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::Method;
    entry.result = TypeOf<Result>::value;
    entry.parameters = {TypeOf<std::decay_t<Arguments>>::value...};
    entry.call = [method](CCmdTarget& target, [[maybe_unused]] std::span<const VARIANT> arguments) {
        auto& object = static_cast<Object&>(target);
        if constexpr (std::is_void_v<Result>) {
            (object.*method)(Take<std::decay_t<Arguments>>(arguments[Index])...);
            return VARIANT();
        } else {
            return TypeOf<Result>::Make((object.*method)(Take<std::decay_t<Arguments>>(arguments[Index])...));
        }
    };
    return entry;
}

// A method: `Method("HW_GetMainTemp", &CHardware::GetMainBoardTemperature)`.
template<typename Object, typename Result, typename... Arguments>
DispatchEntry Method(const char* name, Result (Object::*method)(Arguments...)) {
    return MethodEntry<Object, Result, decltype(method), Arguments...>(
        name, method, std::index_sequence_for<Arguments...>{});
}
template<typename Object, typename Result, typename... Arguments>
DispatchEntry Method(const char* name, Result (Object::*method)(Arguments...) const) {
    return MethodEntry<const Object, Result, decltype(method), Arguments...>(
        name, method, std::index_sequence_for<Arguments...>{});
}

template<typename Object, typename Value, typename Getter>
DispatchEntry GetterEntry(const char* name, Getter getter) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::ReadOnlyProperty;
    entry.result = TypeOf<Value>::value;
    // A getter that is not const belongs to an object that is not: tables are reached through the object.
    entry.get = [getter](const CCmdTarget& target) {
        return TypeOf<Value>::Make((static_cast<Object&>(const_cast<CCmdTarget&>(target)).*getter)());
    };
    return entry;
}

// A property that scripts may read only.
template<typename Object, typename Value>
DispatchEntry ReadOnly(const char* name, Value (Object::*getter)()) {
    return GetterEntry<Object, Value>(name, getter);
}
template<typename Object, typename Value>
DispatchEntry ReadOnly(const char* name, Value (Object::*getter)() const) {
    return GetterEntry<const Object, Value>(name, getter);
}

template<typename Object, typename Taken, typename Answer>
DispatchEntry Settable(DispatchEntry entry, Answer (Object::*setter)(Taken)) {
    entry.kind = DispatchKind::Property;
    entry.set = [setter](CCmdTarget& target, const VARIANT& value) {
        return OutcomeOf(
            [&] { return (static_cast<Object&>(target).*setter)(Take<std::decay_t<Taken>>(value)); });
    };
    return entry;
}

// A property that scripts may read and set. The setter answers nothing, a BOOL or a SetOutcome.
template<typename Object, typename Value, typename Taken, typename Answer>
DispatchEntry Property(const char* name, Value (Object::*getter)(), Answer (Object::*setter)(Taken)) {
    return Settable(ReadOnly(name, getter), setter);
}
template<typename Object, typename Value, typename Taken, typename Answer>
DispatchEntry Property(const char* name, Value (Object::*getter)() const, Answer (Object::*setter)(Taken)) {
    return Settable(ReadOnly(name, getter), setter);
}

// A property that is an object of its own: `getter` answers a pointer to it.
template<typename Object, typename Part>
DispatchEntry SubObject(const char* name, Part* (Object::*getter)()) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::ReadOnlyProperty;
    entry.result = AutomationType::Object;
    entry.get = [getter](const CCmdTarget& target) {
        return VARIANT::Object((static_cast<Object&>(const_cast<CCmdTarget&>(target)).*getter)());
    };
    return entry;
}

// A named constant: a read-only property of type short.
inline DispatchEntry Constant(const char* name, std::int16_t value) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::ReadOnlyProperty;
    entry.result = AutomationType::Short;
    entry.get = [value](const CCmdTarget&) { return VARIANT::Short(value); };
    return entry;
}

} // namespace kalvio::automation
