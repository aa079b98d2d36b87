#pragma once

// Results without the pre-processor thread: where a result lives, one step of a settling check, and waits.

#include "platform/Export.h"

class CHardware;

// The double that holds the result, or null for an unknown id and for 65535. For 3351 and 3352 it lies in the
// detector's object; null when there is no such detector. Any thread.
KALVIO_API double* GetResultFieldFromID(int resultID, int detector);

// One polling step. The caller owns the history (room for the result's number of results), the counts, the
// sum and the value, and zeroes them before the first call. 1 when the result has settled, with *value set.
KALVIO_API int GetSettledResult(CHardware* hardware, int resultID, int detector, const double* field,
                                double* history, int* count, unsigned long startTick, int* reads, double* sum,
                                double* value, int takeWithoutFlag, int pump);

// Waits, pumping messages, until the result is ready (settled, when the host's settling switch is on). 1, or
// 0 when it gave up. User-interface thread.
KALVIO_API int WaitForResultReady(int resultID, const double* field, int detector);
