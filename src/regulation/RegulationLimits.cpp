// Limits, defaults and valid choices of the fields.

#include "host/HostApplication.h"
#include "host/ResultCatalogue.h"
#include "regulation/RegulationSettings.h"

#include <algorithm>
#include <cmath>

using namespace kalvio::regulation;

namespace {

constexpr double kCoarseTolerance = 1.0; // for units shown without decimal places

bool OffersUnit(CSettingsData* document, int ctrlID, int unit) {
    return document != nullptr && document->IsEnumValueValid(ctrlID, unit) != 0;
}

std::span<const int> UnitsOf(CSettingsData* document, int ctrlID) {
    return document == nullptr ? std::span<const int>() : document->GetUnitsForCtrlID(ctrlID);
}

} // namespace

int CRegulationSettings::GetFieldIndexForCtrlID(int ctrlID, int unit) {
    if (ctrlID == kCtrlTolerance) {
        return unit == kUnitDb        ? kToleranceOffsetDb
               : unit == kUnitPercent ? kToleranceRatio
                                      : kToleranceOffset;
    }
    return CSettingsData::GetFieldIndexForCtrlID(ctrlID, unit);
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
        document = Host().generator;
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

double CRegulationSettings::DefaultToleranceOffset() const {
    return GetNumDPsForUnit(m_resultUnit) == 0 ? kCoarseTolerance
                                               : FieldAt(kToleranceOffset).details.defaultValue;
}

int CRegulationSettings::DefaultToleranceUnit() const {
    return IsOffset() ? m_resultUnit.Get() : kUnitPercent;
}

double CRegulationSettings::DefaultSourceLimit(int index) const {
    const FieldDetails details = DetailsOf(index);
    return CPhysicalValue::UnitToStorage(index == kSourceMinLimit ? details.minimum : details.maximum,
                                         m_sourceUnit, m_sourceReferences);
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
    const kalvio::ResultRow* row = kalvio::FindResultRow(m_result);
    if (row != nullptr && row->quantity != nullptr) {
        return row->usualUnit;
    }
    const CAnalyserSettings* analyser = Host().analyser;
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
    const CGeneratorSettings* generator = Host().generator;
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

int CRegulationSettings::IsResultValid(int result) const {
    const auto choices = FieldAt(kResult).choices;
    return std::ranges::find(choices, result, &kalvio::FieldChoice::value) != choices.end() ? 1 : 0;
}

int CRegulationSettings::IsDetectorValid(int detector) const {
    return detector == 0 || GetFFTDetectorFromID(detector) != nullptr ? 1 : 0;
}

int CRegulationSettings::IsChannelValid(int channel) const {
    return channel >= kChannelA && channel <= (IsAbsolute() ? kEither : kBothSeparately) ? 1 : 0;
}

int CRegulationSettings::IsResultUnitValid(int unit) const {
    return OffersUnit(ResultDocument(), m_result, unit) ? 1 : 0;
}

int CRegulationSettings::IsSourceUnitValid(int unit) const {
    return OffersUnit(Host().generator, GetSourceCtrlID(nullptr, nullptr), unit) ? 1 : 0;
}

int CRegulationSettings::IsDirectionValid(int direction) const {
    return direction >= NPreProcessor::kUp && direction <= NPreProcessor::kDirectionUnknown ? 1 : 0;
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

std::span<const int> CRegulationSettings::ResultUnits() {
    return UnitsOf(ResultDocument(), m_result);
}

std::span<const int> CRegulationSettings::SourceUnits() {
    return UnitsOf(Host().generator, GetSourceCtrlID(nullptr, nullptr));
}

std::span<const int> CRegulationSettings::ToleranceUnits() {
    static constexpr int kRatioUnits[] = {kUnitDb, kUnitPercent};
    if (IsAbsolute() && IsOffset()) {
        m_offsetUnit = m_resultUnit.Get();
        return {&m_offsetUnit, 1};
    }
    const std::span<const int> ratios(kRatioUnits);
    return IsAbsolute() && IsAmplitudeUnit(m_resultUnit) ? ratios : ratios.last(1);
}
