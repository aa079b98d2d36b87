#include "reference_host/script/ScriptNames.h"

#include "platform/Text.h"
#include "reference_host/script/Script.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kalvio::reference_host {

ScriptTarget ScriptNames::Find(std::string_view name) const {
    for (CCmdTarget* object : m_objects) {
        for (const DispatchEntry& entry : object->GetDispatchMap()) {
            if (CompareNoCase(entry.name, name) == 0)
                return {object, &entry};
        }
    }
    return {};
}

std::string ScriptNames::Nearest(std::string_view name) const {
    std::size_t best = std::max<std::size_t>(2, name.size() / 3) + 1;
    std::string nearest;
    const auto consider = [&](std::string_view candidate) {
        if (const std::size_t distance = EditDistance(name, candidate); distance < best) {
            best = distance;
            nearest = candidate;
        }
    };
    for (const std::string_view word : {kWordPrint, kWordWait, kWordWaitRegulation})
        consider(word);
    for (const CCmdTarget* object : m_objects) {
        for (const DispatchEntry& entry : object->GetDispatchMap())
            consider(entry.name);
    }
    return nearest;
}

std::string ScriptNames::DescribeUnknown(const std::string& name) const {
    const std::string unknown = Format("unknown name \"%s\"", name.c_str());
    const std::string nearest = Nearest(name);
    return nearest.empty() ? unknown : unknown + "; did you mean " + nearest + "?";
}

std::size_t EditDistance(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j + 1] + 1, row[j] + 1, replaced});
        }
    }
    return row.back();
}

std::string DescribeEntry(const DispatchEntry& entry) {
    std::string types;
    for (const AutomationType type : entry.parameters)
        types += (types.empty() ? "" : ", ") + std::string(NameOf(type));
    return Format("%s(%s)", entry.name, types.c_str());
}

} // namespace kalvio::reference_host
