#pragma once

// The search for a target where the result may rise and fall: steps in one direction, reversing and halving
// at each crossing of the target; at a limit it begins again on the other side of the starting value.

#include "preprocessor/regulator/RegulationSearch.h"

namespace kalvio::preprocessor {

class NonMonotonicSearch final : public RegulationSearch {
public:
    using RegulationSearch::RegulationSearch;

private:
    RegulationDecision Decide(double error) override;
    [[nodiscard]] double FirstStep();
    [[nodiscard]] double SpanInDirection();
    [[nodiscard]] double LaterStep(NPreProcessor::RegulationRule& rule);
    void TurnRound();

    double m_startSource = 0.0;
    bool m_hasCrossed = false; // at the point before
};

} // namespace kalvio::preprocessor
