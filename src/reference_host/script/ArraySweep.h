#pragma once

// Steps through a channel array, one channel on and all others off, and lets a result settle at each.

#include "reference_host/application/ReferenceHost.h"
#include "reference_host/script/ScriptHost.h"

namespace kalvio::reference_host {

// The last channel stays on. A stereo array is stepped through pair by pair. It ends early when a device
// fails or the wait is interrupted; a result that does not settle within five seconds is noted, and the sweep
// goes on. User-interface thread.
[[nodiscard]] SweepEnd SweepArray(ReferenceHost& host, const CString& array, const CString& result);

} // namespace kalvio::reference_host
