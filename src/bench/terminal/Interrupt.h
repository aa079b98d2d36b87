#pragma once

// Ctrl-C as a flag that every wait looks at, so that the unit is always left in order.

namespace kalvio::bench {

// From now on Ctrl-C, a request to terminate and a terminal that goes away set flags. A Ctrl-C while the one
// before is not dealt with ends the process; requests to terminate never cut the clean-up short. A closed
// pipe no longer ends the process.
void CatchInterrupt();

// Whether the user or the system wants what is under way to end. Any thread.
[[nodiscard]] bool IsInterrupted();
// Whether the whole program is to end, and not only what is under way. Any thread.
[[nodiscard]] bool IsTerminated();
// Whether something was written to a pipe that nobody reads any more, as with `| head`.
[[nodiscard]] bool IsReaderGone();
// As if Ctrl-C had been pressed, or forgets that it was.
void SetInterrupted(bool on);

} // namespace kalvio::bench
