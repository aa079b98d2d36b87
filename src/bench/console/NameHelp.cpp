#include "bench/console/NameHelp.h"

#include "platform/Json.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

const char* KindWord(DispatchKind kind) {
    switch (kind) {
    case DispatchKind::Method:
        return "method";
    case DispatchKind::Property:
        return "property";
    case DispatchKind::ReadOnlyProperty:
        break;
    }
    return "read-only property";
}

// "1 to 3600 s"; empty without limits.
std::string LimitsText(const ValueDescription& value) {
    const std::string unit = value.unit.empty() ? "" : " " + value.unit;
    const bool low = std::isfinite(value.minimum);
    const bool high = std::isfinite(value.maximum);
    if (low && high) {
        return ShortestText(value.minimum) + " to " + ShortestText(value.maximum) + unit;
    }
    if (low) {
        return "at least " + ShortestText(value.minimum) + unit;
    }
    return high ? "at most " + ShortestText(value.maximum) + unit : "";
}

std::string ChoiceLine(const ValueChoice& choice) {
    return Format("  %6d  %-28s  %s\n", choice.value, choice.constant.c_str(), choice.text.c_str());
}

Json ChoiceJson(const ValueChoice& choice) {
    Json json{{"value", choice.value}, {"text", choice.text}};
    if (!choice.constant.empty()) {
        json["constant"] = choice.constant;
    }
    return json;
}

void AddText(Json& json, const char* name, const CString& text) {
    if (!text.empty()) {
        json[name] = text;
    }
}

void AddNumber(Json& json, const char* name, double number) {
    if (std::isfinite(number)) {
        json[name] = number;
    }
}

} // namespace

std::string NameLine(const DispatchEntry& entry) {
    const bool method = entry.kind == DispatchKind::Method;
    std::string line =
        Format("%s  %s", method ? DescribeEntry(entry).c_str() : entry.name, KindWord(entry.kind));
    if (entry.result != AutomationType::Void) {
        line += std::string(method ? ", gives " : ", ") + kalvio::NameOf(entry.result);
    }
    return line;
}

std::string NameHelpText(const ScriptTarget& target) {
    const ValueDescription value = target.object->DescribeProperty(*target.entry);
    std::string text = NameLine(*target.entry) + "\n";
    for (const std::string& line : {std::string(value.title), std::string(value.help), LimitsText(value)}) {
        text += line.empty() ? "" : "  " + line + "\n";
    }
    for (const ValueChoice& choice : value.choices) {
        text += ChoiceLine(choice);
    }
    return text;
}

Json NameHelpJson(const ScriptTarget& target) {
    const DispatchEntry& entry = *target.entry;
    const ValueDescription value = target.object->DescribeProperty(entry);
    Json json{{"name", entry.name}, {"kind", KindWord(entry.kind)}};
    if (entry.result != AutomationType::Void) {
        json["type"] = kalvio::NameOf(entry.result);
    }
    if (entry.kind == DispatchKind::Method) {
        json["parameters"] = Json::array();
        for (const AutomationType type : entry.parameters) {
            json["parameters"].push_back(kalvio::NameOf(type));
        }
    }
    AddText(json, "title", value.title);
    AddText(json, "help", value.help);
    AddText(json, "unit", value.unit);
    AddNumber(json, "minimum", value.minimum);
    AddNumber(json, "maximum", value.maximum);
    for (const ValueChoice& choice : value.choices) {
        json["choices"].push_back(ChoiceJson(choice));
    }
    return json;
}

} // namespace kalvio::bench
