#include "preprocessor/SettlingFilter.h"

#include "host/ResultIds.h"
#include "preprocessor/SettledResult.h"
#include "preprocessor/thread/SettlingSource.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Tolerance types; every other type compares like the normal one.
constexpr int kToleranceNone = 0;
constexpr int kToleranceExponential = 2;

constexpr std::uint32_t kDetectorShift = 16;

std::size_t Slot(int index) {
    return static_cast<std::size_t>(index);
}

} // namespace

CSettlingFilter::CSettlingFilter(int resultID, int detector)
    : m_resultID(resultID), m_detector(detector), m_key(MakeKey(resultID, detector)) {}

std::uint32_t CSettlingFilter::MakeKey(int resultID, int detector) {
    const auto id = static_cast<std::uint32_t>(resultID);
    return detector == kalvio::kNoDetector ? id
                                           : (static_cast<std::uint32_t>(detector) << kDetectorShift) + id;
}

void CSettlingFilter::LoadParameters() {
    const kalvio::SettlingQueries& settling = kalvio::CurrentSettlingQueries();
    m_settlingTime = static_cast<std::uint32_t>(settling.GetSettlingTime(m_resultID));
    m_averaging = settling.GetAveraging(m_resultID) != 0;
    m_toleranceType = settling.GetToleranceType(m_resultID);
    m_numResults = std::clamp(settling.GetNumResults(m_resultID), 1, kSettlingWindow);
    m_live.store(GetResultFieldFromID(m_resultID, m_detector));
    BuildLadder(settling.GetTolerance(m_resultID));
    Reset();
}

void CSettlingFilter::BuildLadder(double tolerance) {
    const double factor = m_toleranceType == kToleranceExponential ? 2.0 : 1.0;
    for (double& rung : m_ladder) {
        rung = tolerance;
        tolerance *= factor;
    }
}

void CSettlingFilter::Reset() {
    m_sum = 0.0;
    m_writeIndex = 0;
    m_count = 0;
    m_taken = false;
    m_stable = false;
    m_disagreement = {};
    // A notifier that is writing at this moment goes on; its value is the first one after the reset.
    std::uint32_t full = Full;
    m_pendingState.compare_exchange_strong(full, Empty);
}

void CSettlingFilter::Step() {
    m_taken = m_pendingState.load(std::memory_order_acquire) == Full;
    if (!m_taken) {
        return;
    }
    m_latest = m_pending.load(std::memory_order_relaxed);
    m_pendingState.store(Empty, std::memory_order_release);

    const double old = std::exchange(m_window[Slot(m_writeIndex)], m_latest);
    m_sum += m_latest;
    m_disagreement = {};
    if (m_count < m_numResults) {
        m_stable = false;
        ++m_count;
    } else {
        m_sum -= old;
        Compare();
    }
    m_writeIndex = m_writeIndex >= m_numResults - 1 ? 0 : m_writeIndex + 1;
}

void CSettlingFilter::Compare() {
    m_stable = true;
    if (m_toleranceType == kToleranceNone) {
        return;
    }
    int index = m_writeIndex;
    for (int distance = 1; distance < m_count; ++distance) {
        index = index == 0 ? m_count - 1 : index - 1;
        const double allowed = std::fabs(m_latest * m_ladder[Slot(distance - 1)]);
        const double deviation = std::fabs(m_window[Slot(index)] - m_latest);
        if (allowed < deviation) {
            m_stable = false;
            if (m_disagreement.distance == 0) {
                m_disagreement = {distance, allowed, deviation};
            }
        }
    }
}

double CSettlingFilter::Value(bool forceAverage) const {
    // The window is empty right after a reset by another watch that shares this filter.
    const bool average = (forceAverage || m_averaging) && m_count > 0;
    return average ? m_sum / m_count : m_latest;
}

SettlingVerdict CSettlingFilter::Verdict() const {
    SettlingVerdict verdict;
    verdict.count = m_count;
    verdict.needed = m_numResults;
    verdict.tolerance = m_ladder[0];
    verdict.toleranceType = m_toleranceType;
    verdict.stable = m_stable;
    verdict.disagreeing = m_disagreement.distance;
    verdict.allowed = m_disagreement.allowed;
    verdict.deviation = m_disagreement.deviation;
    int index = m_writeIndex;
    for (int i = 0; i < m_count; ++i) {
        index = index == 0 ? m_numResults - 1 : index - 1;
        verdict.values[Slot(i)] = m_window[Slot(index)];
    }
    return verdict;
}

bool CSettlingFilter::Offer() {
    const double* live = m_live.load(std::memory_order_acquire);
    std::uint32_t empty = Empty;
    if (live == nullptr || HasPending() || !m_pendingState.compare_exchange_strong(empty, Writing)) {
        return false;
    }
    const double value = kalvio::ReadResult(*live);
    const bool valid = !kalvio::IsInvalidResult(value);
    m_pending.store(value, std::memory_order_relaxed);
    m_pendingState.store(valid ? Full : Empty, std::memory_order_release);
    return true;
}
