#pragma once

// The controls of the settling window: ten of each kind, one a group.

#include "settling/SettlingFields.h"

namespace kalvio {

enum class SettlingControl { Type, Tolerance, Time, Count, CountSpin, Average, Other };

[[nodiscard]] SettlingControl SettlingControlOf(int ctrlID);
// Of a control that is none of the others.
[[nodiscard]] int SettlingGroupOfControl(int ctrlID);
// The row of the field that a control shows; null for Other.
[[nodiscard]] const FieldRow* SettlingRowOfControl(int ctrlID);
// The string id of the unit that a control's range is stated in; 0 for one without a range.
[[nodiscard]] unsigned SettlingRangeUnit(int ctrlID);

} // namespace kalvio
