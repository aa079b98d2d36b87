#pragma once

// What is fixed about the settling document: its groups, the rows of its 50 fields, and which results belong
// to which group.

#include "host/FieldTable.h"
#include "settling/SettlingDetails.h"

#include <span>

namespace kalvio {

// 50 rows, index 5 * group + field.
[[nodiscard]] std::span<const FieldRow> SettlingRows();
// Their details alone, in the same order.
[[nodiscard]] std::span<const FieldDetails> SettlingFieldTable();

// The string id of a group's caption.
[[nodiscard]] unsigned SettlingCaption(int group);

// The group of a result; 0 for every result that no group names.
[[nodiscard]] int SettlingGroupOfResult(int resultID);

} // namespace kalvio
