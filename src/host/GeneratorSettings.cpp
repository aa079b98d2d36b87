#include "host/GeneratorSettings.h"

#include "host/HostTexts.h"
#include "host/ResultCatalogue.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr double kUnsetRate = -1.0;

struct SourceKind {
    int ctrlID;
    unsigned textId;
    const kalvio::Quantity* quantity;
};

constexpr std::array<SourceKind, kalvio::kGeneratorSources> kSources{{
    {kalvio::kCtrlGeneratorFrequencyA, kalvio::kTextGeneratorFrequencyA, &kalvio::kGeneratorFrequency},
    {kalvio::kCtrlGeneratorFrequencyB, kalvio::kTextGeneratorFrequencyB, &kalvio::kGeneratorFrequency},
    {kalvio::kCtrlGeneratorAmplitudeA, kalvio::kTextGeneratorAmplitudeA, &kalvio::kGeneratorAmplitude},
    {kalvio::kCtrlGeneratorAmplitudeB, kalvio::kTextGeneratorAmplitudeB, &kalvio::kGeneratorAmplitude},
    {kalvio::kCtrlDcOffset, kalvio::kTextDcOffset, &kalvio::kDcOffset},
    {kalvio::kCtrlJitterFrequency, kalvio::kTextJitterFrequency, &kalvio::kJitterFrequency},
    {kalvio::kCtrlJitterAmplitude, kalvio::kTextJitterAmplitude, &kalvio::kJitterAmplitude},
}};

constexpr std::array<int, kalvio::kGeneratorSwitches> kSwitches{
    kalvio::kCtrlGeneratorIndependent, kalvio::kCtrlGeneratorOnA, kalvio::kCtrlGeneratorOnB};

std::optional<std::size_t> SourceIndex(int ctrlID) {
    const auto found = std::find_if(kSources.begin(), kSources.end(),
                                    [ctrlID](const SourceKind& kind) { return kind.ctrlID == ctrlID; });
    return found == kSources.end() ? std::nullopt
                                   : std::optional(static_cast<std::size_t>(found - kSources.begin()));
}

// A result of the reference sync, which the generator side measures; null for any other.
const kalvio::ResultRow* SyncResult(int ctrlID) {
    const kalvio::ResultRow* row = kalvio::FindResultRow(ctrlID);
    return row != nullptr && row->side == kalvio::ResultSide::Generator ? row : nullptr;
}

std::optional<std::size_t> SwitchIndex(int ctrlID) {
    const auto found = std::find(kSwitches.begin(), kSwitches.end(), ctrlID);
    return found == kSwitches.end() ? std::nullopt
                                    : std::optional(static_cast<std::size_t>(found - kSwitches.begin()));
}

// What a control measures; null for one that is neither a source nor a sync result.
const kalvio::Quantity* QuantityOf(int ctrlID) {
    if (const auto index = SourceIndex(ctrlID)) {
        return kSources[*index].quantity;
    }
    const kalvio::ResultRow* result = SyncResult(ctrlID);
    return result == nullptr ? nullptr : result->quantity;
}

} // namespace

bool kalvio::IsGeneratorControl(int ctrlID) {
    return QuantityOf(ctrlID) != nullptr || SwitchIndex(ctrlID).has_value();
}

CGeneratorSettings::CGeneratorSettings(kalvio::GeneratorOutput* output)
    : digitalSampleRate(kUnsetRate), m_switches{}, m_output(output) {
    for (std::size_t index = 0; index < kSources.size(); ++index) {
        const kalvio::Quantity& quantity = *kSources[index].quantity;
        m_sources[index] = {quantity.defaultValue, quantity.minimum, quantity.maximum,
                            quantity.units.front()};
    }
    m_references.unit = kUnitVolt;
    m_references.reference = kStepsPerVolt;
}

void CGeneratorSettings::SetOutput(kalvio::GeneratorOutput* output) {
    const kalvio::LockGuard hold(m_lock);
    m_output = output;
}

kalvio::GeneratorState CGeneratorSettings::GetState() const {
    const kalvio::LockGuard hold(m_lock);
    return State();
}

kalvio::GeneratorState CGeneratorSettings::State() const {
    const bool independent = IsOn(kalvio::kCtrlGeneratorIndependent);
    kalvio::GeneratorState state;
    state.frequency[0] = Value(kalvio::kCtrlGeneratorFrequencyA);
    state.amplitude[0] = Value(kalvio::kCtrlGeneratorAmplitudeA);
    state.on[0] = IsOn(kalvio::kCtrlGeneratorOnA);
    state.frequency[1] = independent ? Value(kalvio::kCtrlGeneratorFrequencyB) : state.frequency[0];
    state.amplitude[1] = independent ? Value(kalvio::kCtrlGeneratorAmplitudeB) : state.amplitude[0];
    state.on[1] = independent ? IsOn(kalvio::kCtrlGeneratorOnB) : state.on[0];
    state.dcOffset = Value(kalvio::kCtrlDcOffset);
    state.jitterFrequency = Value(kalvio::kCtrlJitterFrequency);
    state.jitterAmplitude = Value(kalvio::kCtrlJitterAmplitude);
    return state;
}

double CGeneratorSettings::Value(int ctrlID) const {
    const auto index = SourceIndex(ctrlID);
    return index ? m_sources[*index].value : 0.0;
}

bool CGeneratorSettings::IsOn(int ctrlID) const {
    const auto index = SwitchIndex(ctrlID);
    return index && m_switches[*index] != 0;
}

void CGeneratorSettings::Apply() {
    m_lastStatus = m_output == nullptr ? std::int16_t{0} : m_output->Apply(State());
}

void CGeneratorSettings::SetSource(int ctrlID, double storageValue) {
    const kalvio::LockGuard hold(m_lock);
    const auto index = SourceIndex(ctrlID);
    if (index && !std::isnan(storageValue)) {
        m_sources[*index].value = storageValue;
    }
}

double CGeneratorSettings::GetSource(int ctrlID) const {
    const kalvio::LockGuard hold(m_lock);
    return Value(ctrlID);
}

int CGeneratorSettings::GetUnit(int ctrlID) const {
    const kalvio::LockGuard hold(m_lock);
    const auto index = SourceIndex(ctrlID);
    return index ? m_sources[*index].unit : kUnitNone;
}

void CGeneratorSettings::SetUnit(int ctrlID, int unit) {
    const kalvio::LockGuard hold(m_lock);
    const auto index = SourceIndex(ctrlID);
    if (index && Offers(*kSources[*index].quantity, unit)) {
        m_sources[*index].unit = unit;
    }
}

void CGeneratorSettings::SetLimits(int ctrlID, double minimum, double maximum) {
    const kalvio::LockGuard hold(m_lock);
    const auto index = SourceIndex(ctrlID);
    if (index && minimum <= maximum) {
        m_sources[*index].minimum = minimum;
        m_sources[*index].maximum = maximum;
    }
}

void CGeneratorSettings::SetReferences(const SReferences& references) {
    const kalvio::LockGuard hold(m_lock);
    m_references = references;
}

int CGeneratorSettings::GetSwitch(int ctrlID) const {
    const kalvio::LockGuard hold(m_lock);
    return IsOn(ctrlID) ? 1 : 0;
}

void CGeneratorSettings::SetSwitch(int ctrlID, int value) {
    const kalvio::LockGuard hold(m_lock);
    if (const auto index = SwitchIndex(ctrlID)) {
        m_switches[*index] = value != 0 ? 1 : 0;
    }
}

std::int16_t CGeneratorSettings::LastStatus() const {
    const kalvio::LockGuard hold(m_lock);
    return m_lastStatus;
}

FieldDetails CGeneratorSettings::SourceDetails(std::size_t index, int unit) const {
    const Source& source = m_sources[index];
    kalvio::Quantity limited = *kSources[index].quantity;
    limited.minimum = source.minimum;
    limited.maximum = source.maximum;
    return MakeDetails(limited, kSources[index].textId, unit == kUnitNone ? source.unit : unit, m_references);
}

const FieldDetails* CGeneratorSettings::GetDefaultFieldDetails(int ctrlID, int unit) {
    const kalvio::LockGuard hold(m_lock);
    if (const auto index = SourceIndex(ctrlID)) {
        return m_details.Put(ctrlID, unit, SourceDetails(*index, unit));
    }
    const kalvio::ResultRow* result = SyncResult(ctrlID);
    if (result == nullptr) {
        return nullptr;
    }
    const int statedIn = unit == kUnitNone ? result->quantity->units.front() : unit;
    return m_details.Put(ctrlID, unit,
                         MakeDetails(*result->quantity, result->textId, statedIn, m_references));
}

std::span<const int> CGeneratorSettings::GetUnitsForCtrlID(int ctrlID) {
    const kalvio::Quantity* quantity = QuantityOf(ctrlID);
    return quantity == nullptr ? std::span<const int>() : quantity->units;
}

int CGeneratorSettings::IsEnumValueValid(int ctrlID, int value) {
    const kalvio::Quantity* quantity = QuantityOf(ctrlID);
    return quantity != nullptr && Offers(*quantity, value) ? 1 : 0;
}

bool CGeneratorSettings::OnMessenger(CIntValueMessenger* messenger) {
    const auto index = SwitchIndex(messenger->ctrlID);
    if (!index) {
        return false;
    }
    if (messenger->get) {
        messenger->value = GetSwitch(messenger->ctrlID);
        return true;
    }
    if (messenger->value != 0 && messenger->value != 1) {
        messenger->refused = true;
        messenger->refusal = "A switch may be 0 (off) or 1 (on).";
        return true;
    }
    {
        const kalvio::LockGuard hold(m_lock);
        messenger->changed = m_switches[*index] != messenger->value;
        m_switches[*index] = messenger->value;
        Apply();
    }
    SetModifiedFlag();
    UpdateViews(nullptr, messenger->ctrlID, nullptr, 1);
    return true;
}

void CGeneratorSettings::Fill(const Source& source, CPhyValueMessenger& messenger) const {
    const int unit = messenger.unit == kUnitNone ? source.unit : messenger.unit;
    messenger.value = CPhysicalValue::StorageToUnit(source.value, unit, m_references);
    messenger.references = m_references;
    messenger.hasReferences = true;
}

bool CGeneratorSettings::Write(Source& source, CPhyValueMessenger& messenger) {
    const int unit = messenger.unit == kUnitNone ? source.unit : messenger.unit;
    const double value = CPhysicalValue::UnitToStorage(messenger.value, unit, m_references);
    if (std::isnan(messenger.value) || !kalvio::IsWithinLimits(value, source.minimum, source.maximum)) {
        messenger.refused = true;
        return false;
    }
    messenger.changed = source.value != value;
    source.value = value;
    Apply();
    return true;
}

bool CGeneratorSettings::OnMessenger(CPhyValueMessenger* messenger) {
    const auto index = SourceIndex(messenger->ctrlID);
    if (!index) {
        return OnSyncResult(messenger);
    }
    bool written = false;
    {
        const kalvio::LockGuard hold(m_lock);
        if (messenger->get) {
            Fill(m_sources[*index], *messenger);
            return true;
        }
        written = Write(m_sources[*index], *messenger);
        if (!written) {
            messenger->refusal = RefusalText(*index);
        }
    }
    if (written) {
        SetModifiedFlag();
        UpdateViews(nullptr, messenger->ctrlID, nullptr, 1);
    } else if (messenger->wantsMessages) {
        kalvio::ShowMessage(messenger->refusal, kalvio::BoxIcon::Exclamation);
    }
    return true;
}

bool CGeneratorSettings::OnSyncResult(CPhyValueMessenger* messenger) const {
    if (SyncResult(messenger->ctrlID) == nullptr) {
        return false;
    }
    if (!messenger->get) {
        messenger->refused = true;
        return true;
    }
    const kalvio::LockGuard hold(m_lock);
    messenger->value = kalvio::kInvalidResult;
    messenger->references = m_references;
    messenger->hasReferences = true;
    return true;
}

CString CGeneratorSettings::RefusalText(std::size_t index) const {
    const FieldDetails details = SourceDetails(index, kUnitNone);
    return kalvio::OutOfRangeText(kalvio::LoadText(details.stringId), details.numberType, details.minimum,
                                  details.maximum, GetStringForUnit(m_sources[index].unit));
}

void CGeneratorSettings::UpdateHardware(int ctrlID) {
    if (kalvio::IsGeneratorControl(ctrlID)) {
        const kalvio::LockGuard hold(m_lock);
        Apply();
    }
}
