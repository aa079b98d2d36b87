#pragma once

// The host's FFT parameters, which the trigger is armed with.

#include "platform/Export.h"
#include "platform/Sync.h"

// Any thread; the critical section is the document's own.
class KALVIO_API CFFTParametersSettings {
public:
    CCriticalSection lock;
    int fftLength KALVIO_GUARDED_BY(lock) = 16384;   // points
    int triggerPosition KALVIO_GUARDED_BY(lock) = 0; // 0 all after … 4 all before the trigger
    double triggerLevel[2] KALVIO_GUARDED_BY(lock) = {0.0, 0.0};
    int triggerSlope KALVIO_GUARDED_BY(lock) = 1;   // 0 falling, 1 rising
    int triggerOn KALVIO_GUARDED_BY(lock) = 0;      // 1: wait for the trigger condition, 0: run free
    int triggerSource KALVIO_GUARDED_BY(lock) = 0;  // 0 to 3
    int triggerChannel KALVIO_GUARDED_BY(lock) = 0; // 0 A, 1 B
    int pending KALVIO_GUARDED_BY(lock) = 0;        // 1: to be armed anew; arming clears it
};
