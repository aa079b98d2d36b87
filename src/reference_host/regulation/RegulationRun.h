#pragma once

// Runs the regulation that the document describes and keeps its steps.

#include "platform/Sync.h"
#include "preprocessor/RegulationObserver.h"
#include "reference_host/application/ReferenceHost.h"

#include <cstdint>
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
    // When each step was measured, and when the wait ended, in milliseconds since the start.
    [[nodiscard]] const std::vector<std::uint32_t>& StepTimes() const { return m_stepTimes; }
    [[nodiscard]] std::uint32_t EndedAt() const { return m_endedAt; }

private:
    void OnRegulationStep(const NPreProcessor::RegulationStep& step) override;
    void TakeSteps();

    ReferenceHost& m_host;
    Mutex m_lock;
    struct Arrival {
        NPreProcessor::RegulationStep step;
        std::uint32_t tick;
    };
    std::vector<Arrival> m_arrived KALVIO_GUARDED_BY(m_lock);
    std::vector<NPreProcessor::RegulationStep> m_steps;
    std::vector<std::uint32_t> m_stepTimes;
    std::uint32_t m_start = 0; // tick
    std::uint32_t m_endedAt = 0;
    NPreProcessor::RegulationObserver* m_previous;
};

} // namespace kalvio::reference_host
