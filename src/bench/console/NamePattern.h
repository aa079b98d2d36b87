#pragma once

// Patterns that choose names.

#include <string_view>

namespace kalvio::bench {

// Whether a name is chosen: `*` stands for any text and `?` for any character; a pattern without either
// chooses the names that hold it somewhere. Without regard to case.
[[nodiscard]] bool MatchesPattern(std::string_view name, std::string_view pattern);

} // namespace kalvio::bench
