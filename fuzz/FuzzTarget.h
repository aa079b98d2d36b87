#pragma once

// What every fuzz target has: its entries, its seeds, and a way to say that a promise was broken.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
// Called once before the first input; ends the program when it was asked to record the seeds.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace kalvio::fuzz {

using Bytes = std::vector<std::uint8_t>;

// Well-formed inputs of the target, from which damaged ones are made; none of them counts on an earlier one.
std::vector<Bytes> Seeds();

// Ends the run when a promise does not hold.
inline void Require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

} // namespace kalvio::fuzz
