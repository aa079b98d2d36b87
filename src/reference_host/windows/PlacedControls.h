#pragma once

// The visible controls of a window with their places in it.

#include "platform/ControlState.h"

#include <vector>

namespace kalvio::reference_host {

struct PlacedControl {
    const ControlState* state; // lives as long as the window's
    CRect where;               // dialog units, from the window's corner
};

// In tab order; hidden windows and what stands in them are left out, and so are windows that only hold
// others.
[[nodiscard]] std::vector<PlacedControl> PlaceControls(const ControlState& window);

// How wide and high all of them are together.
[[nodiscard]] CPoint SizeOf(const std::vector<PlacedControl>& controls);

[[nodiscard]] inline bool IsOff(const ControlState& control) {
    return !control.enabled || control.greyed;
}

// The lines of a text, and of one line its columns.
[[nodiscard]] std::vector<CString> SplitText(const CString& text, char mark);
// The lines of a text, those of more letters than that broken between words.
[[nodiscard]] std::vector<CString> WrapText(const CString& text, int letters);

} // namespace kalvio::reference_host
