#include "platform/Automation.h"

#include <algorithm>
#include <exception>
#include <numeric>
#include <optional>
#include <utility>

namespace {

using kalvio::AutomationFault;
using kalvio::AutomationResult;
using kalvio::AutomationType;
using kalvio::CompareNoCase;
using kalvio::DispatchEntry;
using kalvio::DispatchKind;
using kalvio::DispatchTable;
using kalvio::Format;

constexpr std::size_t kLongestName = 128; // of the names that are looked at and shown

constexpr const char* kTypeNames[] = {"empty", "short", "long",      "double", "BOOL",  "string",
                                      "byte",  "array", "reference", "void",   "value", "object"};

AutomationResult Fault(AutomationFault fault, CString text) {
    return {fault, std::move(text), {}};
}

const DispatchEntry* FindEntry(const DispatchTable& table, const CString& name) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const DispatchEntry& entry) {
        return CompareNoCase(entry.name, name) == 0;
    });
    return found != table.end() ? &*found : nullptr;
}

AutomationResult UnknownName(const DispatchTable& table, const CString& name) {
    const bool tooLong = name.size() > kLongestName;
    CString text =
        Format("Unknown name \"%s%s\"", name.substr(0, kLongestName).c_str(), tooLong ? "..." : "");
    // A name that shares less than two thirds of its letters is no help, nor is one that nobody types.
    std::size_t nearest = std::min(name.size(), kLongestName) / 3 + 2;
    const char* suggestion = nullptr;
    for (const DispatchEntry& entry : table) {
        const std::size_t distance = kalvio::EditDistance(name, entry.name, nearest);
        if (distance < nearest) {
            nearest = distance;
            suggestion = entry.name;
        }
    }
    return Fault(AutomationFault::UnknownName,
                 suggestion != nullptr ? text + Format("; did you mean \"%s\"?", suggestion) : text + ".");
}

// A value for messages: its type, and what it is where that is short.
CString Describe(const VARIANT& value) {
    const AutomationType type = value.Type();
    if (type == AutomationType::Empty || type == AutomationType::Array || type == AutomationType::Reference) {
        return NameOf(type);
    }
    return Format("%s %s", NameOf(type), value.ToJson().c_str());
}

CString ParameterList(const DispatchEntry& entry) {
    CString list;
    for (const AutomationType parameter : entry.parameters) {
        list += (list.empty() ? " (" : ", ") + CString(NameOf(parameter));
    }
    return list.empty() ? list : list + ")";
}

AutomationResult WrongCount(const DispatchEntry& entry, std::size_t given) {
    const std::size_t wanted = entry.parameters.size();
    return Fault(AutomationFault::WrongCount,
                 Format("\"%s\" takes %zu argument%s%s, but %zu %s given.", entry.name, wanted,
                        wanted == 1 ? "" : "s", ParameterList(entry).c_str(), given,
                        given == 1 ? "was" : "were"));
}

template<typename T>
std::optional<VARIANT> ConvertTo(const VARIANT& value, VARIANT (*make)(T)) {
    T converted{};
    return value.Get(converted) ? std::optional(make(std::move(converted))) : std::nullopt;
}

// The value as the type asked for; none when it cannot be converted.
std::optional<VARIANT> Convert(const VARIANT& value, AutomationType type) {
    switch (type) {
    case AutomationType::Short:
        return ConvertTo(value, VARIANT::Short);
    case AutomationType::Long:
        return ConvertTo(value, VARIANT::Long);
    case AutomationType::Double:
        return ConvertTo(value, VARIANT::Double);
    case AutomationType::Bool:
        return ConvertTo(value, VARIANT::Bool);
    case AutomationType::String:
        return ConvertTo(value, VARIANT::String);
    case AutomationType::Byte:
        return ConvertTo(value, VARIANT::Byte);
    case AutomationType::Array:
        return value.GetArray() != nullptr ? std::optional(VARIANT::FromArray(*value.GetArray()))
                                           : std::nullopt;
    case AutomationType::Reference:
        return value.GetReference() != nullptr ? std::optional(value) : std::nullopt;
    case AutomationType::Variant:
        return value;
    case AutomationType::Object:
        return value.GetTarget() != nullptr ? std::optional(value) : std::nullopt;
    case AutomationType::Empty:
    case AutomationType::Void:
        break;
    }
    return std::nullopt;
}

// Runs a member; what it throws becomes a fault.
template<typename Member>
AutomationResult Run(const DispatchEntry& entry, Member member) {
    try {
        return {AutomationFault::None, {}, member()};
    } catch (const std::exception& error) {
        return Fault(AutomationFault::Failed, Format("\"%s\" failed: %s.", entry.name, error.what()));
    } catch (...) {
        return Fault(AutomationFault::Failed, Format("\"%s\" failed.", entry.name));
    }
}

AutomationResult CallMethod(const DispatchEntry& entry, CCmdTarget& object,
                            std::span<const VARIANT> arguments) {
    if (arguments.size() != entry.parameters.size()) {
        return WrongCount(entry, arguments.size());
    }
    std::vector<VARIANT> converted;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        std::optional<VARIANT> argument = Convert(arguments[at], entry.parameters[at]);
        if (!argument) {
            return Fault(AutomationFault::WrongType,
                         Format("Argument %zu of \"%s\" must be of type %s, but is %s.", at + 1, entry.name,
                                NameOf(entry.parameters[at]), Describe(arguments[at]).c_str()));
        }
        converted.push_back(std::move(*argument));
    }
    return Run(entry, [&] { return entry.call(object, converted); });
}

AutomationResult ReadProperty(const DispatchEntry& entry, const CCmdTarget& object) {
    return Run(entry, [&] { return entry.get(object); });
}

AutomationResult WriteProperty(const DispatchEntry& entry, CCmdTarget& object, const VARIANT& value) {
    const std::optional<VARIANT> converted = Convert(value, entry.result);
    if (!converted) {
        return Fault(AutomationFault::WrongType,
                     Format("\"%s\" must be of type %s, but the value is %s.", entry.name,
                            NameOf(entry.result), Describe(value).c_str()));
    }
    kalvio::SetOutcome outcome;
    AutomationResult result = Run(entry, [&] {
        outcome = entry.set(object, *converted);
        return VARIANT();
    });
    if (result.Ok() && !outcome.taken) {
        return Fault(AutomationFault::Refused,
                     Format("%s refused the value: %s", entry.name, outcome.refusal.c_str()));
    }
    return result;
}

AutomationResult NotAProperty(const DispatchEntry& entry) {
    return Fault(AutomationFault::NotAProperty, Format("\"%s\" is a method, not a property.", entry.name));
}

} // namespace

const char* kalvio::NameOf(AutomationType type) {
    return kTypeNames[static_cast<std::size_t>(type)];
}

std::size_t kalvio::EditDistance(std::string_view a, std::string_view b, std::size_t limit) {
    const std::size_t longer = std::max(a.size(), b.size());
    if (longer - std::min(a.size(), b.size()) >= limit) {
        return limit;
    }
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const bool same = CompareNoCase(a.substr(i, 1), b.substr(j, 1)) == 0;
            const std::size_t changed = diagonal + (same ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
        }
    }
    return std::min(row.back(), limit);
}

const DispatchTable& CCmdTarget::GetDispatchMap() const {
    static const DispatchTable kEmpty;
    return kEmpty;
}

AutomationResult CCmdTarget::Invoke(const CString& name, std::span<const VARIANT> arguments) {
    const DispatchEntry* entry = FindEntry(GetDispatchMap(), name);
    if (entry == nullptr) {
        return UnknownName(GetDispatchMap(), name);
    }
    if (entry->kind == DispatchKind::Method) {
        return CallMethod(*entry, *this, arguments);
    }
    if (!arguments.empty()) {
        return Fault(AutomationFault::NotAMethod,
                     Format("\"%s\" is a property, not a method: it takes no arguments.", entry->name));
    }
    return ReadProperty(*entry, *this);
}

AutomationResult CCmdTarget::GetProperty(const CString& name) {
    const DispatchEntry* entry = FindEntry(GetDispatchMap(), name);
    if (entry == nullptr) {
        return UnknownName(GetDispatchMap(), name);
    }
    return entry->kind == DispatchKind::Method ? NotAProperty(*entry) : ReadProperty(*entry, *this);
}

AutomationResult CCmdTarget::SetProperty(const CString& name, const VARIANT& value) {
    const DispatchEntry* entry = FindEntry(GetDispatchMap(), name);
    if (entry == nullptr) {
        return UnknownName(GetDispatchMap(), name);
    }
    if (entry->kind == DispatchKind::Method) {
        return NotAProperty(*entry);
    }
    if (entry->kind == DispatchKind::ReadOnlyProperty) {
        return Fault(AutomationFault::ReadOnly, Format("\"%s\" is read-only.", entry->name));
    }
    return WriteProperty(*entry, *this, value);
}

const DispatchEntry* CCmdTarget::FindName(const CString& name) const {
    return FindEntry(GetDispatchMap(), name);
}

kalvio::ValueDescription CCmdTarget::DescribeProperty(const DispatchEntry& entry) const {
    return entry.describe ? entry.describe(*this) : kalvio::ValueDescription{};
}
