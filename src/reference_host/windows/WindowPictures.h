#pragma once

// Windows drawn from what they say of themselves, and nothing else. Any thread.

#include "platform/ControlState.h"

#include <string>

namespace kalvio::reference_host {

// In characters: one column is four dialog units, one row eight. Boxes are [ ] around edits and lists to
// choose from, < > around buttons; what is disabled or greyed stands in { } instead.
[[nodiscard]] std::string DrawWindowText(const ControlState& window);

// As a picture, two pixels a dialog unit.
[[nodiscard]] std::string DrawWindowSvg(const ControlState& window);

// Everything, as one JSON object; controls without a property do not carry it.
[[nodiscard]] std::string WindowJson(const ControlState& window);

} // namespace kalvio::reference_host
