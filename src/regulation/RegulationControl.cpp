// Starting, stopping and ending a regulation.

#include "host/HostApplication.h"
#include "platform/UserInterface.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettledResult.h"
#include "regulation/RegulationSettings.h"

#include <mutex>

using namespace kalvio::regulation;
using NPreProcessor::EResult;

namespace {

constexpr int kNone = -1;

void TellStatusChanged() {
    UpdateViews(nullptr, kCtrlStatus, nullptr, 1);
}

void Refuse(int showMessages, unsigned textId) {
    if (showMessages != 0) {
        kalvio::ShowMessage(kalvio::LoadText(textId));
    }
}

void SwitchOn(CGeneratorSettings& generator, int ctrlID) {
    generator.SetSwitch(ctrlID, 1);
    UpdateViews(nullptr, ctrlID, nullptr, 1);
    generator.UpdateHardware(ctrlID);
}

} // namespace

int CRegulationSettings::IsRegulationRunning() const {
    return m_status == EResult::Working ? 1 : 0;
}

int CRegulationSettings::StartRegulation(int showMessages) {
    if (IsRegulationRunning() != 0 || ValidateEntries(showMessages) == 0 || EnsureSetupCorrect() == 0) {
        return 0;
    }
    m_passCounter = IsSplit() ? 2 : 1;
    if (!IsResultThere()) {
        Refuse(showMessages, kTextResultMissing);
        m_status = EResult::Failed;
        TellStatusChanged();
        return 0;
    }
    m_firstPassResult = EResult::None;
    m_usesFft = m_result == kalvio::kResultFftDetectorA;
    if (m_usesFft) {
        IncFFTUsageCount();
    }
    m_watcher.StartAndRequestNotification();
    m_status = EResult::Working;
    TellStatusChanged();
    return 1;
}

// The regulator leaves its outcome alone when there is nothing to watch, so that an earlier run's would show.
bool CRegulationSettings::IsResultThere() {
    int a = kNone;
    int b = kNone;
    int detector = 0;
    ChannelNumber channel = kChannelA;
    if (GetResultIDs(a, b, detector, channel) == 0) {
        return true; // the regulator itself fails for a result that nobody knows
    }
    const auto isThere = [detector](int result) { return GetResultFieldFromID(result, detector) != nullptr; };
    if (IsSplit()) {
        return isThere(m_passCounter == 1 ? b : a);
    }
    return (channel != kChannelB && isThere(a)) || (channel != kChannelA && isThere(b));
}

int CRegulationSettings::ValidateEntries(int showMessages) {
    if (m_sourceMaxLimit <= m_sourceMinLimit) {
        Refuse(showMessages, kTextLimitsInvalid);
        return 0;
    }
    if (m_stepSizeAuto != 0) {
        return 1;
    }
    const double low = CPhysicalValue::StorageToUnit(m_sourceMinLimit, m_sourceUnit, m_sourceReferences);
    const double high = CPhysicalValue::StorageToUnit(m_sourceMaxLimit, m_sourceUnit, m_sourceReferences);
    if (high - low <= m_stepSize) {
        Refuse(showMessages, kTextStepTooLarge);
        return 0;
    }
    return 1;
}

int CRegulationSettings::EnsureSetupCorrect() {
    int first = kChannelA;
    int second = kChannelB;
    GetSWAnalyserChannels(first, second);
    const ChannelNumber channel = GetActualChannel();
    if ((channel == kChannelA && first == kChannelB) || (channel == kChannelB && second == kChannelA)) {
        SetAnalyserChannel(kChannelBoth);
    }
    if (m_result == kalvio::kResultFftDetectorA) {
        ToggleTrigger(1);
    }
    if (m_source == kSourceGeneratorFrequency || m_source == kSourceGeneratorAmplitude) {
        SwitchGeneratorsOn();
    }
    int sourceB = kNone;
    ClampSource(GetSourceCtrlID(&sourceB, nullptr));
    if (sourceB != kNone) {
        ClampSource(sourceB);
    }
    return 1;
}

void CRegulationSettings::SwitchGeneratorsOn() const {
    CGeneratorSettings* generator = Host().generator;
    if (generator == nullptr) {
        return;
    }
    if (m_channel == kBothSeparately && generator->GetSwitch(kalvio::kCtrlGeneratorIndependent) != 1) {
        SwitchOn(*generator, kalvio::kCtrlGeneratorIndependent);
    }
    const ChannelNumber channel = GetActualChannel();
    const bool opposite = m_oppositeChannel != 0;
    // With either channel in mind the source is the one of channel A.
    const bool measuresA = channel != kChannelB;
    const bool measuresB = channel == kChannelB || channel == kChannelBoth;
    if (measuresA || opposite) {
        SwitchOn(*generator, kalvio::kCtrlGeneratorOnA);
    }
    if ((measuresB || opposite) && generator->GetSwitch(kalvio::kCtrlGeneratorIndependent) == 1) {
        SwitchOn(*generator, kalvio::kCtrlGeneratorOnB);
    }
}

void CRegulationSettings::ClampSource(int ctrlID) const {
    const double value = ReadSource(ctrlID, kUnitStorage).value;
    if (value < m_sourceMinLimit) {
        WriteSource(ctrlID, m_sourceMinLimit);
    } else if (value > m_sourceMaxLimit) {
        WriteSource(ctrlID, m_sourceMaxLimit);
    }
}

int CRegulationSettings::StopRegulation() {
    if (IsRegulationRunning() == 0) {
        return 1;
    }
    {
        // One step, so that the regulator cannot end between the look and the stop.
        const kalvio::LockGuard hold(kalvio::preprocessor::Lock());
        if (m_watcher.GetStatus() != EResult::Working && Host().mainWindow != nullptr) {
            ++m_reportsOfStoppedRuns;
        }
        m_watcher.Start(0);
    }
    m_status = EResult::Aborted;
    OnRegulationFinished();
    return 1;
}

void CRegulationSettings::OnRegulationResult(unsigned result, long) {
    const auto outcome = static_cast<EResult>(result);
    if (IsReportOfStoppedRun(outcome) || IsRegulationRunning() == 0) {
        return;
    }
    const bool last = m_passCounter-- <= 1;
    if (!last) {
        m_firstPassResult = outcome;
        if (IsResultThere()) {
            m_watcher.StartAndRequestNotification();
            return;
        }
        m_status = EResult::Failed;
        OnRegulationFinished();
        return;
    }
    const bool firstWentWell = m_firstPassResult == EResult::None || m_firstPassResult == EResult::Succeeded;
    m_status = firstWentWell ? outcome : m_firstPassResult;
    OnRegulationFinished();
}

bool CRegulationSettings::IsReportOfStoppedRun(EResult outcome) {
    if (m_reportsOfStoppedRuns == 0) {
        return false;
    }
    // A report that the regulator stands by is this run's: the stopped run's may never have been routed.
    if (IsRegulationRunning() != 0 && m_watcher.GetStatus() == outcome) {
        return false;
    }
    --m_reportsOfStoppedRuns;
    return true;
}

void CRegulationSettings::OnRegulationFinished() {
    if (m_usesFft) {
        DecFFTUsageCount();
    }
    TellStatusChanged();
}

int CRegulationSettings::OLEStart() {
    return StartRegulation(Host().GetOLEDisplay());
}

void CRegulationSettings::OLEStop() {
    StopRegulation();
}

short CRegulationSettings::OLEGetStatus() {
    switch (m_status) {
    case EResult::None:
        return kStatusNone;
    case EResult::Working:
        return kStatusInProgress;
    case EResult::Succeeded:
        return kStatusOk;
    default:
        return kStatusFailed;
    }
}
