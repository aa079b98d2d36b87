#pragma once

// Which configurations hold what of the peripherals.

#include "platform/Archive.h"

namespace kalvio {

// The channel arrays stand in front of the switcher settings since this configuration version; before, they
// were a part of them.
inline constexpr int kConfigWithArraysFirst = 20;

// Whether the archive's file is of a version that knows peripherals at all.
[[nodiscard]] inline bool HoldsPeripherals(const CArchive& archive) {
    return archive.CheckFileVersion(101, 98) > 0;
}

} // namespace kalvio
