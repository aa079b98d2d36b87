#include "bench/console/NamePattern.h"

#include "platform/Text.h"

#include <string>

namespace kalvio::bench {

namespace {

bool IsSame(char a, char b) {
    return CompareNoCase(std::string_view(&a, 1), std::string_view(&b, 1)) == 0;
}

// The place after the last star is remembered: when the rest does not fit, the star takes one more.
bool Matches(std::string_view name, std::string_view pattern) {
    std::size_t at = 0;
    std::size_t star = std::string_view::npos;
    std::size_t taken = 0;
    for (std::size_t i = 0; i < name.size();) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            taken = i;
        } else if (at < pattern.size() && (pattern[at] == '?' || IsSame(pattern[at], name[i]))) {
            ++at;
            ++i;
        } else if (star != std::string_view::npos) {
            at = star + 1;
            i = ++taken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

} // namespace

bool MatchesPattern(std::string_view name, std::string_view pattern) {
    if (pattern.find_first_of("*?") != std::string_view::npos) {
        return Matches(name, pattern);
    }
    return Matches(name, "*" + std::string(pattern) + "*");
}

} // namespace kalvio::bench
