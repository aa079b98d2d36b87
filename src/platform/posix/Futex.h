#pragma once

// Waiting for a changed word without a lock. Any thread.

#include <atomic>
#include <cstdint>

namespace kalvio {

// Blocks while the word still holds `seen`, until woken or until that many real milliseconds have passed
// (kInfinite: no limit). May return early. The look at the word and the falling asleep are one step.
void FutexWait(std::atomic<std::uint32_t>& word, std::uint32_t seen, std::uint32_t milliseconds);

// Wakes every thread that blocks on the word. Takes no lock and allocates nothing.
void FutexWakeAll(std::atomic<std::uint32_t>& word);

} // namespace kalvio
