#pragma once

// Which of the watched results drives the next step, and how far it lies outside the window.

#include <span>

namespace kalvio::preprocessor {

struct ErrorChoice {
    bool succeeded = false; // nothing lies outside, or one of two suffices
    double result = 0.0;    // the result that drives the step
    double error = 0.0;     // positive below the window, negative above it
};

// `values` in the order of the watched results; `channelMode` is a ChannelNumber.
[[nodiscard]] ErrorChoice ChooseError(std::span<const double> values, int channelMode, double lower,
                                      double upper);

} // namespace kalvio::preprocessor
