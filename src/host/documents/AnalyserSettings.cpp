#include "host/AnalyserSettings.h"

#include "host/HostTexts.h"
#include "host/ResultCatalogue.h"

#include <algorithm>

namespace {

constexpr double kUnsetRate = -1.0;

constexpr const kalvio::Quantity* kAmplitude = nullptr; // depends on the input in use

const kalvio::ResultRow* Find(int resultID) {
    const kalvio::ResultRow* row = kalvio::FindResultRow(resultID);
    const bool own = row != nullptr && row->name != nullptr && row->side == kalvio::ResultSide::Analyser;
    return own ? row : nullptr;
}

bool IsCtDetector(int resultID) {
    return resultID == kalvio::kResultCtDetectorA || resultID == kalvio::kResultCtDetectorB;
}

} // namespace

bool kalvio::IsAnalyserResult(int resultID) {
    return Find(resultID) != nullptr;
}

CAnalyserSettings::CAnalyserSettings(CHostApplication* host)
    : CSettingsData(host),
      secondChannel(kChannelB),
      inputSampleRate(kUnsetRate),
      outputSampleRate(kUnsetRate),
      lineUpVoltage(1.0),
      referenceValue{kalvio::Field<double>(1.0), kalvio::Field<double>(1.0)} {
    references.unit = kUnitVolt;
    references.reference = kStepsPerVolt;
}

const kalvio::Quantity& CAnalyserSettings::AmplitudeQuantity() const {
    if (jitterDomain.Get() == 1) {
        return kalvio::kJitterDomainAmplitude;
    }
    return inputType.Get() == static_cast<std::int32_t>(kalvio::InputType::Digital)
               ? kalvio::kDigitalAmplitude
               : kalvio::kAnalogueAmplitude;
}

const kalvio::Quantity* CAnalyserSettings::QuantityOf(int resultID) const {
    const kalvio::ResultRow* result = Find(resultID);
    if (result == nullptr) {
        return nullptr;
    }
    return result->quantity == kAmplitude ? &AmplitudeQuantity() : result->quantity;
}

const FieldDetails* CAnalyserSettings::GetDefaultFieldDetails(int ctrlID, int unit) {
    const kalvio::ResultRow* result = Find(ctrlID);
    if (result == nullptr) {
        return CSettingsData::GetDefaultFieldDetails(ctrlID, unit);
    }
    const int statedIn = unit == kUnitNone ? GetResultDefaultUnit(ctrlID) : unit;
    return m_details.Put(ctrlID, unit,
                         MakeDetails(*QuantityOf(ctrlID), result->textId, statedIn, references));
}

std::span<const int> CAnalyserSettings::GetUnitsForCtrlID(int ctrlID) {
    const kalvio::Quantity* quantity = QuantityOf(ctrlID);
    if (quantity == nullptr) {
        return CSettingsData::GetUnitsForCtrlID(ctrlID);
    }
    if (!IsCtDetector(ctrlID)) {
        return quantity->units;
    }
    return UnitsOf(*quantity, IsRelativeUnit(ctDetectorUnit) ? kalvio::Relativity::Relative
                                                             : kalvio::Relativity::Absolute);
}

int CAnalyserSettings::IsEnumValueValid(int ctrlID, int value) {
    const std::span<const int> units = GetUnitsForCtrlID(ctrlID);
    if (units.empty()) {
        return CSettingsData::IsEnumValueValid(ctrlID, value);
    }
    return std::find(units.begin(), units.end(), value) != units.end() ? 1 : 0;
}

bool CAnalyserSettings::OnMessenger(CPhyValueMessenger* messenger) {
    const kalvio::Quantity* quantity = QuantityOf(messenger->ctrlID);
    if (quantity == nullptr) {
        return CSettingsData::OnMessenger(messenger);
    }
    if (!messenger->get) {
        messenger->refused = true;
        return true;
    }
    messenger->value = kalvio::kInvalidResult;
    messenger->references = references;
    messenger->hasReferences = true;
    return true;
}

int CAnalyserSettings::GetAmplitudeUnit(int ownUnit) const {
    const kalvio::Quantity& amplitude = AmplitudeQuantity();
    if (Offers(amplitude, ownUnit)) {
        return ownUnit;
    }
    const int rmsUnit =
        &amplitude == &kalvio::kDigitalAmplitude ? rmsUnitDigital.Get() : rmsUnitAnalogue.Get();
    // An amplitude that is not relative does not become so by following another.
    const bool follows = &amplitude != &kalvio::kJitterDomainAmplitude && Offers(amplitude, rmsUnit) &&
                         (ownUnit == kUnitNone || !IsRelativeUnit(rmsUnit));
    return follows ? rmsUnit : amplitude.units.front();
}

int CAnalyserSettings::GetResultDefaultUnit(int resultID) const {
    const kalvio::ResultRow* result = Find(resultID);
    if (result == nullptr) {
        return kUnitNone;
    }
    if (result->quantity != kAmplitude) {
        return result->quantity->units.front();
    }
    return GetAmplitudeUnit(IsCtDetector(resultID) ? ctDetectorUnit : kUnitNone);
}

double CAnalyserSettings::GetResultDefault(int resultID) const {
    const kalvio::Quantity* quantity = QuantityOf(resultID);
    return quantity == nullptr ? 0.0
                               : CPhysicalValue::StorageToUnit(quantity->defaultValue,
                                                               GetResultDefaultUnit(resultID), references);
}
