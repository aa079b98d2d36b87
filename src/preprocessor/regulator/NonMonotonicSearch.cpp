#include "preprocessor/regulator/NonMonotonicSearch.h"

namespace kalvio::preprocessor {

using NPreProcessor::EResult;
using Rule = NPreProcessor::RegulationRule;

namespace {

constexpr double kAutomaticSteps = 4.0; // to the limit

} // namespace

RegulationDecision NonMonotonicSearch::Decide(double) {
    Rule rule = Rule::March;
    const bool first = m_iteration == 1;
    if (first && m_phase == 1) {
        m_startSource = m_current.source;
    }
    Apply(first ? FirstStep() : LaterStep(rule));
    if (m_step == 0.0 && m_phase == 1) {
        TurnRound();
        Apply(FirstStep());
        rule = Rule::SecondPhase;
    }
    return m_step == 0.0 ? Finish(EResult::SourceLimit, rule) : CheckedStep(rule);
}

double NonMonotonicSearch::FirstStep() {
    return InitialStep(SpanInDirection(), kAutomaticSteps);
}

double NonMonotonicSearch::SpanInDirection() {
    const bool unknown = m_direction == NPreProcessor::kDirectionUnknown;
    if (m_direction == NPreProcessor::kUp || (unknown && m_current.result < m_details.target)) {
        m_direction = NPreProcessor::kUp;
        return m_details.sourceMaximum - m_current.source;
    }
    if (m_direction == NPreProcessor::kDown || (unknown && m_current.result > m_details.target)) {
        m_direction = NPreProcessor::kDown;
        return m_details.sourceMinimum - m_current.source;
    }
    return 0.0;
}

double NonMonotonicSearch::LaterStep(Rule& rule) {
    const bool crossed = HasCrossedTarget();
    double step = m_step;
    if (crossed) {
        rule = Rule::MarchReversed;
        step = -(m_step / 2.0);
    } else if (m_hasCrossed) {
        rule = Rule::MarchHalved;
        step = m_step / 2.0;
    }
    m_hasCrossed = crossed;
    return step;
}

void NonMonotonicSearch::TurnRound() {
    if (m_direction == NPreProcessor::kUp) {
        m_direction = NPreProcessor::kDown;
    } else if (m_direction == NPreProcessor::kDown) {
        m_direction = NPreProcessor::kUp;
    }
    m_current.source = m_startSource;
    ++m_phase;
    m_iteration = 1;
}

} // namespace kalvio::preprocessor
