#include "settling/SettlingControls.h"

#include "host/HostTexts.h"

namespace kalvio {

namespace {

struct ControlInfo {
    SettlingField field;
    unsigned rangeUnit;
};

// In the order of SettlingControl.
constexpr ControlInfo kControls[] = {
    {SettlingField::ToleranceType, 0},
    {SettlingField::Tolerance, kTextRangeUnitPercent},
    {SettlingField::SettlingTime, kTextRangeUnitMilliseconds},
    {SettlingField::NumResults, kTextRangeUnitCount},
    {SettlingField::NumResults, kTextRangeUnitCount},
    {SettlingField::Average, 0},
};

const ControlInfo* InfoOf(int ctrlID) {
    const SettlingControl control = SettlingControlOf(ctrlID);
    return control == SettlingControl::Other ? nullptr : &kControls[static_cast<std::size_t>(control)];
}

} // namespace

SettlingControl SettlingControlOf(int ctrlID) {
    const int kind = (ctrlID - kCtrlSettlingType) / kSettlingGroups;
    const bool known = ctrlID >= kCtrlSettlingType && kind < static_cast<int>(SettlingControl::Other);
    return known ? static_cast<SettlingControl>(kind) : SettlingControl::Other;
}

int SettlingGroupOfControl(int ctrlID) {
    return (ctrlID - kCtrlSettlingType) % kSettlingGroups;
}

const FieldRow* SettlingRowOfControl(int ctrlID) {
    const ControlInfo* info = InfoOf(ctrlID);
    if (info == nullptr) {
        return nullptr;
    }
    const int index =
        SettlingGroupOfControl(ctrlID) * kSettlingFieldsPerGroup + static_cast<int>(info->field);
    return &SettlingRows()[static_cast<std::size_t>(index)];
}

unsigned SettlingRangeUnit(int ctrlID) {
    const ControlInfo* info = InfoOf(ctrlID);
    return info == nullptr ? 0 : info->rangeUnit;
}

} // namespace kalvio
