#pragma once

// Outcomes of a settling watch and of a regulation.

namespace NPreProcessor {

enum EResult : int {
    None = 0,            // nothing started, or signals removed
    Working = 1,         // watch or regulation running
    Settled = 2,         // every watched result settled
    Succeeded = 3,       // regulation reached its target
    Failed = 4,          // general failure
    SourceLimit = 5,     // regulation reached a source limit
    StepTooSmall = 6,    // regulation step size became too small
    MonotonicFailed = 7, // monotonic regulation algorithm failed
    NotConverged = 8,    // regulation did not converge
    NotSettled = 9,      // at least one result did not settle
    NoData = 10,         // a result's data stopped arriving
    TimedOut = 11,       // regulation timed out
    Aborted = 12,        // stopped by the caller
};

} // namespace NPreProcessor
