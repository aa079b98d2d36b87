// What the controls of the settling window do to the document.

#include "hardware/PreProcessorNotifications.h"
#include "platform/ControlState.h"
#include "platform/Controls.h"
#include "platform/Text.h"
#include "settling/SettlingDetails.h"
#include "settling/SettlingFields.h"

namespace {

// The host's range messages: for a count, a real number and a time.
constexpr int kRangeCount = 11071;
constexpr int kRangeReal = 11073;
constexpr int kRangeTime = 11074;

enum class ControlRow { Type, Tolerance, Time, Count, CountSpin, Average, Other };

ControlRow ControlRowOf(int ctrlID) {
    const int row = (ctrlID - kCtrlSettlingType) / kSettlingGroups;
    const bool known = ctrlID >= kCtrlSettlingType && row < static_cast<int>(ControlRow::Other);
    return known ? static_cast<ControlRow>(row) : ControlRow::Other;
}

template<typename Control>
Control* Find(CView* view, int ctrlID) {
    return view != nullptr ? dynamic_cast<Control*>(kalvio::FindControl(*view, ctrlID)) : nullptr;
}

bool IsInRange(int group, SettlingField field, int code, double value) {
    const FieldDetails& details =
        kalvio::SettlingFieldTable()[static_cast<std::size_t>(group * kSettlingFieldsPerGroup) +
                                     static_cast<std::size_t>(field)];
    return CheckMinMax(kalvio::LoadText(details.stringId), details.numberType, details.minimum,
                       details.maximum, code, value);
}

} // namespace

bool CSettlingDetails::TakeTolerance(CView* view, int ctrlID, int group) {
    auto* edit = Find<CMultiBaseEdit>(view, ctrlID);
    if (edit == nullptr) {
        return true;
    }
    const double value = edit->GetNumericalValue();
    if (!IsInRange(group, SettlingField::Tolerance, kRangeReal, value)) {
        edit->SetFocus();
        return false;
    }
    m_groups[static_cast<std::size_t>(group)].Tolerance = value;
    return true;
}

bool CSettlingDetails::TakeSettlingTime(CView* view, int ctrlID, int group) {
    auto* edit = Find<CMultiBaseEdit>(view, ctrlID);
    if (edit == nullptr) {
        return true;
    }
    auto& time = m_groups[static_cast<std::size_t>(group)].SettlingTime;
    const int value = edit->GetIntValue();
    if (!IsInRange(group, SettlingField::SettlingTime, kRangeTime, value)) {
        edit->SetIntValue(time);
        edit->SetFocus();
        return false;
    }
    time = value;
    return true;
}

bool CSettlingDetails::TakeCount(CView* view, int group) {
    auto* spin = Find<CSpinButtonCtrl>(view, kCtrlSettlingCountSpin + group);
    if (spin == nullptr) {
        return true;
    }
    auto& count = m_groups[static_cast<std::size_t>(group)].NumResults;
    const int value = spin->GetPos();
    if (!IsInRange(group, SettlingField::NumResults, kRangeCount, value)) {
        spin->SetPos(count);
        if (CWnd* edit = view->GetDlgItem(kCtrlSettlingCount + group); edit != nullptr) {
            edit->SetFocus();
        }
        return false;
    }
    count = value;
    return true;
}

int CSettlingDetails::OnViewChanged(CView* view, int ctrlID) {
    const ControlRow row = ControlRowOf(ctrlID);
    const int group = (ctrlID - kCtrlSettlingType) % kSettlingGroups;
    bool accepted = true;
    switch (row) {
    case ControlRow::Type:
        if (auto* combo = Find<CComboBox>(view, ctrlID); combo != nullptr && combo->GetCurSel() >= 0) {
            m_groups[static_cast<std::size_t>(group)].ToleranceType =
                static_cast<std::int32_t>(combo->GetItemData(combo->GetCurSel()));
        }
        break;
    case ControlRow::Tolerance:
        accepted = TakeTolerance(view, ctrlID, group);
        break;
    case ControlRow::Time:
        accepted = TakeSettlingTime(view, ctrlID, group);
        break;
    case ControlRow::Count:
    case ControlRow::CountSpin:
        accepted = TakeCount(view, group);
        break;
    case ControlRow::Average:
        if (auto* box = Find<CButton>(view, ctrlID); box != nullptr) {
            m_groups[static_cast<std::size_t>(group)].Average = box->GetCheck() != 0 ? 1 : 0;
        }
        break;
    case ControlRow::Other:
        break;
    }
    if (!accepted) {
        return 0;
    }
    NPreProcessor::NotifyNewSettlingParams();
    return 1;
}
