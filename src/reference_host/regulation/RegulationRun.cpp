#include "reference_host/regulation/RegulationRun.h"

#include "platform/Clock.h"

namespace kalvio::reference_host {

RegulationRun::RegulationRun(ReferenceHost& host)
    : m_host(host), m_previous(NPreProcessor::InstallRegulationObserver(this)) {}

RegulationRun::~RegulationRun() {
    NPreProcessor::InstallRegulationObserver(m_previous);
}

void RegulationRun::OnRegulationStep(const NPreProcessor::RegulationStep& step) {
    const LockGuard guard(m_lock);
    m_arrived.push_back({step, GetTickCount()});
}

void RegulationRun::TakeSteps() {
    std::vector<Arrival> arrived;
    {
        const LockGuard guard(m_lock);
        arrived.swap(m_arrived);
    }
    for (const auto& [step, tick] : arrived) {
        m_steps.push_back(step);
        m_stepTimes.push_back(tick - m_start);
        if (onStep) {
            onStep(step);
        }
    }
}

bool RegulationRun::Start() {
    m_start = GetTickCount();
    return m_host.Regulation().OLEStart() != 0;
}

NPreProcessor::EResult RegulationRun::Wait() {
    CRegulationSettings& document = m_host.Regulation();
    const WaitEnd end = m_host.TurnUntil([this, &document] {
        TakeSteps();
        return document.IsRegulationRunning() == 0;
    });
    if (end != WaitEnd::Done) {
        document.StopRegulation();
    }
    TakeSteps();
    m_endedAt = GetTickCount() - m_start;
    return document.GetStatus();
}

} // namespace kalvio::reference_host
