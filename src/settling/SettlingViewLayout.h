#pragma once

// The template of the settling window's panel.

#include "platform/Dialog.h"

namespace kalvio {

inline constexpr int kSettlingPanel = 260;

// One line for each group: its caption, type, tolerance, settling time, number of results and average. Made
// when it is first asked for, with the captions that the string table then has. User-interface thread.
[[nodiscard]] const DialogTemplate& SettlingPanelLayout();

} // namespace kalvio
