#pragma once

// What every fuzz target has: its entry, its seeds, and a way to say that a promise was broken.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kalvio::fuzz {

using Bytes = std::vector<std::uint8_t>;

// Well-formed inputs of the target, from which the standalone driver makes damaged ones.
std::vector<Bytes> Seeds();

// Ends the run when a promise does not hold.
inline void Require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

} // namespace kalvio::fuzz
