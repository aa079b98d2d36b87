// What the controls of the settling window do to the document.

#include "hardware/PreProcessorNotifications.h"
#include "platform/ControlState.h"
#include "platform/Controls.h"
#include "platform/Text.h"
#include "settling/SettlingControls.h"
#include "settling/SettlingDetails.h"

using kalvio::SettlingControl;

namespace {

template<typename Control>
Control* Find(CView* view, int ctrlID) {
    return view != nullptr ? dynamic_cast<Control*>(kalvio::FindControl(*view, ctrlID)) : nullptr;
}

bool IsInRange(int ctrlID, double value) {
    const FieldDetails& details = kalvio::SettlingRowOfControl(ctrlID)->details;
    return CheckMinMax(kalvio::LoadText(details.stringId), details.numberType, details.minimum,
                       details.maximum, static_cast<int>(kalvio::SettlingRangeUnit(ctrlID)), value);
}

} // namespace

bool CSettlingDetails::TakeTolerance(CView* view, int ctrlID, int group) {
    auto* edit = Find<CMultiBaseEdit>(view, ctrlID);
    if (edit == nullptr) {
        return true;
    }
    const double value = edit->GetNumericalValue();
    if (!IsInRange(ctrlID, value)) {
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
    if (!IsInRange(ctrlID, value)) {
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
    if (!IsInRange(kCtrlSettlingCount + group, value)) {
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
    const int group = kalvio::SettlingGroupOfControl(ctrlID);
    bool accepted = true;
    switch (kalvio::SettlingControlOf(ctrlID)) {
    case SettlingControl::Type:
        if (auto* combo = Find<CComboBox>(view, ctrlID); combo != nullptr && combo->GetCurSel() >= 0) {
            m_groups[static_cast<std::size_t>(group)].ToleranceType =
                static_cast<std::int32_t>(combo->GetItemData(combo->GetCurSel()));
        }
        break;
    case SettlingControl::Tolerance:
        accepted = TakeTolerance(view, ctrlID, group);
        break;
    case SettlingControl::Time:
        accepted = TakeSettlingTime(view, ctrlID, group);
        break;
    case SettlingControl::Count:
    case SettlingControl::CountSpin:
        accepted = TakeCount(view, group);
        break;
    case SettlingControl::Average:
        if (auto* box = Find<CButton>(view, ctrlID); box != nullptr) {
            m_groups[static_cast<std::size_t>(group)].Average = box->GetCheck() != 0 ? 1 : 0;
        }
        break;
    case SettlingControl::Other:
        break;
    }
    if (!accepted) {
        return 0;
    }
    NPreProcessor::NotifyNewSettlingParams();
    return 1;
}
