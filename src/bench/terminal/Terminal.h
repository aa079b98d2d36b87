#pragma once

// The three streams that a command talks through; the program's own, or a test's.

#include <istream>
#include <ostream>

namespace kalvio::bench {

struct Terminal {
    std::istream& in;
    std::ostream& out; // answers and tables
    std::ostream& err; // questions, messages, complaints
};

} // namespace kalvio::bench
