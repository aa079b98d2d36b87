// Limits, defaults and valid choices of the fields.

#include "host/HostApplication.h"
#include "regulation/RegulationSettings.h"

#include <algorithm>
#include <cmath>

using namespace kalvio::regulation;

namespace {

constexpr int kResultChoices[] = {kalvio::kResultRmsA, kalvio::kResultFrequencyA, kalvio::kResultPhase,
                                  kalvio::kResultCtDetectorA, kalvio::kResultFftDetectorA};

struct ResultDefaultUnit {
    int result;
    int unit;
};

// Of the results that always have the same; the others follow the analyser's state.
constexpr ResultDefaultUnit kResultDefaultUnits[] = {
    {kalvio::kResultInputFrameRate, kUnitHertz},
    {kalvio::kResultInputFrameRateDeviation, kUnitPpm},
    {kalvio::kResultCarrierAmplitude, kUnitCarrierVolt},
    {kalvio::kResultCarrierJitter, kUnitUi},
    {kalvio::kResultCarrierPhase, kUnitDegree},
    {kalvio::kResultFrequencyA, kUnitHertz},
    {kalvio::kResultPhase, kUnitDegree},
    {kalvio::kResultSyncFrameRate, kUnitHertz},
    {kalvio::kResultSyncFrameRateDeviation, kUnitPpm},
};

constexpr double kCoarseTolerance = 1.0; // for units shown without decimal places

bool IsDetectorValid(int detector) {
    return detector == 0 || GetFFTDetectorFromID(detector) != nullptr;
}

} // namespace

const FieldDetails* CRegulationSettings::GetDefaultFieldDetails(int ctrlID, int unit) {
    const int index = GetFieldIndexForCtrlID(ctrlID, unit);
    if (index < 0) {
        return nullptr;
    }
    const FieldDetails* hosts = HostDetails(index);
    return hosts != nullptr ? hosts : &FieldAt(index).details;
}

int CRegulationSettings::GetFieldIndexForCtrlID(int ctrlID, int unit) {
    if (ctrlID == kCtrlTolerance) {
        return unit == kUnitDb        ? kToleranceOffsetDb
               : unit == kUnitPercent ? kToleranceRatio
                                      : kToleranceOffset;
    }
    const auto* entry = std::find_if(kFields.begin(), kFields.end(),
                                     [ctrlID](const FieldEntry& field) { return field.ctrlID == ctrlID; });
    return entry == kFields.end() ? -1 : entry->index;
}

const FieldDetails* CRegulationSettings::HostDetails(int index) const {
    CSettingsData* document = nullptr;
    switch (index) {
    case kRegulateTo:
    case kToleranceOffset:
        document = ResultsTable();
        return document == nullptr ? nullptr : document->GetDefaultFieldDetails(m_result, m_resultUnit);
    case kStepSize:
        if (IsdBUnit(m_sourceUnit)) {
            return nullptr;
        }
        [[fallthrough]];
    case kSourceMinLimit:
    case kSourceMaxLimit:
        document = GetHostApplication().generator;
        return document == nullptr
                   ? nullptr
                   : document->GetDefaultFieldDetails(GetSourceCtrlID(nullptr, nullptr), m_sourceUnit);
    default:
        return nullptr;
    }
}

FieldDetails CRegulationSettings::DetailsOf(int index) const {
    FieldDetails details = FieldAt(index).details;
    if (const FieldDetails* hosts = HostDetails(index); hosts != nullptr) {
        details.minimum = hosts->minimum;
        details.maximum = hosts->maximum;
        details.defaultValue = hosts->defaultValue;
    }
    return details;
}

double CRegulationSettings::GetMinValue(int index) {
    return IsField(index) ? DetailsOf(index).minimum : 0.0;
}

double CRegulationSettings::GetMaxValue(int index) {
    return IsField(index) ? DetailsOf(index).maximum : 0.0;
}

double CRegulationSettings::GetDefaultValue(int index) {
    switch (index) {
    case kRegulateTo:
        return DefaultRegulateTo();
    case kResultUnit:
        return DefaultResultUnit();
    case kToleranceOffset:
        return GetNumDPsForUnit(m_resultUnit) == 0 ? kCoarseTolerance
                                                   : FieldAt(kToleranceOffset).details.defaultValue;
    case kToleranceUnit:
        return IsOffset() ? m_resultUnit.Get() : kUnitPercent;
    case kSourceMinLimit:
        return CPhysicalValue::UnitToStorage(DetailsOf(index).minimum, m_sourceUnit, m_sourceReferences);
    case kSourceMaxLimit:
        return CPhysicalValue::UnitToStorage(DetailsOf(index).maximum, m_sourceUnit, m_sourceReferences);
    case kSourceUnit:
        return DefaultSourceUnit();
    case kStepSize:
        return DefaultStepSize();
    default:
        return IsField(index) ? FieldAt(index).details.defaultValue : 0.0;
    }
}

double CRegulationSettings::DefaultRegulateTo() const {
    switch (m_result) {
    case kalvio::kResultCarrierAmplitude:
    case kalvio::kResultCarrierJitter:
    case kalvio::kResultCarrierPhase:
        return 0.0;
    case kalvio::kResultCtDetectorA:
    case kalvio::kResultFftDetectorA:
        if (IsRelativeUnit(m_resultUnit)) {
            return CPhysicalValue::UnitToStorage(1.0, kUnitPercent, m_resultReferences);
        }
        break;
    default:
        break;
    }
    return CPhysicalValue::UnitToStorage(DetailsOf(kRegulateTo).defaultValue, m_resultUnit,
                                         m_resultReferences);
}

int CRegulationSettings::DefaultResultUnit() const {
    const auto* fixed =
        std::find_if(std::begin(kResultDefaultUnits), std::end(kResultDefaultUnits),
                     [this](const ResultDefaultUnit& entry) { return entry.result == m_result; });
    if (fixed != std::end(kResultDefaultUnits)) {
        return fixed->unit;
    }
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    if (analyser == nullptr) {
        return kUnitVolt;
    }
    if (m_result == kalvio::kResultFftDetectorA) {
        const CFFTDetectorSettings* detector = GetFFTDetectorFromID(m_resultFftDetector);
        return analyser->GetAmplitudeUnit(detector != nullptr ? detector->Unit() : kUnitNone);
    }
    return analyser->GetResultDefaultUnit(m_result);
}

int CRegulationSettings::DefaultSourceUnit() const {
    const CGeneratorSettings* generator = GetHostApplication().generator;
    switch (m_source) {
    case kSourceGeneratorFrequency:
    case kSourceJitterFrequency:
        return kUnitHertz;
    case kSourceGeneratorAmplitude:
    case kSourceDcOffset:
    case kSourceJitterAmplitude:
        return generator == nullptr ? kUnitNone : generator->GetUnit(GetSourceCtrlID(nullptr, nullptr));
    default:
        return kUnitNone;
    }
}

double CRegulationSettings::DefaultStepSize() const {
    const double low = CPhysicalValue::StorageToUnit(m_sourceMinLimit, m_sourceUnit, m_sourceReferences);
    const double high = CPhysicalValue::StorageToUnit(m_sourceMaxLimit, m_sourceUnit, m_sourceReferences);
    if (high <= low) {
        return FieldAt(kStepSize).details.defaultValue;
    }
    return std::pow(10.0, SigFig(std::log10(high - low), 1) - 1.0);
}

int CRegulationSettings::IsEnumValueValid(int ctrlID, int value) {
    CSettingsData* document = nullptr;
    switch (ctrlID) {
    case kCtrlResult:
        return std::find(std::begin(kResultChoices), std::end(kResultChoices), value) !=
                       std::end(kResultChoices)
                   ? 1
                   : 0;
    case kCtrlChannel:
        return value >= kChannelA && value <= (IsAbsolute() ? kEither : kBothSeparately) ? 1 : 0;
    case kCtrlResultUnit:
        document = ResultDocument();
        return document != nullptr ? document->IsEnumValueValid(m_result, value) : 0;
    case kCtrlToleranceUnit:
        return IsToleranceUnitValid(value);
    case kCtrlSourceUnit:
        document = GetHostApplication().generator;
        return document != nullptr ? document->IsEnumValueValid(GetSourceCtrlID(nullptr, nullptr), value) : 0;
    case kCtrlResultFftDetector:
    case kCtrlSourceFftDetector:
        return IsDetectorValid(value) ? 1 : 0;
    case kCtrlDirection:
        return value >= NPreProcessor::kUp && value <= NPreProcessor::kDirectionUnknown ? 1 : 0;
    default:
        return CSettingsData::IsEnumValueValid(ctrlID, value);
    }
}

int CRegulationSettings::IsToleranceUnitValid(int unit) const {
    if (!IsAbsolute()) {
        return unit == kUnitPercent ? 1 : 0;
    }
    if (IsOffset()) {
        return unit == m_resultUnit ? 1 : 0;
    }
    return unit == kUnitDb || unit == kUnitPercent ? 1 : 0;
}

std::span<const int> CRegulationSettings::GetUnitsForCtrlID(int ctrlID) {
    CSettingsData* document = nullptr;
    switch (ctrlID) {
    case kCtrlResultUnit:
        document = ResultDocument();
        return document == nullptr ? std::span<const int>() : document->GetUnitsForCtrlID(m_result);
    case kCtrlSourceUnit:
        document = GetHostApplication().generator;
        return document == nullptr ? std::span<const int>()
                                   : document->GetUnitsForCtrlID(GetSourceCtrlID(nullptr, nullptr));
    default:
        return {};
    }
}
