// What the document does when something changes outside it.

#include "host/HostApplication.h"
#include "regulation/RegulationSettings.h"

using namespace kalvio::regulation;

namespace {

CIntValueMessenger Carry(int ctrlID, double value) {
    CIntValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = static_cast<int>(value);
    return messenger;
}

} // namespace

void CRegulationSettings::OnAnalyserDomainChanged() {
    if (m_result == kalvio::kResultRmsA || m_result == kalvio::kResultCtDetectorA ||
        m_result == kalvio::kResultFftDetectorA) {
        AdjustValues(1, 1);
    }
}

void CRegulationSettings::OnDetectorRelativityChanged(int detector, int) {
    const bool ofCtDetector = detector == kalvio::kNoDetector && m_result == kalvio::kResultCtDetectorA;
    const bool ofFftDetector = detector == m_resultFftDetector && m_result == kalvio::kResultFftDetectorA;
    if (ofCtDetector || ofFftDetector) {
        CheckResultUnit();
    }
}

void CRegulationSettings::OnJDOChanged() {
    CheckResultUnit();
}

void CRegulationSettings::OnADLineUpUpdated() {}

void CRegulationSettings::CheckResultUnit() {
    if (IsEnumValueValid(kCtrlResultUnit, m_resultUnit) == 0) {
        SetToDefault(kResultUnit);
        RefreshReferences(1);
        SetToDefault(kRegulateTo);
        FollowResultUnit();
    }
    UpdateViews(nullptr, kCtrlResult, nullptr, 1);
}

void CRegulationSettings::RemoveFFTDetector(int detector) {
    StopRegulation();
    if (!IsFFTDetectorUsed(detector)) {
        return;
    }
    m_watcher.Start(0); // lets go of a detector that an earlier run watched
    if (detector == m_resultFftDetector) {
        ForgetDetector(kCtrlResultFftDetector, kCtrlResult, kResult);
    }
    if (detector == m_sourceFftDetector) {
        ForgetDetector(kCtrlSourceFftDetector, kCtrlSource, kSource);
    }
}

void CRegulationSettings::ForgetDetector(int detectorCtrlID, int choiceCtrlID, int choiceIndex) {
    CIntValueMessenger none = Carry(detectorCtrlID, 0.0);
    OnMessenger(&none);
    CIntValueMessenger choice = Carry(choiceCtrlID, GetDefaultValue(choiceIndex));
    OnMessenger(&choice);
    UpdateViews(nullptr, choiceCtrlID, nullptr, 1);
}
