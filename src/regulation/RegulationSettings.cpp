#include "regulation/RegulationSettings.h"

#include "host/HostApplication.h"

#include <type_traits>

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

const CRegulationSettings::Member CRegulationSettings::kMembers[kFieldCount] = {
    &CRegulationSettings::m_result,
    &CRegulationSettings::m_resultFftDetector,
    &CRegulationSettings::m_channel,
    &CRegulationSettings::m_regulationType,
    &CRegulationSettings::m_regulateTo,
    &CRegulationSettings::m_resultUnit,
    &CRegulationSettings::m_toleranceType,
    &CRegulationSettings::m_toleranceOffset,
    std::monostate{},
    &CRegulationSettings::m_toleranceRatio,
    &CRegulationSettings::m_toleranceUnit,
    &CRegulationSettings::m_sensitivity,
    &CRegulationSettings::m_trend,
    &CRegulationSettings::m_useSettling,
    &CRegulationSettings::m_source,
    &CRegulationSettings::m_sourceFftDetector,
    &CRegulationSettings::m_oppositeChannel,
    &CRegulationSettings::m_sourceMinLimit,
    &CRegulationSettings::m_sourceMaxLimit,
    &CRegulationSettings::m_sourceUnit,
    &CRegulationSettings::m_stepSize,
    &CRegulationSettings::m_stepSizeAuto,
    &CRegulationSettings::m_direction,
    &CRegulationSettings::m_timeout,
    &CRegulationSettings::m_continuous,
};

CRegulationSettings::CRegulationSettings() : m_watcher(GetHostApplication().mainWindow, nullptr, nullptr) {
    for (const int index : kConstructionOrder) {
        if (index == kResultUnit) {
            RefreshReferences(1);
        } else if (index == kSourceUnit) {
            RefreshReferences(0);
        }
        SetToDefault(index);
    }
    CHostApplication& application = GetHostApplication();
    for (const FieldEntry& field : kFields) {
        application.RegisterControl(field.ctrlID, this);
    }
    for (const int ctrlID : kRunControls) {
        application.RegisterControl(ctrlID, this);
    }
}

CRegulationSettings::~CRegulationSettings() {
    StopRegulation();
    GetHostApplication().UnregisterControls(this);
}

double CRegulationSettings::GetStoredValue(int index) const {
    if (!IsField(index)) {
        return 0.0;
    }
    return std::visit(
        [this](auto member) {
            if constexpr (std::is_same_v<decltype(member), std::monostate>) {
                return 0.0;
            } else {
                return static_cast<double>((this->*member).Get());
            }
        },
        kMembers[index]);
}

void CRegulationSettings::SetStoredValue(int index, double value) {
    if (const auto* integer = std::get_if<IntField CRegulationSettings::*>(&kMembers[index])) {
        (this->**integer).Set(static_cast<std::int32_t>(value));
    } else if (const auto* real = std::get_if<RealField CRegulationSettings::*>(&kMembers[index])) {
        (this->**real).Set(value);
    }
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
