#pragma once

// Ctrl-C as a flag that every wait looks at, so that the unit is always left in order.

namespace kalvio::bench {

// The first Ctrl-C (or request to terminate, or a terminal that goes away) from now on sets the flag; a
// second one ends the process. A closed pipe no longer ends it.
void CatchInterrupt();

// Any thread.
[[nodiscard]] bool IsInterrupted();
// Whether something was written to a pipe that nobody reads any more, as with `| head`.
[[nodiscard]] bool IsReaderGone();
void SetInterrupted(bool on);

} // namespace kalvio::bench
