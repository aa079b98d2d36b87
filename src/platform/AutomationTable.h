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
struct TypeOf<VARIANT*> {
    static constexpr AutomationType value = AutomationType::Reference;
};
template<>
struct TypeOf<void> {
    static constexpr AutomationType value = AutomationType::Void;
};

template<typename T>
T Take(const VARIANT& argument) {
    if constexpr (std::is_same_v<T, VARIANT*>) {
        return argument.GetReference();
    } else {
        T value{};
        argument.Get(value);
        return value;
    }
}

template<typename Object, typename Result, typename... Arguments, std::size_t... Index>
VARIANT CallMember(Object& object, Result (Object::*method)(Arguments...), std::span<const VARIANT> arguments,
                   std::index_sequence<Index...>) {
    if constexpr (std::is_void_v<Result>) {
        (object.*method)(Take<std::decay_t<Arguments>>(arguments[Index])...);
        return VARIANT();
    } else {
        return TypeOf<Result>::Make((object.*method)(Take<std::decay_t<Arguments>>(arguments[Index])...));
    }
}

// A method: `Method("HW_GetMainTemp", &CHardware::GetMainBoardTemperature)`.
template<typename Object, typename Result, typename... Arguments>
DispatchEntry Method(const char* name, Result (Object::*method)(Arguments...)) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::Method;
    entry.result = TypeOf<Result>::value;
    entry.parameters = {TypeOf<std::decay_t<Arguments>>::value...};
    entry.call = [method](void* object, [[maybe_unused]] std::span<const VARIANT> arguments) {
        return CallMember(*static_cast<Object*>(object), method, arguments,
                          std::index_sequence_for<Arguments...>{});
    };
    return entry;
}

// A property that scripts may read only.
template<typename Object, typename Value>
DispatchEntry ReadOnly(const char* name, Value (Object::*getter)()) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::ReadOnlyProperty;
    entry.result = TypeOf<Value>::value;
    entry.get = [getter](void* object) {
        return TypeOf<Value>::Make((static_cast<Object*>(object)->*getter)());
    };
    return entry;
}

// A property that scripts may read and set.
template<typename Object, typename Value>
DispatchEntry Property(const char* name, Value (Object::*getter)(), void (Object::*setter)(Value)) {
    DispatchEntry entry = ReadOnly(name, getter);
    entry.kind = DispatchKind::Property;
    entry.set = [setter](void* object, const VARIANT& value) {
        (static_cast<Object*>(object)->*setter)(Take<Value>(value));
    };
    return entry;
}

// A named constant: a read-only property of type short.
inline DispatchEntry Constant(const char* name, std::int16_t value) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::ReadOnlyProperty;
    entry.result = AutomationType::Short;
    entry.get = [value](void*) { return VARIANT::Short(value); };
    return entry;
}

} // namespace kalvio::automation
