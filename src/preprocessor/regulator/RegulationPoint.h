#pragma once

// What a search for a source value works with.

#include "preprocessor/EResult.h"
#include "preprocessor/RegulationObserver.h"

namespace kalvio::preprocessor {

// A source value and the result that it gave, storage units.
struct RegulationPoint {
    double source = 0.0;
    double result = 0.0;
};

// What a search makes of a point.
struct RegulationDecision {
    NPreProcessor::EResult outcome = NPreProcessor::Working;
    NPreProcessor::RegulationRule rule = NPreProcessor::RegulationRule::None;
    double nextSource = 0.0; // where to measure next while the outcome is Working
};

} // namespace kalvio::preprocessor
