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

// Guarded by the pre-processor lock, but for the status. Exists while a regulator watch does.
class CRegulator final : public CSettlingWatch {
public:
    CRegulator();

    // The regulator of the process, made when there is none; counts `user` among those it reports to.
    static CRegulator* Acquire(CRegulatorWatch* user);
    // Takes a user away. The last one gets the regulator back, out of the watch list and stopped, to delete
    // once the lock is fully released (its end may stop the thread, which needs the lock to finish); null for
    // every other, and when the last one goes while the regulator reports: it then deletes itself afterwards.
    static std::unique_ptr<CRegulator> Release(CRegulatorWatch* user);

    // Starting again while it runs does nothing. A start that finds nothing to watch leaves the state as it
    // was; one without valid details fails at once.
    void Start(int on) override;
    bool Evaluate(bool newData) override;

    [[nodiscard]] NPreProcessor::EResult Status() const { return m_status.load(); } // any thread

private:
    void AddResults();
    void AddResult(int resultID);
    void Begin();
    [[nodiscard]] NPreProcessor::EResult Advance();
    [[nodiscard]] NPreProcessor::EResult TakeSettledResult();
    void MoveSource(kalvio::preprocessor::RegulationDecision& decision);
    [[nodiscard]] kalvio::preprocessor::RegulationDecision Decide();
    [[nodiscard]] double ReadSource() const;
    [[nodiscard]] bool WriteSource() const; // false: a document refused it
    [[nodiscard]] bool WriteSource(int ctrlID) const;
    // The last act of an evaluation: the regulator may be gone afterwards.
    void ReportToUsers(NPreProcessor::EResult outcome);

    NPreProcessor::RegulationDetails m_details;
    std::atomic<NPreProcessor::EResult> m_status{NPreProcessor::None};
    std::uint32_t m_regulationStart = 0; // tick
    std::uint32_t m_timeout = 1'000'000; // ms
    kalvio::preprocessor::RegulationPoint m_point;
    std::unique_ptr<kalvio::preprocessor::RegulationSearch> m_search;
    int m_cycles = 0; // settled evaluations of this run
    std::vector<CRegulatorWatch*> m_users;
    int m_reports = 0;                  // under way
    std::unique_ptr<CRegulator> m_self; // nobody else keeps it, and a report is under way
};
