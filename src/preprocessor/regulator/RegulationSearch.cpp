#include "preprocessor/regulator/RegulationSearch.h"

#include "preprocessor/regulator/ExtremumSearch.h"
#include "preprocessor/regulator/MonotonicSearch.h"
#include "preprocessor/regulator/NonMonotonicSearch.h"

namespace kalvio::preprocessor {

RegulationSearch::RegulationSearch(const NPreProcessor::RegulationDetails& details)
    : m_details(details), m_direction(details.direction) {}

RegulationDecision RegulationSearch::Next(const RegulationPoint& measured, double error) {
    m_current = measured;
    ++m_iteration;
    const RegulationDecision decision = Decide(error);
    m_previous = m_current;
    return decision;
}

double RegulationSearch::InitialStep(double span, double parts) const {
    if (m_details.initialStep == NPreProcessor::kAutomaticStep) {
        return (span == 0.0 ? m_details.sourceMaximum - m_details.sourceMinimum : span) / parts;
    }
    return m_direction == NPreProcessor::kDown ? -m_details.initialStep : m_details.initialStep;
}

void RegulationSearch::Apply(double step) {
    const AppliedStep applied =
        ApplyStep(m_current.source, step, m_details.sourceMinimum, m_details.sourceMaximum);
    m_next = applied.next;
    m_step = applied.actual;
}

RegulationDecision RegulationSearch::CheckedStep(NPreProcessor::RegulationRule rule) const {
    return {CheckStep(m_step, m_details), rule, m_next};
}

RegulationDecision RegulationSearch::Finish(NPreProcessor::EResult outcome,
                                            NPreProcessor::RegulationRule rule) const {
    return {outcome, rule, m_current.source};
}

bool RegulationSearch::HasCrossedTarget() const {
    const double target = m_details.target;
    return (m_current.result <= target && target < m_previous.result) ||
           (m_current.result > target && target > m_previous.result);
}

std::unique_ptr<RegulationSearch> MakeSearch(const NPreProcessor::RegulationDetails& details) {
    if (IsExtremum(details.algorithm)) {
        return std::make_unique<ExtremumSearch>(details);
    }
    if (details.algorithm == NPreProcessor::kNonMonotonic) {
        return std::make_unique<NonMonotonicSearch>(details);
    }
    return std::make_unique<MonotonicSearch>(details);
}

} // namespace kalvio::preprocessor
