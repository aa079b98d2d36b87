#pragma once

// Told after every settled cycle of a regulation what was measured and what comes next.

#include "platform/Export.h"
#include "preprocessor/EResult.h"

namespace NPreProcessor {

// Which rule of which algorithm chose the next step.
enum class RegulationRule {
    None,
    InsideWindow,  // no error: finished
    Proportional,  // first step, from S and R
    HalfWay,       // first step, half-way to a limit
    Secant,        // through A and B
    Bisect,        // between A and B
    March,         // same step again
    MarchReversed, // step reversed and halved
    MarchHalved,   // step halved
    SecondPhase,   // other side of the starting value
    ProbeBetweenMandA,
    ProbeBetweenMandB,
    OntoBest, // one more move, onto the best point
    Finished,
};

[[nodiscard]] KALVIO_API const char* NameOf(RegulationRule rule);

struct RegulationStep {
    int iteration = 0; // settled cycles of this run so far, from 1
    int phase = 1;
    double source = 0.0; // storage units, as measured with
    double result = 0.0; // storage units, as the algorithm used it
    EResult settling = None;
    RegulationRule rule = RegulationRule::None;
    double nextSource = 0.0; // equal to `source` when the run ended here
    EResult outcome = Working;
};

// Called on the pre-processor thread under its lock: be quick, start and stop nothing.
class KALVIO_API RegulationObserver {
public:
    virtual ~RegulationObserver() = default;
    virtual void OnRegulationStep(const RegulationStep& step) = 0;
};

// Installs one for the process, or none with null; returns the one before. Any thread; when it returns, the
// one before is no longer called.
KALVIO_API RegulationObserver* InstallRegulationObserver(RegulationObserver* observer);

} // namespace NPreProcessor

namespace kalvio::preprocessor {

// Calls the observer installed, if there is one. Under the pre-processor lock.
void TellObserver(const NPreProcessor::RegulationStep& step);

} // namespace kalvio::preprocessor
