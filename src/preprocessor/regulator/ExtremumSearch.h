#pragma once

// The search for the largest or smallest result: a march in even steps past the extremum, then probes
// between the best point and its neighbours until they agree.

#include "preprocessor/regulator/RegulationSearch.h"

namespace kalvio::preprocessor {

class ExtremumSearch final : public RegulationSearch {
public:
    explicit ExtremumSearch(const NPreProcessor::RegulationDetails& details);

private:
    using Rule = NPreProcessor::RegulationRule;

    // What the point just measured is to the refinement.
    enum class Probe { None, BetweenMAndA, BetweenMAndB, OntoBest };

    RegulationDecision Decide(double error) override;
    void March();
    [[nodiscard]] double FirstStep();
    void JudgeMarch();
    void EndMarch();
    RegulationDecision Refine();
    // True when the next probe is already settled.
    bool TakeProbe();
    void ChooseProbe();
    RegulationDecision MoveToProbe();
    RegulationDecision MoveOntoBest();
    void PlaceProbe(Probe probe, const RegulationPoint& end);
    void OrderEnds();
    [[nodiscard]] bool HasConverged() const;
    [[nodiscard]] bool IsBetter(double result, double than) const;
    [[nodiscard]] bool IsProbeBetter() const;
    [[nodiscard]] bool HasFallenOff() const;

    const bool m_maximum;
    RegulationPoint m_a; // the better end around the best point
    RegulationPoint m_b; // the other end
    RegulationPoint m_best;
    bool m_bestMoved = false; // by the point before, or by this one
    bool m_stuck = false;     // the march could not even begin
    Probe m_probe = Probe::None;
};

} // namespace kalvio::preprocessor
