#include "regulation/RegulationSettings.h"

#include "host/HostApplication.h"
#include "regulation/RegulationView.h"

using namespace kalvio::regulation;

namespace {

// Units before the values that depend on them.
constexpr int kConstructionOrder[] = {
    kResult,         kResultFftDetector, kChannel,
    kRegulationType, kResultUnit,        kRegulateTo,
    kToleranceType,  kToleranceOffset,   kToleranceRatio,
    kToleranceUnit,  kSensitivity,       kTrend,
    kUseSettling,    kTimeout,           kContinuous,
    kSource,         kSourceFftDetector, kOppositeChannel,
    kSourceUnit,     kSourceMinLimit,    kSourceMaxLimit,
    kStepSize,       kStepSizeAuto,      kDirection,
};

// What the document's views show besides the fields.
constexpr int kRunControls[] = {kCtrlStart, kCtrlAbort, kCtrlStatus};

} // namespace

CRegulationSettings::CRegulationSettings(CHostApplication* host)
    : CSettingsData(host),
      m_watcher(Host().mainWindow, nullptr, nullptr),
      m_viewFactory([] { return std::make_unique<CRegulationView>(); }) {
    for (const int index : kConstructionOrder) {
        if (index == kResultUnit) {
            RefreshReferences(1);
        } else if (index == kSourceUnit) {
            RefreshReferences(0);
        }
        SetToDefault(index);
    }
    CHostApplication& application = Host();
    for (const kalvio::FieldRow& field : Rows()) {
        application.RegisterControl(field.ctrlID, this);
    }
    for (const int ctrlID : kRunControls) {
        application.RegisterControl(ctrlID, this);
    }
}

CRegulationSettings::~CRegulationSettings() {
    StopRegulation();
    Host().UnregisterControls(this);
}

double CRegulationSettings::GetStoredValue(int index) const {
    return IsField(index) ? kalvio::GetKept(*this, FieldAt(index)) : 0.0;
}

void CRegulationSettings::SetStoredValue(int index, double value) {
    kalvio::SetKept(*this, FieldAt(index), value);
}

void CRegulationSettings::SetToDefault(int index) {
    SetStoredValue(index, GetDefaultValue(index));
}

int CRegulationSettings::OnViewChanged(CView*, int) {
    return 1;
}

void CRegulationSettings::UpdateHardware(int) {}

bool CRegulationSettings::IsOffset() const {
    return m_toleranceType == kOffset;
}

bool CRegulationSettings::IsAbsolute() const {
    return m_regulationType == kAbsolute;
}

int CRegulationSettings::IsMonotonic() const {
    return IsAbsolute() && m_trend >= NPreProcessor::kTrendIncreasing &&
                   m_trend <= NPreProcessor::kTrendUnknown
               ? 1
               : 0;
}

bool CRegulationSettings::IsFFTDetectorUsed(int detector) const {
    return detector != 0 && (detector == m_resultFftDetector || detector == m_sourceFftDetector);
}

bool CRegulationSettings::IsResultFromGenerator() const {
    return m_result == kalvio::kResultSyncFrameRate || m_result == kalvio::kResultSyncFrameRateDeviation;
}
