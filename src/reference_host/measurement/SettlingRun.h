#pragma once

// Watches results until they settle, and keeps what was seen.

#include "preprocessor/SettlingWatcher.h"
#include "reference_host/application/ReferenceHost.h"
#include "reference_host/results/ResultCatalogue.h"

#include <functional>
#include <vector>

namespace kalvio::reference_host {

// The values of all watched results at one moment.
struct SettlingSample {
    std::uint32_t time = 0;     // milliseconds since the start
    std::vector<double> values; // storage units; kInvalidResult for none
};

// How one result was judged.
struct SettlingJudgement {
    double value = 0.0; // storage units
    int status = NPreProcessor::None;
    SettlingVerdict verdict;
};

// User-interface thread.
class SettlingRun {
public:
    SettlingRun(ReferenceHost& host, std::vector<ResultChoice> choices);
    ~SettlingRun();
    SettlingRun(const SettlingRun&) = delete;
    SettlingRun& operator=(const SettlingRun&) = delete;

    // Called with every new sample.
    std::function<void(const SettlingSample&)> onSample;

    // Empty, or why the results cannot be watched.
    std::string Prepare();
    // Watches until the results are decided. TimedOut and Aborted (Ctrl-C) are this run's own.
    NPreProcessor::EResult Run(std::uint32_t milliseconds);

    [[nodiscard]] const std::vector<ResultChoice>& Choices() const { return m_choices; }
    [[nodiscard]] const std::vector<SettlingSample>& Samples() const { return m_samples; }
    [[nodiscard]] const std::vector<SettlingJudgement>& Judgements() const { return m_judgements; }
    // When it was decided, in milliseconds since the start of the first run.
    [[nodiscard]] std::uint32_t DecidedAt() const { return m_decidedAt; }

private:
    void TakeSample();
    void Judge();

    ReferenceHost& m_host;
    std::vector<ResultChoice> m_choices;
    std::vector<const double*> m_fields;
    CEvent m_done;
    int m_status = NPreProcessor::None;
    CSettlingWatcher m_watcher;
    std::uint32_t m_start = 0;
    std::uint32_t m_decidedAt = 0;
    std::vector<SettlingSample> m_samples;
    std::vector<SettlingJudgement> m_judgements;
};

} // namespace kalvio::reference_host
