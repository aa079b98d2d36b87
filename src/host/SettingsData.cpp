#include "host/SettingsData.h"

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "platform/UserInterface.h"

#include <cmath>

namespace {

// Whether the entry's limits admit the value; tells the user when automation may show boxes.
bool IsAdmitted(const FieldDetails& details, double value) {
    if (value >= details.minimum && value <= details.maximum) {
        return true;
    }
    if (GetHostApplication().GetOLEDisplay() != 0) {
        kalvio::TellOutOfRange(kalvio::LoadText(details.stringId), details.numberType, details.minimum,
                               details.maximum, {});
    }
    return false;
}

} // namespace

const FieldDetails* CSettingsData::GetDefaultFieldDetails(int, int) {
    return nullptr;
}

int CSettingsData::GetFieldIndexForCtrlID(int, int) {
    return -1;
}

int CSettingsData::IsEnumValueValid(int ctrlID, int value) {
    const int index = GetFieldIndexForCtrlID(ctrlID, kUnitNone);
    return index >= 0 && value >= GetMinValue(index) && value <= GetMaxValue(index) ? 1 : 0;
}

double CSettingsData::GetMinValue(int) {
    return 0.0;
}

double CSettingsData::GetMaxValue(int) {
    return 0.0;
}

double CSettingsData::GetDefaultValue(int) {
    return 0.0;
}

bool CSettingsData::OnMessenger(CIntValueMessenger*) {
    return false;
}

bool CSettingsData::OnMessenger(CPhyValueMessenger*) {
    return false;
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

std::span<const int> CSettingsData::GetUnitsForCtrlID(int) {
    return {};
}

template<typename T>
bool CSettingsData::CheckAndSet(kalvio::Field<T>& member, std::span<const FieldDetails> table, int index,
                                std::span<const int> hints, T value, int check, int update) {
    if (index < 0 || static_cast<std::size_t>(index) >= table.size() ||
        std::isnan(static_cast<double>(value))) {
        return false;
    }
    if (check != 0 && !IsAdmitted(table[static_cast<std::size_t>(index)], static_cast<double>(value))) {
        return false;
    }
    member.Set(value);
    SetModifiedFlag();
    if (update != 0) {
        for (const int hint : hints) {
            UpdateViews(nullptr, hint, nullptr, 1);
        }
    }
    return true;
}

bool CSettingsData::SetValue(kalvio::Field<std::int32_t>& member, std::span<const FieldDetails> table,
                             int index, std::span<const int> hints, std::int32_t value, int check,
                             int update) {
    return CheckAndSet(member, table, index, hints, value, check, update);
}

bool CSettingsData::SetValue(kalvio::Field<double>& member, std::span<const FieldDetails> table, int index,
                             std::span<const int> hints, double value, int check, int update) {
    return CheckAndSet(member, table, index, hints, value, check, update);
}

bool CSettingsData::OLESetIntValue(int value, int ctrlID) {
    CIntValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = value;
    messenger.wantsMessages = GetHostApplication().GetOLEDisplay() != 0;
    return OnMessenger(&messenger) && !messenger.refused;
}

bool CSettingsData::OLESetPhyValue(double value, int ctrlID) {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = value;
    messenger.unit = kUnitNone;
    messenger.wantsMessages = GetHostApplication().GetOLEDisplay() != 0;
    return OnMessenger(&messenger) && !messenger.refused;
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
    messenger->refused = true;
    if (messenger->wantsMessages) {
        constexpr int kInteger = 1;
        kalvio::TellOutOfRange(Description(messenger->ctrlID), kInteger, minimum, maximum, {});
    }
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
    messenger->refused = true;
    if (messenger->wantsMessages) {
        const CString reason =
            kalvio::FormatText(kalvio::LoadText(kalvio::kTextValueRefused), Description(messenger->ctrlID));
        kalvio::ShowMessage(kalvio::FormatText(kalvio::LoadText(kalvio::kTextPropertyNotSet), reason),
                            kalvio::BoxIcon::Exclamation);
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
    messenger->refused = true;
    if (messenger->wantsMessages) {
        kalvio::TellOutOfRange(kalvio::LoadText(limits.stringId), limits.numberType, limits.minimum,
                               limits.maximum, GetStringForUnit(fieldUnit));
    }
    return false;
}

void UpdateViews(CView* sender, int hint, void* object, int flag) {
    GetHostApplication().NotifyViews(sender, hint, object, flag);
}
