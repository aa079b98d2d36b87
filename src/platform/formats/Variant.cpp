#include "platform/Automation.h"
#include "platform/Json.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

namespace {

using kalvio::AutomationType;

// References that point at references; a ring of them must not hang.
constexpr int kDeepestReference = 8;

// The value that a chain of references ends at; null when it ends nowhere.
const VARIANT* Resolve(const VARIANT* value) {
    for (int depth = 0; value != nullptr && value->Type() == AutomationType::Reference; ++depth) {
        value = depth < kDeepestReference ? value->GetReference() : nullptr;
    }
    return value;
}

std::optional<double> ParseWholeNumber(std::string_view text) {
    const CString trimmed = kalvio::Trim(text);
    const char* begin = trimmed.data() + (trimmed.starts_with('+') ? 1 : 0);
    const char* end = trimmed.data() + trimmed.size();
    double value = 0.0;
    const auto result = std::from_chars(begin, end, value);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

// What a value is worth as a number; a true BOOL is -1.
struct AsNumber {
    std::optional<double> operator()(bool value) const { return value ? -1.0 : 0.0; }
    std::optional<double> operator()(const CString& value) const { return ParseWholeNumber(value); }
    template<typename T>
    std::optional<double> operator()(const T& value) const {
        if constexpr (std::is_arithmetic_v<T>) {
            return static_cast<double>(value);
        } else {
            return std::nullopt;
        }
    }
};

struct AsText {
    CString operator()(std::monostate) const { return {}; }
    CString operator()(bool value) const { return value ? "true" : "false"; }
    CString operator()(double value) const { return kalvio::ShortestText(value); }
    CString operator()(const CString& value) const { return value; }
    CString operator()(const std::shared_ptr<VARIANT::Array>& value) const;
    CString operator()(VARIANT* value) const;
    CString operator()(CCmdTarget*) const { return "object"; }
    template<typename T>
    CString operator()(const T& value) const {
        return std::to_string(value);
    }
};

struct AsJson : AsText {
    using AsText::operator();
    CString operator()(std::monostate) const { return "null"; }
    CString operator()(double value) const { return kalvio::JsonNumber(value); }
    CString operator()(const CString& value) const { return kalvio::JsonText(value); }
    CString operator()(const std::shared_ptr<VARIANT::Array>& value) const;
    CString operator()(VARIANT* value) const;
    CString operator()(CCmdTarget*) const { return "null"; }
};

template<typename Convert>
CString InBrackets(const VARIANT::Array& values, const char* separator, Convert convert) {
    CString out = "[";
    for (std::size_t at = 0; at < values.size(); ++at) {
        out += at == 0 ? "" : separator;
        out += convert(values[at]);
    }
    return out + "]";
}

CString AsText::operator()(const std::shared_ptr<VARIANT::Array>& value) const {
    return InBrackets(*value, ", ", [](const VARIANT& element) { return element.ToText(); });
}

CString AsText::operator()(VARIANT* value) const {
    const VARIANT* target = Resolve(value);
    return target != nullptr ? target->ToText() : CString();
}

CString AsJson::operator()(const std::shared_ptr<VARIANT::Array>& value) const {
    return InBrackets(*value, ",", [](const VARIANT& element) { return element.ToJson(); });
}

CString AsJson::operator()(VARIANT* value) const {
    const VARIANT* target = Resolve(value);
    return target != nullptr ? target->ToJson() : "null";
}

// Rounds to the nearest integer, halves to the even one.
template<typename Integer>
bool GetRounded(std::optional<double> number, Integer& out) {
    if (!number || !std::isfinite(*number)) {
        return false;
    }
    const double rounded = std::nearbyint(*number);
    if (rounded < std::numeric_limits<Integer>::lowest() || rounded > std::numeric_limits<Integer>::max()) {
        return false;
    }
    out = static_cast<Integer>(rounded);
    return true;
}

} // namespace

VARIANT VARIANT::Object(CCmdTarget* object) {
    return VARIANT(Storage(object));
}

VARIANT VARIANT::Short(std::int16_t value) {
    return VARIANT(Storage(value));
}

VARIANT VARIANT::Long(std::int32_t value) {
    return VARIANT(Storage(value));
}

VARIANT VARIANT::Double(double value) {
    return VARIANT(Storage(value));
}

VARIANT VARIANT::Bool(bool value) {
    return VARIANT(Storage(value));
}

VARIANT VARIANT::String(CString value) {
    return VARIANT(Storage(std::move(value)));
}

VARIANT VARIANT::Byte(std::uint8_t value) {
    return VARIANT(Storage(value));
}

VARIANT VARIANT::FromArray(Array value) {
    return VARIANT(Storage(std::make_shared<Array>(std::move(value))));
}

VARIANT VARIANT::Reference(VARIANT* target) {
    return VARIANT(Storage(target));
}

AutomationType VARIANT::Type() const {
    constexpr AutomationType kTypes[] = {
        AutomationType::Empty,     AutomationType::Short,  AutomationType::Long, AutomationType::Double,
        AutomationType::Bool,      AutomationType::String, AutomationType::Byte, AutomationType::Array,
        AutomationType::Reference, AutomationType::Object};
    static_assert(std::size(kTypes) == std::variant_size_v<Storage>);
    return kTypes[m_value.index()];
}

std::optional<double> VARIANT::Number() const {
    const VARIANT* value = Resolve(this);
    return value != nullptr ? std::visit(AsNumber(), value->m_value) : std::nullopt;
}

bool VARIANT::Get(std::int16_t& out) const {
    return GetRounded(Number(), out);
}

bool VARIANT::Get(std::int32_t& out) const {
    return GetRounded(Number(), out);
}

bool VARIANT::Get(std::uint8_t& out) const {
    return GetRounded(Number(), out);
}

bool VARIANT::Get(double& out) const {
    const std::optional<double> number = Number();
    out = number.value_or(out);
    return number.has_value();
}

bool VARIANT::Get(bool& out) const {
    const VARIANT* value = Resolve(this);
    const auto* text = value != nullptr ? std::get_if<CString>(&value->m_value) : nullptr;
    const CString word = text != nullptr ? kalvio::Trim(*text) : CString();
    const bool isTrue = kalvio::CompareNoCase(word, "true") == 0;
    if (isTrue || kalvio::CompareNoCase(word, "false") == 0) {
        out = isTrue;
        return true;
    }
    const std::optional<double> number = Number();
    if (!number || std::isnan(*number)) {
        return false;
    }
    out = *number != 0.0;
    return true;
}

bool VARIANT::Get(CString& out) const {
    const VARIANT* value = Resolve(this);
    if (value == nullptr || value->Type() == AutomationType::Empty ||
        value->Type() == AutomationType::Array) {
        return false;
    }
    out = value->ToText();
    return true;
}

const VARIANT::Array* VARIANT::GetArray() const {
    const VARIANT* value = Resolve(this);
    const auto* array = value != nullptr ? std::get_if<std::shared_ptr<Array>>(&value->m_value) : nullptr;
    return array != nullptr ? array->get() : nullptr;
}

VARIANT* VARIANT::GetReference() const {
    VARIANT* const* target = std::get_if<VARIANT*>(&m_value);
    return target != nullptr ? *target : nullptr;
}

CCmdTarget* VARIANT::GetTarget() const {
    CCmdTarget* const* target = std::get_if<CCmdTarget*>(&m_value);
    return target != nullptr ? *target : nullptr;
}

const VARIANT* VARIANT::Resolved() const {
    return Resolve(this);
}

CString VARIANT::ToText() const {
    return std::visit(AsText(), m_value);
}

CString VARIANT::ToJson() const {
    return std::visit(AsJson(), m_value);
}
