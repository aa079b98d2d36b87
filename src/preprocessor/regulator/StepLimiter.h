#pragma once

// Keeps a step within the source's limits and says whether what is left of it is worth making.

#include "preprocessor/EResult.h"
#include "preprocessor/RegulationDetails.h"

namespace kalvio::preprocessor {

// Storage units of the source. A step of this magnitude or less is too small, and a source value closer to a
// limit than this is moved onto it.
inline constexpr double kMinimumStep = 1.0;

struct AppliedStep {
    double next = 0.0;
    double actual = 0.0; // next - the source it started from; 0 when it is held at a limit
};

// A step that is not a number moves nothing.
[[nodiscard]] AppliedStep ApplyStep(double source, double step, double minimum, double maximum);

// Working for a step worth making; otherwise what too small a step means to the regulation.
[[nodiscard]] NPreProcessor::EResult CheckStep(double actual,
                                               const NPreProcessor::RegulationDetails& details);

[[nodiscard]] inline bool IsExtremum(int algorithm) {
    return algorithm == NPreProcessor::kMaximum || algorithm == NPreProcessor::kMinimum;
}

} // namespace kalvio::preprocessor
