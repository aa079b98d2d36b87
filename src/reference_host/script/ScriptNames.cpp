#include "reference_host/script/ScriptNames.h"

#include "platform/Text.h"
#include "reference_host/script/Script.h"
#include "reference_host/script/ScriptTokens.h"

#include <algorithm>
#include <utility>

namespace kalvio::reference_host {

ScriptTarget ScriptNames::Find(std::string_view name) const {
    for (CCmdTarget* object : m_objects) {
        for (const DispatchEntry& entry : object->GetDispatchMap()) {
            if (CompareNoCase(entry.name, name) == 0) {
                return {object, &entry};
            }
        }
    }
    return {};
}

std::vector<ScriptTarget> ScriptNames::All() const {
    std::vector<ScriptTarget> all;
    for (CCmdTarget* object : m_objects) {
        for (const DispatchEntry& entry : object->GetDispatchMap()) {
            all.push_back({object, &entry});
        }
    }
    return all;
}

std::string ScriptNames::Nearest(std::string_view name) const {
    std::size_t best = std::max<std::size_t>(2, std::min(name.size(), kLongestName) / 3) + 1;
    std::string nearest;
    const auto consider = [&](std::string_view candidate) {
        if (const std::size_t distance = EditDistance(name, candidate, best); distance < best) {
            best = distance;
            nearest = candidate;
        }
    };
    for (const std::string_view word : kScriptWords) {
        consider(word);
    }
    for (const CCmdTarget* object : m_objects) {
        for (const DispatchEntry& entry : object->GetDispatchMap()) {
            consider(entry.name);
        }
    }
    return nearest;
}

std::string ScriptNames::DescribeUnknown(const std::string& name) const {
    const bool tooLong = name.size() > kLongestName;
    const std::string unknown =
        Format("unknown name \"%s%s\"", name.substr(0, kLongestName).c_str(), tooLong ? "..." : "");
    const std::string nearest = Nearest(name);
    return nearest.empty() ? unknown : unknown + "; did you mean " + nearest + "?";
}

std::string DescribeEntry(const DispatchEntry& entry) {
    std::string types;
    for (const AutomationType type : entry.parameters) {
        types += (types.empty() ? "" : ", ") + std::string(NameOf(type));
    }
    return Format("%s(%s)", entry.name, types.c_str());
}

} // namespace kalvio::reference_host
