#pragma once

// Completes the word before the cursor of a console line.

#include <string>
#include <string_view>
#include <vector>

namespace kalvio::bench {

// What a word may become, by what stands before it.
struct CompletionWords {
    std::vector<std::string> starts;  // of a line
    std::vector<std::string> values;  // elsewhere
    std::vector<std::string> names;   // after the words that speak of a name
    std::vector<std::string> results; // after "read"
    std::vector<std::string> sources; // after "source"
};

struct Completion {
    std::size_t replaced = 0;            // characters before the cursor that `text` replaces
    std::string text;                    // as far as all candidates agree, in their letters
    std::vector<std::string> candidates; // in the order of the alphabet
};

// Without regard to case. One candidate brings a space behind it, unless a number is to follow at once. None
// leaves the word as it is.
[[nodiscard]] Completion CompleteWord(std::string_view beforeCursor, const CompletionWords& words);

} // namespace kalvio::bench
