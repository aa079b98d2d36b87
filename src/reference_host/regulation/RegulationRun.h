#pragma once

// Runs the regulation that the document describes and keeps its steps.

#include "platform/Sync.h"
#include "preprocessor/RegulationObserver.h"
#include "reference_host/application/ReferenceHost.h"

#include <functional>
#include <vector>

namespace kalvio::reference_host {

// User-interface thread, but for OnRegulationStep.
class RegulationRun final : private NPreProcessor::RegulationObserver {
public:
    explicit RegulationRun(ReferenceHost& host);
    ~RegulationRun() override;
    RegulationRun(const RegulationRun&) = delete;
    RegulationRun& operator=(const RegulationRun&) = delete;

    // Called with every step, on the user-interface thread.
    std::function<void(const NPreProcessor::RegulationStep&)> onStep;

    // False when the document refused to start; the user was told why.
    bool Start();
    // Waits for the end. Aborted after Ctrl-C.
    NPreProcessor::EResult Wait();

    [[nodiscard]] const std::vector<NPreProcessor::RegulationStep>& Steps() const { return m_steps; }

private:
    void OnRegulationStep(const NPreProcessor::RegulationStep& step) override;
    void TakeSteps();

    ReferenceHost& m_host;
    Mutex m_lock;
    std::vector<NPreProcessor::RegulationStep> m_arrived KALVIO_GUARDED_BY(m_lock);
    std::vector<NPreProcessor::RegulationStep> m_steps;
    NPreProcessor::RegulationObserver* m_previous;
};

} // namespace kalvio::reference_host
