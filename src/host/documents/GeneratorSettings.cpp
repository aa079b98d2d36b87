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

struct SwitchKind {
    int ctrlID;
    unsigned textId;
    const char* help;
};

constexpr std::array<SwitchKind, kalvio::kGeneratorSwitches> kSwitches{{
    {kalvio::kCtrlGeneratorIndependent, kalvio::kTextGeneratorIndependent,
     "whether channel B has values of its own"},
    {kalvio::kCtrlGeneratorOnA, kalvio::kTextGeneratorOnA, "whether channel A puts its signal out"},
    {kalvio::kCtrlGeneratorOnB, kalvio::kTextGeneratorOnB, "whether channel B puts its signal out"},
}};

constexpr double kHighestRate = 216e3; // hertz
constexpr std::size_t kRateField = kalvio::kGeneratorSources + kalvio::kGeneratorSwitches;

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
    const auto found = std::ranges::find(kSwitches, ctrlID, &SwitchKind::ctrlID);
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

struct CGeneratorSettings::Rows {
    static CGeneratorSettings& Of(CSettingsData& document) {
        return static_cast<CGeneratorSettings&>(document);
    }
    static kalvio::Field<double>& Value(CSettingsData& document, const kalvio::FieldRow& row) {
        return Of(document).m_values[static_cast<std::size_t>(row.id)];
    }
    static kalvio::Field<std::int32_t>& Switch(CSettingsData& document, const kalvio::FieldRow& row) {
        return Of(document).m_switches[static_cast<std::size_t>(row.id) - kalvio::kGeneratorSources];
    }
    template<std::size_t Index>
    static const FieldDetails* Shown(CSettingsData& document) {
        return document.GetDefaultFieldDetails(kSources[Index].ctrlID, kUnitNone);
    }
    template<std::size_t Index>
    static int Unit(const CSettingsData& document) {
        return static_cast<const CGeneratorSettings&>(document).GetUnit(kSources[Index].ctrlID);
    }

    template<std::size_t Index>
    static kalvio::FieldRow Source() {
        constexpr const SourceKind& kKind = kSources[Index];
        const kalvio::Quantity& quantity = *kKind.quantity;
        constexpr int kReal = 7;
        return {
            .id = static_cast<int>(Index),
            .ctrlID = kKind.ctrlID,
            .details = {kKind.textId, quantity.minimum, quantity.maximum, quantity.defaultValue, kReal, 4},
            .real = Value,
            .hostDetails = Shown<Index>,
            .unit = Unit<Index>,
            .archivePlace = static_cast<int>(Index),
            .help = "a source that scripts, sweeps and regulations vary",
            .takeReal = kalvio::CallReaction<&CGeneratorSettings::TakeSource, CGeneratorSettings,
                                             CPhyValueMessenger>};
    }
    static kalvio::FieldRow OfSwitch(std::size_t index) {
        const int id = static_cast<int>(kalvio::kGeneratorSources + index);
        return {.id = id,
                .ctrlID = kSwitches[index].ctrlID,
                .details = {kSwitches[index].textId, 0, 1, 0, 0, 0},
                .kind = kalvio::FieldKind::Flag,
                .integer = Switch,
                .archivePlace = id,
                .help = kSwitches[index].help,
                .takeInt = kalvio::CallReaction<&CGeneratorSettings::TakeSwitch, CGeneratorSettings,
                                                CIntValueMessenger>};
    }
    static std::array<kalvio::FieldRow, kRateField + 1> Make() {
        std::array<kalvio::FieldRow, kRateField + 1> rows{Source<0>(), Source<1>(), Source<2>(), Source<3>(),
                                                          Source<4>(), Source<5>(), Source<6>()};
        for (std::size_t index = 0; index < kSwitches.size(); ++index) {
            rows[kSources.size() + index] = OfSwitch(index);
        }
        constexpr int kReal = 7;
        rows[kRateField] = {
            .id = static_cast<int>(kRateField),
            .ctrlID = kalvio::kCtrlGeneratorSampleRate,
            .details = {kalvio::kTextGeneratorSampleRate, kUnsetRate, kHighestRate, kUnsetRate, kReal, 3},
            .real = kalvio::KeptIn<&CGeneratorSettings::digitalSampleRate>,
            .archivePlace = static_cast<int>(kRateField),
            .help = "of the digital output, in hertz; -1 when it is not known"};
        return rows;
    }
};

std::span<const kalvio::FieldRow> CGeneratorSettings::FieldRows() const {
    static const auto kRows = Rows::Make();
    return kRows;
}

void CGeneratorSettings::Serialize(CArchive& archive) {
    const kalvio::LockGuard hold(m_lock);
    kalvio::SerializeRows(archive, *this, m_saved.flags);
}

CGeneratorSettings::CGeneratorSettings(kalvio::GeneratorOutput* output, CHostApplication* host)
    : CSettingsData(host), digitalSampleRate(kUnsetRate), m_output(output) {
    for (std::size_t index = 0; index < kSources.size(); ++index) {
        const kalvio::Quantity& quantity = *kSources[index].quantity;
        m_values[index] = quantity.defaultValue;
        m_sources[index] = {quantity.minimum, quantity.maximum, quantity.units.front()};
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
    return index ? m_values[*index].Get() : 0.0;
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
        m_values[*index] = storageValue;
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
        return CSettingsData::GetDefaultFieldDetails(ctrlID, unit);
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
    return quantity == nullptr ? CSettingsData::IsEnumValueValid(ctrlID, value)
                               : static_cast<int>(Offers(*quantity, value));
}

void CGeneratorSettings::TakeSwitch(CIntValueMessenger* messenger) {
    const std::size_t index = *SwitchIndex(messenger->ctrlID);
    if (messenger->get) {
        messenger->value = GetSwitch(messenger->ctrlID);
        return;
    }
    if (messenger->value != 0 && messenger->value != 1) {
        messenger->refused = true;
        messenger->refusal = "A switch may be 0 (off) or 1 (on).";
        return;
    }
    {
        const kalvio::LockGuard hold(m_lock);
        messenger->changed = m_switches[index] != messenger->value;
        m_switches[index] = messenger->value;
        Apply();
    }
    SetModifiedFlag();
    UpdateViews(nullptr, messenger->ctrlID, nullptr, 1);
}

void CGeneratorSettings::Fill(std::size_t index, CPhyValueMessenger& messenger) const {
    const int unit = messenger.unit == kUnitNone ? m_sources[index].unit : messenger.unit;
    messenger.value = CPhysicalValue::StorageToUnit(m_values[index], unit, m_references);
    messenger.references = m_references;
    messenger.hasReferences = true;
}

bool CGeneratorSettings::Write(std::size_t index, CPhyValueMessenger& messenger) {
    const Source& source = m_sources[index];
    const int unit = messenger.unit == kUnitNone ? source.unit : messenger.unit;
    const double value = CPhysicalValue::UnitToStorage(messenger.value, unit, m_references);
    if (std::isnan(messenger.value) || !kalvio::IsWithinLimits(value, source.minimum, source.maximum)) {
        messenger.refused = true;
        messenger.refusal = RefusalText(index);
        return false;
    }
    messenger.changed = m_values[index] != value;
    m_values[index] = value;
    Apply();
    return true;
}

bool CGeneratorSettings::OnMessenger(CPhyValueMessenger* messenger) {
    return OnSyncResult(messenger) || CSettingsData::OnMessenger(messenger);
}

void CGeneratorSettings::TakeSource(CPhyValueMessenger* messenger) {
    const std::size_t index = *SourceIndex(messenger->ctrlID);
    bool written = false;
    {
        const kalvio::LockGuard hold(m_lock);
        if (messenger->get) {
            Fill(index, *messenger);
            return;
        }
        written = Write(index, *messenger);
    }
    if (written) {
        SetModifiedFlag();
        UpdateViews(nullptr, messenger->ctrlID, nullptr, 1);
    } else if (messenger->wantsMessages) {
        kalvio::ShowMessage(messenger->refusal, kalvio::BoxIcon::Exclamation);
    }
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
