#pragma once

// What follows from the host's analyser and FFT documents: rates, buffer length, converters in use.

#include "hardware/measurement/AnalogueRate.h"

#include <cstdint>

namespace kalvio {

// User-interface thread.
class AnalyserInput {
public:
    explicit AnalyserInput(const AnalogueRate& analogue) : m_analogue(analogue) {}

    // Hertz: the rate of the input; for a window that corrects the frequency the lower of input and output
    // rate, -1.0 while either is unset.
    [[nodiscard]] double RateInForce() const;

    // Samples that an FFT needs. When they would be too many the host's window is set back to rectangular,
    // which remains to be told.
    struct BufferLength {
        std::uint32_t samples = 0;
        bool windowReset = false;
    };
    BufferLength ComputeBufferLength();
    static void TellWindowReset(bool showMessage);

    // Whether each converter is in use.
    static void ConvertersInUse(int& channelA, int& channelB);

private:
    [[nodiscard]] double InputRate() const;

    const AnalogueRate& m_analogue;
};

// Starts the host's jitter averaging anew, or stops it.
void ResetJitterAverages(bool restart);

} // namespace kalvio
