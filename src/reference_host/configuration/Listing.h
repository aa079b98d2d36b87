#pragma once

// Configurations as text: stable, one line a field, so that two of them can be compared.

#include "reference_host/configuration/Sections.h"

#include <optional>
#include <vector>

namespace kalvio::reference_host {

struct ListedField {
    CString section;
    CString name;
    CString value;     // for people, without its unit
    CString unit;      // empty: none
    CString json;      // the value
    bool saved = true; // whether its group goes into files

    // "value unit".
    [[nodiscard]] CString Shown() const { return unit.empty() ? value : value + " " + unit; }
};

// What the documents hold, in the order of their archives. User-interface thread.
[[nodiscard]] std::vector<ListedField> ListFields(const Documents& documents);

// One heading a section and one aligned line a field.
[[nodiscard]] CString ListingText(const std::vector<ListedField>& fields);
// {"settling":[{"name":…,"value":…,"unit":…,"saved":…},…],…}
[[nodiscard]] CString ListingJson(const std::vector<ListedField>& fields);

struct Difference {
    CString section;
    CString name;
    std::optional<CString> before; // none: only the other has the field
    std::optional<CString> after;
};

// By field, in the order of the first and then of what only the second has.
[[nodiscard]] std::vector<Difference> Compare(const std::vector<ListedField>& before,
                                              const std::vector<ListedField>& after);
[[nodiscard]] CString DifferencesText(const std::vector<Difference>& differences);
[[nodiscard]] CString DifferencesJson(const std::vector<Difference>& differences);

} // namespace kalvio::reference_host
