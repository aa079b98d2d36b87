#pragma once

// The search for a target where the result rises or falls steadily with the source: a first guess, then
// secants, and bisections where a secant gains little.

#include "preprocessor/regulator/RegulationSearch.h"

namespace kalvio::preprocessor {

class MonotonicSearch final : public RegulationSearch {
public:
    using RegulationSearch::RegulationSearch;

private:
    using Rule = NPreProcessor::RegulationRule;

    struct Move {
        NPreProcessor::EResult outcome = NPreProcessor::Working;
        Rule rule = Rule::None;
        double step = 0.0;
    };

    RegulationDecision Decide(double error) override;
    [[nodiscard]] Move FirstMove(bool high);
    [[nodiscard]] Move ProportionalMove() const;
    [[nodiscard]] Move HalfWayMove(bool high) const;
    [[nodiscard]] Move MoveBeforeBracket(bool high);
    [[nodiscard]] Move MoveInBracket(bool high, double error);
    [[nodiscard]] Move SecantMove() const;

    RegulationPoint m_above; // a point whose result was above the target, or the farther of two below
    RegulationPoint m_below; // the other way round
    double m_previousError = 0.0;
    bool m_bracketed = false;
};

} // namespace kalvio::preprocessor
