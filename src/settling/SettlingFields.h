#pragma once

// What is fixed about the settling document: its groups, its 50 fields, and which results belong to which
// group.

#include "host/FieldDetails.h"
#include "settling/SettlingDetails.h"

#include <span>

namespace kalvio {

// One group: its caption's string id (the descriptions of its fields follow it) and its automation stem.
struct SettlingGroupInfo {
    unsigned captionId;
    const char* automationStem;
    double defaultTolerance; // percent
    int defaultType;
};

[[nodiscard]] const SettlingGroupInfo& InfoOf(int group);

// 50 entries, index 5 * group + field.
[[nodiscard]] std::span<const FieldDetails> SettlingFieldTable();

// The group of a result; 0 for every result that no group names.
[[nodiscard]] int SettlingGroupOfResult(int resultID);

// The last word of a field's automation name: "Convergence", "Tolerance", …
[[nodiscard]] const char* AutomationSuffixOf(int field);

} // namespace kalvio
