#include "bench/RegulationRun.h"

namespace kalvio::bench {

RegulationRun::RegulationRun(BenchApplication& application)
    : m_application(application), m_previous(NPreProcessor::InstallRegulationObserver(this)) {}

RegulationRun::~RegulationRun() {
    NPreProcessor::InstallRegulationObserver(m_previous);
}

void RegulationRun::OnRegulationStep(const NPreProcessor::RegulationStep& step) {
    const std::scoped_lock guard(m_lock);
    m_arrived.push_back(step);
}

void RegulationRun::TakeSteps() {
    std::vector<NPreProcessor::RegulationStep> arrived;
    {
        const std::scoped_lock guard(m_lock);
        arrived.swap(m_arrived);
    }
    for (const NPreProcessor::RegulationStep& step : arrived) {
        m_steps.push_back(step);
        if (onStep)
            onStep(step);
    }
}

bool RegulationRun::Start() {
    return m_application.Regulation().OLEStart() != 0;
}

NPreProcessor::EResult RegulationRun::Wait() {
    CRegulationSettings& document = m_application.Regulation();
    const WaitEnd end = m_application.TurnUntil([this, &document] {
        TakeSteps();
        return document.IsRegulationRunning() == 0;
    });
    if (end != WaitEnd::Done)
        document.StopRegulation();
    TakeSteps();
    return document.GetStatus();
}

} // namespace kalvio::bench
