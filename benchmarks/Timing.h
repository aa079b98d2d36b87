#pragma once

// Times of work, and aims that they are held against.

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace kalvio::benchmarks {

// Nanoseconds of one run, the fastest of many.
template<typename Prepare, typename Work>
double Fastest(int runs, Prepare prepare, Work work) {
    double best = 1e12;
    for (int run = 0; run < runs; ++run) {
        prepare();
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - start;
        best = std::min(best, spent.count());
    }
    return best;
}

// Nanoseconds of one call.
template<typename Work>
double PerCall(Work work) {
    constexpr int kCalls = 1000;
    constexpr int kRuns = 60;
    return Fastest(
               kRuns, [] {},
               [&work] {
                   for (int call = 0; call < kCalls; ++call) {
                       work();
                   }
               }) /
           kCalls;
}

inline bool Aim(const char* what, bool met) {
    std::printf("%-78s %s\n", what, met ? "aim met" : "aim NOT met");
    return met;
}

} // namespace kalvio::benchmarks
