#include "host/SettingsData.h"

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "platform/UserInterface.h"

#include <cmath>

namespace {

// Whether the limits admit the value. Not-a-number is outside of any.
bool IsAdmitted(const FieldDetails& details, double value) {
    return value >= details.minimum && value <= details.maximum;
}

// Notes why a messenger's value is refused, and tells the user where the messenger wants it.
template<typename Messenger>
void Refuse(Messenger* messenger, const CString& text) {
    messenger->refused = true;
    messenger->refusal = text;
    if (messenger->wantsMessages) {
        kalvio::ShowMessage(text, kalvio::BoxIcon::Exclamation);
    }
}

template<typename Messenger>
kalvio::SetOutcome OutcomeOf(bool known, const Messenger& messenger) {
    if (!known) {
        return kalvio::SetOutcome::Refused("the document has no such field");
    }
    return messenger.refused ? kalvio::SetOutcome::Refused(messenger.refusal) : kalvio::SetOutcome{};
}

} // namespace

CHostApplication& CSettingsData::Host() const {
    return m_host != nullptr ? *m_host : GetHostApplication();
}

std::span<const kalvio::FieldRow> CSettingsData::FieldRows() const {
    return {};
}

const FieldDetails* CSettingsData::GetDefaultFieldDetails(int ctrlID, int unit) {
    const kalvio::FieldRow* row = kalvio::FindRow(FieldRows(), GetFieldIndexForCtrlID(ctrlID, unit));
    if (row == nullptr) {
        return nullptr;
    }
    const FieldDetails* hosts = row->hostDetails != nullptr ? row->hostDetails(*this) : nullptr;
    return hosts != nullptr ? hosts : &row->details;
}

int CSettingsData::GetFieldIndexForCtrlID(int ctrlID, int) {
    const kalvio::FieldRow* row = kalvio::FindControl(FieldRows(), ctrlID);
    return row == nullptr ? -1 : row->id;
}

int CSettingsData::IsEnumValueValid(int ctrlID, int value) {
    const kalvio::FieldRow* row = kalvio::FindControl(FieldRows(), ctrlID);
    if (row != nullptr && row->valid != nullptr) {
        return row->valid(*this, value);
    }
    const int index = GetFieldIndexForCtrlID(ctrlID, kUnitNone);
    return index >= 0 && value >= GetMinValue(index) && value <= GetMaxValue(index) ? 1 : 0;
}

FieldDetails CSettingsData::DetailsOfRow(const kalvio::FieldRow& row) {
    FieldDetails details = row.details;
    const FieldDetails* hosts = row.hostDetails != nullptr ? row.hostDetails(*this) : nullptr;
    if (hosts != nullptr) {
        details.minimum = hosts->minimum;
        details.maximum = hosts->maximum;
        details.defaultValue = hosts->defaultValue;
    }
    return details;
}

double CSettingsData::GetMinValue(int index) {
    const kalvio::FieldRow* row = kalvio::FindRow(FieldRows(), index);
    return row == nullptr ? 0.0 : DetailsOfRow(*row).minimum;
}

double CSettingsData::GetMaxValue(int index) {
    const kalvio::FieldRow* row = kalvio::FindRow(FieldRows(), index);
    return row == nullptr ? 0.0 : DetailsOfRow(*row).maximum;
}

double CSettingsData::GetDefaultValue(int index) {
    const kalvio::FieldRow* row = kalvio::FindRow(FieldRows(), index);
    if (row == nullptr) {
        return 0.0;
    }
    return row->initial != nullptr ? row->initial(*this) : row->details.defaultValue;
}

bool CSettingsData::OnMessenger(CIntValueMessenger* messenger) {
    const kalvio::FieldRow* row = kalvio::FindControl(FieldRows(), messenger->ctrlID);
    if (row == nullptr || row->integer == nullptr) {
        return false;
    }
    if (row->takeInt != nullptr) {
        row->takeInt(*this, messenger);
    } else {
        TakeByKind(*row, messenger);
    }
    return true;
}

bool CSettingsData::OnMessenger(CPhyValueMessenger* messenger) {
    const kalvio::FieldRow* row = kalvio::FindControl(FieldRows(), messenger->ctrlID);
    if (row == nullptr || row->real == nullptr) {
        return false;
    }
    if (row->takeReal != nullptr) {
        row->takeReal(*this, messenger);
    } else {
        TakeByKind(*row, messenger);
    }
    return true;
}

void CSettingsData::TakeByKind(const kalvio::FieldRow& row, CIntValueMessenger* messenger) {
    kalvio::Field<std::int32_t>& member = row.integer(*this, row);
    const bool changed = row.kind == kalvio::FieldKind::Choice ? OnEnumValue(member, messenger)
                         : row.kind == kalvio::FieldKind::Flag ? OnBoolValue(member, messenger)
                                                               : OnIntValue(member, messenger, row.id);
    if (changed) {
        UpdateViews(nullptr, row.ctrlID, nullptr, 1);
    }
}

void CSettingsData::TakeByKind(const kalvio::FieldRow& row, CPhyValueMessenger* messenger) {
    const int unit = row.unit != nullptr ? row.unit(*this) : kUnitNone;
    if (OnPhyValue(row.real(*this, row), messenger, DetailsOfRow(row), unit, unit, {})) {
        UpdateViews(nullptr, row.ctrlID, nullptr, 1);
    }
}

int CSettingsData::OnViewChanged(CView*, int) {
    return 1;
}

void CSettingsData::UpdateHardware(int) {}

CTypedFrameWnd* CSettingsData::OpenSettingsWindow(int, int, int, const CPoint*) {
    return nullptr;
}

void CSettingsData::PrintDetails(CPrintView*) {}

void CSettingsData::PopulateConfigTreeCtrl(CConfigTreeCtrl*, HTREEITEM) {}

void CSettingsData::PopulateSaveTable(CConfigTreeCtrl*, HTREEITEM) {}

void CSettingsData::PopulateOLETreeCtrl(COLETreeCtrl*, HTREEITEM) {}

std::span<const int> CSettingsData::GetUnitsForCtrlID(int ctrlID) {
    const kalvio::FieldRow* row = kalvio::FindControl(FieldRows(), ctrlID);
    return row != nullptr && row->units != nullptr ? row->units(*this) : std::span<const int>();
}

template<typename T>
kalvio::SetOutcome CSettingsData::CheckAndSet(kalvio::Field<T>& member, std::span<const FieldDetails> table,
                                              int index, std::span<const int> hints, T value, int check,
                                              int update) {
    if (index < 0 || static_cast<std::size_t>(index) >= table.size()) {
        return kalvio::SetOutcome::Refused("the document has no such field");
    }
    const FieldDetails& details = table[static_cast<std::size_t>(index)];
    const auto number = static_cast<double>(value);
    if (std::isnan(number) || (check != 0 && !IsAdmitted(details, number))) {
        const CString text = kalvio::OutOfRangeText(kalvio::LoadText(details.stringId), details.numberType,
                                                    details.minimum, details.maximum, {});
        if (check != 0 && Host().GetOLEDisplay() != 0) {
            kalvio::ShowMessage(text, kalvio::BoxIcon::Exclamation);
        }
        return kalvio::SetOutcome::Refused(text);
    }
    member.Set(value);
    SetModifiedFlag();
    if (update != 0) {
        for (const int hint : hints) {
            UpdateViews(nullptr, hint, nullptr, 1);
        }
    }
    return {};
}

kalvio::SetOutcome CSettingsData::SetValue(kalvio::Field<std::int32_t>& member,
                                           std::span<const FieldDetails> table, int index,
                                           std::span<const int> hints, std::int32_t value, int check,
                                           int update) {
    return CheckAndSet(member, table, index, hints, value, check, update);
}

kalvio::SetOutcome CSettingsData::SetValue(kalvio::Field<double>& member, std::span<const FieldDetails> table,
                                           int index, std::span<const int> hints, double value, int check,
                                           int update) {
    return CheckAndSet(member, table, index, hints, value, check, update);
}

kalvio::SetOutcome CSettingsData::OLESetIntValue(int value, int ctrlID) {
    CIntValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = value;
    messenger.wantsMessages = Host().GetOLEDisplay() != 0;
    const bool known = OnMessenger(&messenger);
    return OutcomeOf(known, messenger);
}

kalvio::SetOutcome CSettingsData::OLESetPhyValue(double value, int ctrlID) {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = value;
    messenger.unit = kUnitNone;
    messenger.wantsMessages = Host().GetOLEDisplay() != 0;
    const bool known = OnMessenger(&messenger);
    return OutcomeOf(known, messenger);
}

CString CSettingsData::AdmittedText(int ctrlID) const {
    const kalvio::FieldRow* row = kalvio::FindControl(FieldRows(), ctrlID);
    if (row == nullptr) {
        return {};
    }
    const kalvio::ValueDescription field = kalvio::DescribeField(*this, *row);
    CString text;
    for (const kalvio::ValueChoice& choice : field.choices) {
        text += (text.empty() ? "" : ", ") + std::to_string(choice.value) + " (" + choice.text + ")";
    }
    return text;
}

CString CSettingsData::FormatNumber(double value, const FieldDetails& details, int base) {
    constexpr int kHexadecimal = 16;
    if (base == kHexadecimal) {
        return kalvio::Format("%llX", static_cast<unsigned long long>(std::llround(value)));
    }
    const int decimals = IsIntegerType(details.numberType) ? 0 : details.decimals;
    return kalvio::Format("%.*f", decimals, value);
}

double CSettingsData::OLEGetPhyValue(int ctrlID) {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.get = true;
    messenger.unit = kUnitNone;
    return OnMessenger(&messenger) ? messenger.value : 0.0;
}

CString CSettingsData::Description(int ctrlID) {
    const FieldDetails* details = GetDefaultFieldDetails(ctrlID, kUnitNone);
    return details == nullptr ? CString() : kalvio::LoadText(details->stringId);
}

template<typename Messenger, typename T>
bool CSettingsData::Store(kalvio::Field<T>& member, Messenger* messenger, T value) {
    if (member.Get() == value) {
        return false;
    }
    member.Set(value);
    messenger->changed = true;
    SetModifiedFlag();
    return true;
}

bool CSettingsData::OnIntValue(kalvio::Field<std::int32_t>& member, CIntValueMessenger* messenger,
                               int index) {
    if (messenger->get) {
        messenger->value = member.Get();
        return false;
    }
    const double minimum = GetMinValue(index);
    const double maximum = GetMaxValue(index);
    if (messenger->value >= minimum && messenger->value <= maximum) {
        return Store(member, messenger, messenger->value);
    }
    constexpr int kInteger = 1;
    Refuse(messenger, kalvio::OutOfRangeText(Description(messenger->ctrlID), kInteger, minimum, maximum, {}));
    return false;
}

bool CSettingsData::OnEnumValue(kalvio::Field<std::int32_t>& member, CIntValueMessenger* messenger) {
    if (messenger->get) {
        messenger->value = member.Get();
        return false;
    }
    if (IsEnumValueValid(messenger->ctrlID, messenger->value) != 0) {
        return Store(member, messenger, messenger->value);
    }
    const CString reason =
        kalvio::FormatText(kalvio::LoadText(kalvio::kTextValueRefused), Description(messenger->ctrlID));
    Refuse(messenger, kalvio::FormatText(kalvio::LoadText(kalvio::kTextPropertyNotSet), reason));
    const CString choices = AdmittedText(messenger->ctrlID);
    if (!choices.empty()) {
        messenger->refusal += " It may be " + choices + ".";
    }
    return false;
}

bool CSettingsData::OnBoolValue(kalvio::Field<std::int32_t>& member, CIntValueMessenger* messenger) {
    if (messenger->get) {
        messenger->value = member.Get();
        return false;
    }
    return Store(member, messenger, messenger->value != 0 ? 1 : 0);
}

bool CSettingsData::OnPhyValue(kalvio::Field<double>& member, CPhyValueMessenger* messenger,
                               const FieldDetails& limits, int fieldUnit, int storedUnit,
                               const SReferences& references) {
    const int unit = messenger->unit == kUnitNone ? fieldUnit : messenger->unit;
    if (messenger->get) {
        messenger->value = CPhysicalValue::Convert(member.Get(), storedUnit, unit, references);
        messenger->references = references;
        messenger->hasReferences = true;
        return false;
    }
    // Not-a-number must be seen before a conversion makes a number of it.
    const double inFieldUnit = CPhysicalValue::Convert(messenger->value, unit, fieldUnit, references);
    if (!std::isnan(messenger->value) &&
        kalvio::IsWithinLimits(inFieldUnit, limits.minimum, limits.maximum)) {
        return Store(member, messenger,
                     CPhysicalValue::Convert(messenger->value, unit, storedUnit, references));
    }
    Refuse(messenger, kalvio::OutOfRangeText(kalvio::LoadText(limits.stringId), limits.numberType,
                                             limits.minimum, limits.maximum, GetStringForUnit(fieldUnit)));
    return false;
}

void UpdateViews(CView* sender, int hint, void* object, int flag) {
    GetHostApplication().NotifyViews(sender, hint, object, flag);
}
