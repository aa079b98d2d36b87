#include "preprocessor/regulator/MonotonicSearch.h"

#include <cmath>

namespace kalvio::preprocessor {

using NPreProcessor::EResult;

namespace {

constexpr int kPatientIterations = 24; // from then on the error must shrink
constexpr double kSmallGain = 0.3;     // of the error; a secant that gains less makes way for a bisection

} // namespace

RegulationDecision MonotonicSearch::Decide(double error) {
    const double magnitude = std::fabs(error);
    if (m_previousError <= magnitude && m_iteration > kPatientIterations) {
        return Finish(EResult::NotConverged, Rule::None);
    }
    m_previousError = magnitude;

    const bool high = error < 0.0;
    const Move move = m_iteration == 1 ? FirstMove(high)
                      : m_bracketed    ? MoveInBracket(high, error)
                                       : MoveBeforeBracket(high);
    if (move.outcome != EResult::Working) {
        return Finish(move.outcome, move.rule);
    }
    if (move.step == 0.0) {
        return Finish(EResult::StepTooSmall, move.rule);
    }
    Apply(move.step);
    return m_step == 0.0 ? Finish(EResult::SourceLimit, move.rule) : CheckedStep(move.rule);
}

MonotonicSearch::Move MonotonicSearch::FirstMove(bool high) {
    (high ? m_above : m_below) = m_current;
    const double product = m_current.source * m_current.result;
    const bool proportional = (product > 0.0 && m_details.trend != NPreProcessor::kTrendDecreasing) ||
                              (product < 0.0 && m_details.trend != NPreProcessor::kTrendIncreasing);
    return proportional ? ProportionalMove() : HalfWayMove(high);
}

MonotonicSearch::Move MonotonicSearch::ProportionalMove() const {
    double step = (m_details.target - m_current.result) * m_current.source / m_current.result;
    const bool outwards = (m_current.source >= m_details.sourceMaximum && step > 0.0) ||
                          (m_current.source <= m_details.sourceMinimum && step < 0.0);
    if (outwards) {
        step = -step;
    }
    return {.rule = Rule::Proportional, .step = step};
}

MonotonicSearch::Move MonotonicSearch::HalfWayMove(bool high) const {
    const bool up = (m_details.trend == NPreProcessor::kTrendDecreasing) == high;
    const double half = (up ? m_details.sourceMaximum : m_details.sourceMinimum) - m_current.source;
    const double otherHalf = (up ? m_details.sourceMinimum : m_details.sourceMaximum) - m_current.source;
    const bool noRoom = up ? half <= 0.0 : half >= 0.0;
    return {.rule = Rule::HalfWay, .step = (noRoom ? otherHalf : half) / 2.0};
}

MonotonicSearch::Move MonotonicSearch::MoveBeforeBracket(bool high) {
    RegulationPoint& same = high ? m_above : m_below;
    RegulationPoint& other = high ? m_below : m_above;
    if (HasCrossedTarget()) {
        m_bracketed = true;
        same = m_current;
        return SecantMove();
    }
    if (m_current.source == same.source) {
        return {.outcome = EResult::SourceLimit};
    }
    // Of the two latest points on this side, the one nearer to the target becomes `same`.
    const bool farther = high ? same.result < m_current.result : same.result > m_current.result;
    if (farther) {
        other = m_current;
    } else {
        other = same;
        same = m_current;
    }
    return SecantMove();
}

MonotonicSearch::Move MonotonicSearch::MoveInBracket(bool high, double error) {
    RegulationPoint& same = high ? m_above : m_below;
    const double gain = m_current.result - same.result;
    if (high ? gain < 0.0 : gain > 0.0) {
        same = m_current;
    }
    if (std::fabs(gain / error) < kSmallGain) {
        return {.rule = Rule::Bisect, .step = (m_above.source + m_below.source) / 2.0 - m_current.source};
    }
    return SecantMove();
}

MonotonicSearch::Move MonotonicSearch::SecantMove() const {
    if (m_above.source == m_below.source) {
        return {.outcome = EResult::StepTooSmall, .rule = Rule::Secant};
    }
    const double slope = (m_above.result - m_below.result) / (m_above.source - m_below.source);
    if (slope == 0.0) {
        return {.outcome = EResult::MonotonicFailed, .rule = Rule::Secant};
    }
    return {.rule = Rule::Secant, .step = (m_details.target - m_current.result) / slope};
}

} // namespace kalvio::preprocessor
