#pragma once

// Ctrl-C as a flag that every wait looks at, so that the unit is always left in order.

namespace kalvio::bench {

// The first Ctrl-C (or request to terminate) from now on sets the flag; a second one ends the process. A
// closed pipe no longer ends it.
void CatchInterrupt();

// Any thread.
[[nodiscard]] bool IsInterrupted();
void SetInterrupted(bool on);

} // namespace kalvio::bench
