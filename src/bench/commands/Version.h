#pragma once

// The program's version; the build compares it with the project's.

namespace kalvio::bench {

inline constexpr const char* kVersion = "1.11.0";

} // namespace kalvio::bench
