#include "host/FieldTable.h"

#include "host/HostApplication.h"
#include "host/SettingsData.h"
#include "platform/AutomationTable.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kalvio {
namespace {

std::vector<const FieldRow*> Ordered(std::span<const FieldRow> rows, int FieldRow::*place) {
    std::vector<const FieldRow*> ordered;
    for (const FieldRow& row : rows) {
        if (row.*place != kNoPlace) {
            ordered.push_back(&row);
        }
    }
    std::ranges::stable_sort(ordered, {}, [place](const FieldRow* row) { return row->*place; });
    return ordered;
}

// Rows read their members through the document that they belong to; nothing is changed on the way.
CSettingsData& Unlocked(const CSettingsData& document) {
    return const_cast<CSettingsData&>(document);
}

VARIANT ToScript(AutomationType type, double value) {
    switch (type) {
    case AutomationType::Short:
        return VARIANT::Short(static_cast<std::int16_t>(value));
    case AutomationType::Bool:
        return VARIANT::Bool(value != 0.0);
    case AutomationType::Double:
        return VARIANT::Double(value);
    default:
        return VARIANT::Long(static_cast<std::int32_t>(value));
    }
}

VARIANT ReadForScript(const CSettingsData& document, const FieldRow& row) {
    const bool shown = row.door == ScriptDoor::Messenger && row.real != nullptr;
    return ToScript(row.scriptType,
                    shown ? Unlocked(document).OLEGetPhyValue(row.ctrlID) : GetKept(document, row));
}

// A BOOL is 1 to a document, whatever it is to a script.
template<typename T>
T FromScript(const FieldRow& row, const VARIANT& value) {
    T taken{};
    if (row.scriptType == AutomationType::Bool) {
        bool on = false;
        value.Get(on);
        return static_cast<T>(on ? 1 : 0);
    }
    value.Get(taken);
    return taken;
}

SetOutcome WriteForScript(CSettingsData& document, const FieldRow& row, const VARIANT& value) {
    const std::span details(&row.details, 1);
    const std::span hint(&row.ctrlID, 1);
    if (row.real != nullptr) {
        const auto number = FromScript<double>(row, value);
        return row.door == ScriptDoor::Messenger
                   ? document.OLESetPhyValue(number, row.ctrlID)
                   : document.SetValue(row.real(document, row), details, 0, hint, number, 1, 1);
    }
    const auto number = FromScript<std::int32_t>(row, value);
    return row.door == ScriptDoor::Messenger
               ? document.OLESetIntValue(number, row.ctrlID)
               : document.SetValue(row.integer(document, row), details, 0, hint, number, 1, 1);
}

DispatchEntry NameOf(const FieldRow& row) {
    DispatchEntry entry;
    entry.name = row.script;
    entry.kind = DispatchKind::Property;
    entry.result = row.scriptType;
    entry.get = [&row](const CCmdTarget& target) {
        return ReadForScript(static_cast<const CSettingsData&>(target), row);
    };
    entry.set = [&row](CCmdTarget& target, const VARIANT& value) {
        return WriteForScript(static_cast<CSettingsData&>(target), row, value);
    };
    entry.describe = [&row](const CCmdTarget& target) {
        return DescribeField(static_cast<const CSettingsData&>(target), row);
    };
    return entry;
}

} // namespace

const FieldRow* FindRow(std::span<const FieldRow> rows, int id) {
    const auto found = std::ranges::find(rows, id, &FieldRow::id);
    return found == rows.end() ? nullptr : &*found;
}

const FieldRow* FindControl(std::span<const FieldRow> rows, int ctrlID) {
    const auto found = std::ranges::find(rows, ctrlID, &FieldRow::ctrlID);
    return found == rows.end() ? nullptr : &*found;
}

bool AppliesOnLoad(std::uint8_t saveFlag) {
    const CHostApplication& host = GetHostApplication();
    return !host.discardStoredValues && (saveFlag != 0 || host.applyUnsavedGroups);
}

double GetKept(const CSettingsData& document, const FieldRow& row) {
    if (row.integer != nullptr) {
        return row.integer(Unlocked(document), row).Get();
    }
    return row.real != nullptr ? row.real(Unlocked(document), row).Get() : 0.0;
}

void SetKept(CSettingsData& document, const FieldRow& row, double value) {
    if (row.integer != nullptr) {
        row.integer(document, row).Set(static_cast<std::int32_t>(value));
    } else if (row.real != nullptr) {
        row.real(document, row).Set(value);
    }
}

void StoreField(CArchive& archive, CSettingsData& document, const FieldRow& row) {
    if (row.real != nullptr) {
        archive.WriteDouble(row.real(document, row));
    } else {
        archive.WriteInt32(row.integer(document, row));
    }
}

LoadedField ReadField(CArchive& archive, const FieldRow& row) {
    LoadedField loaded;
    loaded.saveFlag = archive.ReadByte();
    loaded.value = row.real != nullptr ? archive.ReadDouble() : archive.ReadInt32();
    return loaded;
}

void CheckLoadedField(const LoadedField& loaded, const FieldRow& row) {
    const FieldDetails& limits = row.details;
    const bool anything = row.hostLimitsOnLoad || limits.minimum == limits.maximum;
    const bool admitted = std::isfinite(loaded.value) &&
                          (anything || (loaded.value >= limits.minimum && loaded.value <= limits.maximum));
    if (AppliesOnLoad(loaded.saveFlag) && !admitted) {
        const CString name = LoadText(limits.stringId);
        throw CArchiveException(anything
                                    ? Format("The archive holds %g for \"%s\".", loaded.value, name.c_str())
                                    : Format("The archive holds %g for \"%s\", which must lie between %g "
                                             "and %g.",
                                             loaded.value, name.c_str(), limits.minimum, limits.maximum));
    }
}

void ApplyLoadedField(CSettingsData& document, const LoadedField& loaded, const FieldRow& row) {
    if (AppliesOnLoad(loaded.saveFlag)) {
        SetKept(document, row, loaded.value);
    }
}

void SerializeRows(CArchive& archive, CSettingsData& document, std::span<std::uint8_t> groupFlags) {
    const std::vector<const FieldRow*> rows = RowsInArchiveOrder(document.FieldRows());
    const auto flagOf = [&](const FieldRow& row) -> std::uint8_t& {
        return groupFlags[static_cast<std::size_t>(row.group)];
    };
    if (!archive.IsLoading()) {
        for (const FieldRow* row : rows) {
            archive.WriteByte(flagOf(*row));
            StoreField(archive, document, *row);
        }
        return;
    }
    std::vector<LoadedField> loaded;
    for (const FieldRow* row : rows) {
        loaded.push_back(ReadField(archive, *row));
        CheckLoadedField(loaded.back(), *row);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        flagOf(*rows[i]) = loaded[i].saveFlag;
        ApplyLoadedField(document, loaded[i], *rows[i]);
    }
}

std::vector<const FieldRow*> RowsInArchiveOrder(std::span<const FieldRow> rows) {
    return Ordered(rows, &FieldRow::archivePlace);
}

std::vector<const FieldRow*> RowsInScriptOrder(std::span<const FieldRow> rows) {
    return Ordered(rows, &FieldRow::scriptPlace);
}

void AppendFieldNames(DispatchTable& table, std::span<const FieldRow> rows) {
    for (const FieldRow* row : RowsInScriptOrder(rows)) {
        table.push_back(NameOf(*row));
        for (const FieldChoice& choice : row->choices) {
            if (choice.constant != nullptr) {
                table.push_back(
                    automation::Constant(choice.constant, static_cast<std::int16_t>(choice.value)));
            }
        }
    }
}

ValueDescription DescribeField(const CSettingsData& document, const FieldRow& row) {
    CSettingsData& asked = Unlocked(document);
    ValueDescription description;
    description.title = LoadText(row.details.stringId);
    description.help = row.help;
    if (row.unit != nullptr) {
        description.unit = GetStringForUnit(row.unit(document));
    }
    if (row.kind == FieldKind::Flag) {
        description.minimum = 0.0;
        description.maximum = 1.0;
    } else if (row.kind == FieldKind::Number) {
        description.minimum = asked.GetMinValue(row.id);
        description.maximum = asked.GetMaxValue(row.id);
    }
    for (const FieldChoice& choice : row.choices) {
        if (row.kind != FieldKind::Choice || asked.IsEnumValueValid(row.ctrlID, choice.value) != 0) {
            description.choices.push_back({choice.value, LoadText(choice.textId),
                                           choice.constant == nullptr ? CString() : choice.constant});
        }
    }
    if (row.units != nullptr) {
        for (const int unit : row.units(asked)) {
            description.choices.push_back({unit, GetStringForUnit(unit), {}});
        }
    }
    return description;
}

} // namespace kalvio
