#include "preprocessor/regulator/StepLimiter.h"

#include <cmath>

using kalvio::preprocessor::AppliedStep;

AppliedStep kalvio::preprocessor::ApplyStep(double source, double step, double minimum, double maximum) {
    double next = source + step;
    if (std::isnan(next)) {
        return {source, 0.0};
    }
    if (maximum - next < kMinimumStep) {
        next = maximum;
    } else if (next - minimum < kMinimumStep) {
        next = minimum;
    }
    return {next, next - source};
}

NPreProcessor::EResult kalvio::preprocessor::CheckStep(double actual,
                                                       const NPreProcessor::RegulationDetails& details) {
    if (std::fabs(actual) > kMinimumStep) {
        return NPreProcessor::Working;
    }
    // A window without width cannot be met closer than the smallest step.
    const bool asNearAsItGets = IsExtremum(details.algorithm) || details.lower == details.upper;
    return asNearAsItGets ? NPreProcessor::Succeeded : NPreProcessor::StepTooSmall;
}
