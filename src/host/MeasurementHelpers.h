#pragma once

// Measurement helpers of the host: they act on the documents of the host application in force. Without the
// document concerned they do nothing, and queries answer as a fresh document would.

#include "host/FftDetectors.h"
#include "platform/Export.h"

// A detector of the host's list by its number; null: none, or no list. Any thread.
[[nodiscard]] KALVIO_API CFFTDetectorSettings* GetFFTDetectorFromID(int detectorID);
// How many users need FFT results just now; it does not fall below 0. Any thread.
KALVIO_API void IncFFTUsageCount();
KALVIO_API void DecFFTUsageCount();
// 1 for a result that exists for both channels (RMS amplitude, frequency, CT and FFT detectors). Any thread.
[[nodiscard]] KALVIO_API int IsMultiChannelResult(int resultID);
// The software analyser's channel pair, 0 for A and 1 for B; left alone without an analyser. Any thread.
KALVIO_API void GetSWAnalyserChannels(int& first, int& second);
// 0: both of the pair show A, 1: both show B, 2: A and B; other values do nothing. User-interface thread.
KALVIO_API void SetAnalyserChannel(int channel);
// 1 asks for the FFT trigger to be armed anew, 0 takes that back. User-interface thread.
KALVIO_API void ToggleTrigger(int on);
// A value in DSP steps as volts. Any thread.
[[nodiscard]] KALVIO_API double ConvertHexToV(double steps, double stepsPerVolt);
// Jitter-domain operation. Any thread.
[[nodiscard]] KALVIO_API bool IsJDO();
// Channels A and B are swapped. Any thread.
[[nodiscard]] KALVIO_API bool AreChannelsReversed();
