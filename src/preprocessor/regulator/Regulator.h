#pragma once

// The one regulator of the process: waits for the result to settle, lets the search choose the next source
// value, writes it, and waits again.

#include "preprocessor/RegulationDetails.h"
#include "preprocessor/RegulationObserver.h"
#include "preprocessor/SettlingWatch.h"
#include "preprocessor/regulator/RegulationSearch.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

class CRegulatorWatch;

// Exists while a regulator watch does.
class CRegulator final : public CSettlingWatch {
public:
    CRegulator();

    // The regulator of the process, made when there is none; counts `user` among those it reports to.
    static CRegulator* Acquire(CRegulatorWatch* user) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Takes a user away. The last one gets the regulator back, out of the watch list and stopped, to delete
    // once the lock is fully released (its end may stop the thread, which needs the lock to finish); null for
    // every other, and when the last one goes while the regulator reports: it then deletes itself afterwards.
    static std::unique_ptr<CRegulator> Release(CRegulatorWatch* user) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    // Starting again while it runs does nothing. A start that finds nothing to watch leaves the state as it
    // was; one without valid details fails at once.
    void Start(int on) override KALVIO_NEEDS_PREPROCESSOR_LOCK;
    bool Evaluate(bool newData) override KALVIO_NEEDS_PREPROCESSOR_LOCK;

    [[nodiscard]] NPreProcessor::EResult Status() const { return m_status.load(); } // any thread

private:
    void AddResults() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    void AddResult(int resultID) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    void Begin() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    [[nodiscard]] NPreProcessor::EResult Advance() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    [[nodiscard]] NPreProcessor::EResult TakeSettledResult() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    void MoveSource(kalvio::preprocessor::RegulationDecision& decision) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    [[nodiscard]] kalvio::preprocessor::RegulationDecision Decide() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    [[nodiscard]] double ReadSource() const KALVIO_NEEDS_PREPROCESSOR_LOCK;
    [[nodiscard]] bool WriteSource() const KALVIO_NEEDS_PREPROCESSOR_LOCK; // false: a document refused it
    [[nodiscard]] bool WriteSource(int ctrlID) const KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // The last act of an evaluation: the regulator may be gone afterwards.
    void ReportToUsers(NPreProcessor::EResult outcome) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    NPreProcessor::RegulationDetails m_details KALVIO_UNDER_PREPROCESSOR_LOCK;
    std::atomic<NPreProcessor::EResult> m_status{NPreProcessor::None};
    std::uint32_t m_regulationStart KALVIO_UNDER_PREPROCESSOR_LOCK = 0; // tick
    std::uint32_t m_timeout KALVIO_UNDER_PREPROCESSOR_LOCK = 1'000'000; // ms
    kalvio::preprocessor::RegulationPoint m_point KALVIO_UNDER_PREPROCESSOR_LOCK;
    std::unique_ptr<kalvio::preprocessor::RegulationSearch> m_search KALVIO_UNDER_PREPROCESSOR_LOCK;
    int m_cycles KALVIO_UNDER_PREPROCESSOR_LOCK = 0; // settled evaluations of this run
    std::vector<CRegulatorWatch*> m_users KALVIO_UNDER_PREPROCESSOR_LOCK;
    int m_reports KALVIO_UNDER_PREPROCESSOR_LOCK = 0; // under way
    std::unique_ptr<CRegulator> m_self
        KALVIO_UNDER_PREPROCESSOR_LOCK; // nobody else keeps it, and a report is under way
};
