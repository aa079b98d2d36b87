#pragma once

// What the hardware object and the settling document tell the pre-processor. The bodies stand with the
// pre-processor; this is all that the folders below it know of it.

#include "platform/Export.h"

namespace NPreProcessor {

// A new value of the result stands in the host's result fields. With `all` zero only the filter of the
// single-result list whose key equals the id takes it; non-zero, every filter of the block list does. Any
// thread; allocates nothing, takes no lock, waits for nothing.
KALVIO_API void NotifyNewData(int resultID, int all);

// The same for an FFT detector's result.
KALVIO_API void NotifyNewFFTData(int resultID, int detector);

// The settling parameters changed: every filter reads them again and starts over. User-interface thread.
KALVIO_API void NotifyNewSettlingParams();

} // namespace NPreProcessor
