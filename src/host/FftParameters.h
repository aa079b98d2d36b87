#pragma once

// The host's FFT parameters, which the trigger is armed with.

#include "platform/Export.h"
#include "platform/Sync.h"

// Any thread; the critical section is the document's own.
class KALVIO_API CFFTParametersSettings {
public:
    CCriticalSection lock;   // guards the rest
    int fftLength = 16384;   // points
    int triggerPosition = 0; // 0 all after … 4 all before the trigger
    double triggerLevel[2] = {0.0, 0.0};
    int triggerSlope = 1;   // 0 falling, 1 rising
    int triggerOn = 0;      // 1: wait for the trigger condition, 0: run free
    int triggerSource = 0;  // 0 to 3
    int triggerChannel = 0; // 0 A, 1 B
    int pending = 0;        // 1: to be armed anew; arming clears it
};
