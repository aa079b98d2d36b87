#include "preprocessor/regulator/ExtremumSearch.h"

#include <cmath>
#include <utility>

namespace kalvio::preprocessor {

using NPreProcessor::EResult;

namespace {

constexpr double kAutomaticSteps = 10.0; // to the limit
constexpr int kSurePoints = 2;           // refinement points before the ends are compared

} // namespace

ExtremumSearch::ExtremumSearch(const NPreProcessor::RegulationDetails& details)
    : RegulationSearch(details), m_maximum(details.algorithm == NPreProcessor::kMaximum) {}

RegulationDecision ExtremumSearch::Decide(double) {
    if (m_phase > 1) {
        return Refine();
    }
    March();
    if (m_stuck) {
        return Finish(EResult::StepTooSmall, Rule::March);
    }
    if (m_phase == 1) {
        return {EResult::Working, Rule::March, m_next};
    }
    EndMarch();
    return Refine();
}

void ExtremumSearch::March() {
    const bool first = m_iteration == 1;
    double step = m_step;
    if (first) {
        step = FirstStep();
        m_bestMoved = true;
        m_previous = m_b = m_best = m_current;
    } else {
        JudgeMarch();
    }
    Apply(step);
    if (m_step == 0.0) {
        m_stuck = first;
        ++m_phase;
    }
}

double ExtremumSearch::FirstStep() {
    double span = 0.0;
    if (m_direction == NPreProcessor::kUp || m_direction == NPreProcessor::kDirectionUnknown) {
        m_direction = NPreProcessor::kUp;
        span = m_details.sourceMaximum - m_current.source;
    } else if (m_direction == NPreProcessor::kDown) {
        span = m_details.sourceMinimum - m_current.source;
    }
    return InitialStep(span, kAutomaticSteps);
}

void ExtremumSearch::JudgeMarch() {
    if (m_bestMoved) {
        m_bestMoved = false;
        m_a = m_current;
    }
    if (IsBetter(m_current.result, m_best.result)) {
        m_bestMoved = true;
        m_best = m_current;
        m_b = m_previous;
    } else if (HasFallenOff()) {
        ++m_phase;
    }
}

bool ExtremumSearch::HasFallenOff() const {
    const double sensitivity = m_details.sensitivity;
    if (m_maximum) {
        return m_current.result < sensitivity * m_best.result;
    }
    return sensitivity != 0.0 && m_current.result > m_best.result / sensitivity;
}

void ExtremumSearch::EndMarch() {
    if (m_bestMoved) {
        m_a = m_current;
    }
    OrderEnds();
    m_iteration = 1;
}

RegulationDecision ExtremumSearch::Refine() {
    if (m_probe == Probe::OntoBest) {
        return Finish(EResult::Succeeded, Rule::Finished);
    }
    if (TakeProbe()) {
        return MoveToProbe();
    }
    ChooseProbe();
    return HasConverged() ? MoveOntoBest() : MoveToProbe();
}

bool ExtremumSearch::TakeProbe() {
    const bool better = IsProbeBetter();
    if (m_probe == Probe::BetweenMAndA) {
        if (!better) {
            m_a = m_current;
            PlaceProbe(Probe::BetweenMAndB, m_b);
            return true;
        }
        m_b = m_a;
        m_a = std::exchange(m_best, m_current);
    } else if (m_probe == Probe::BetweenMAndB) {
        if (better) {
            m_a = std::exchange(m_best, m_current);
        } else {
            m_b = m_current;
            OrderEnds();
        }
    }
    m_probe = Probe::None;
    return false;
}

void ExtremumSearch::ChooseProbe() {
    if (m_best.source == m_a.source) {
        PlaceProbe(Probe::BetweenMAndB, m_b);
    } else {
        PlaceProbe(Probe::BetweenMAndA, m_a);
    }
}

void ExtremumSearch::PlaceProbe(Probe probe, const RegulationPoint& end) {
    m_probe = probe;
    m_next = (m_best.source + end.source) / 2.0;
}

RegulationDecision ExtremumSearch::MoveToProbe() {
    m_step = m_next - m_current.source;
    if (CheckStep(m_step, m_details) != EResult::Working) {
        return MoveOntoBest();
    }
    return {EResult::Working,
            m_probe == Probe::BetweenMAndA ? Rule::ProbeBetweenMandA : Rule::ProbeBetweenMandB, m_next};
}

RegulationDecision ExtremumSearch::MoveOntoBest() {
    if (m_best.source == m_current.source) {
        return Finish(EResult::Succeeded, Rule::Finished);
    }
    m_probe = Probe::OntoBest;
    m_next = m_best.source;
    m_step = m_next - m_current.source;
    return {EResult::Working, Rule::OntoBest, m_next};
}

void ExtremumSearch::OrderEnds() {
    if (IsBetter(m_b.result, m_a.result)) {
        std::swap(m_a, m_b);
    }
}

bool ExtremumSearch::HasConverged() const {
    return m_iteration > kSurePoints &&
           std::fabs((m_best.result - m_b.result) / m_best.result) < m_details.lower;
}

bool ExtremumSearch::IsBetter(double result, double than) const {
    return m_maximum ? result > than : result < than;
}

bool ExtremumSearch::IsProbeBetter() const {
    // A maximum takes an equal probe, a minimum does not.
    return m_maximum ? m_current.result >= m_best.result : m_current.result < m_best.result;
}

} // namespace kalvio::preprocessor
