#pragma once

// The three streams that a command talks through; the program's own, or a test's.

#include <istream>
#include <ostream>

namespace kalvio::bench {

inline constexpr int kNoKeyboard = -1;

struct Terminal {
    std::istream& in;
    std::ostream& out; // answers and tables
    std::ostream& err; // questions, messages, complaints
    // Descriptor of `in` when a person types there and sees `out` on the same terminal.
    int keyboard = kNoKeyboard;
};

} // namespace kalvio::bench
