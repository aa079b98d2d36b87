#include "reference_host/configuration/FieldCheck.h"

#include "host/Units.h"
#include "platform/Json.h"
#include "reference_host/configuration/Sections.h"

#include <algorithm>
#include <cmath>

namespace kalvio::reference_host {

namespace {

CString ChoicesText(const FieldRow& row) {
    CString text;
    for (const FieldChoice& choice : row.choices) {
        text += Format("%s%d (%s)", text.empty() ? "" : ", ", choice.value, LoadText(choice.textId).c_str());
    }
    return text;
}

bool IsChoice(const FieldRow& row, double value) {
    return std::ranges::any_of(row.choices,
                               [value](const FieldChoice& choice) { return choice.value == value; });
}

bool IsUnit(double value) {
    const int unit = static_cast<int>(value);
    return unit == kUnitNone || GetStringIDForUnit(unit, 1) != 0;
}

void CheckValue(const FieldRow& row, double value, ProblemList& problems) {
    const CString name = FieldName(row);
    const bool limited = !row.hostLimitsOnLoad && row.details.minimum < row.details.maximum;
    if (!std::isfinite(value)) {
        problems.Add(name, "must be a number");
    } else if (row.kind == FieldKind::Choice && !row.choices.empty() && !IsChoice(row, value)) {
        problems.Add(name, Format("must be one of %s; is %g", ChoicesText(row).c_str(), value));
    } else if (row.kind == FieldKind::Choice && row.units != nullptr && !IsUnit(value)) {
        problems.Add(name, Format("must be the code of a unit; is %g", value));
    } else if (row.kind == FieldKind::Flag) {
        problems.Require(name, value, 0.0, 1.0);
    } else if (limited) {
        problems.Require(name, value, row.details.minimum, row.details.maximum);
    }
}

} // namespace

CString FieldName(const FieldRow& row) {
    return row.script != nullptr ? CString(row.script) : LoadText(row.details.stringId);
}

bool CheckFields(CArchive& archive, const std::vector<const FieldRow*>& rows, ProblemList& problems) {
    for (const FieldRow* row : rows) {
        try {
            const LoadedField loaded = ReadField(archive, *row);
            if (AppliesOnLoad(loaded.saveFlag)) {
                CheckValue(*row, loaded.value, problems);
            }
        } catch (const CArchiveException&) {
            problems.Add(FieldName(*row), "must be there; the section ends before it");
            return false;
        }
    }
    return true;
}

} // namespace kalvio::reference_host
