#pragma once

// The templates of the regulation window's panels.

#include "platform/Dialog.h"

#include <span>

namespace kalvio::regulation {

inline constexpr int kResultPanel = 262;
inline constexpr int kSourcePanel = 263;
inline constexpr int kOperationPanel = 264;

// Result, source and operation.
[[nodiscard]] std::span<const DialogTemplate> PanelLayouts();

} // namespace kalvio::regulation
