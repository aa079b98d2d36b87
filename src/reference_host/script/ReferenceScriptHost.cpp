#include "reference_host/script/ReferenceScriptHost.h"

#include "reference_host/results/OutcomeTexts.h"

namespace kalvio::reference_host {

PauseEnd ReferenceScriptHost::Pause(std::uint32_t milliseconds) {
    const WaitEnd end = m_host.TurnUntil([] { return false; }, milliseconds);
    return end == WaitEnd::Interrupted ? PauseEnd::Interrupted : PauseEnd::Done;
}

RegulationEnd ReferenceScriptHost::WaitForRegulation() {
    CRegulationSettings& document = m_host.Regulation();
    const WaitEnd end = m_host.TurnUntil([&document] { return document.IsRegulationRunning() == 0; });
    const NPreProcessor::EResult status = document.GetStatus();
    return {end == WaitEnd::Interrupted, status == NPreProcessor::Succeeded, RegulationText(status)};
}

} // namespace kalvio::reference_host
