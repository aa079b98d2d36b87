#include "settling/SettlingView.h"

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "platform/DebugFile.h"
#include "platform/UserInterface.h"
#include "settling/SettlingControls.h"
#include "settling/SettlingDetails.h"
#include "settling/SettlingViewLayout.h"

using kalvio::FieldRow;
using kalvio::SettlingControl;
using kalvio::SettlingControlOf;
using kalvio::SettlingGroupOfControl;
using kalvio::SettlingRowOfControl;

namespace {

constexpr int kEverything = -1;
constexpr int kWholeWindow = -1;
constexpr unsigned kPanelStyle = 5120;
constexpr int kFirstControl = kCtrlSettlingType;
constexpr int kLastControl = kCtrlSettlingAverage + kSettlingGroups - 1;
constexpr char kTraceCaption[] = "Settling details";

CString DefaultText(int ctrlID) {
    const FieldRow* row = SettlingRowOfControl(ctrlID);
    if (row == nullptr) {
        return {};
    }
    const auto value = static_cast<int>(row->details.defaultValue);
    switch (SettlingControlOf(ctrlID)) {
    case SettlingControl::Type:
        return kalvio::LoadText(row->choices[static_cast<std::size_t>(value)].textId);
    case SettlingControl::Average:
        return kalvio::LoadText(kalvio::kTextOff + static_cast<unsigned>(value));
    default:
        break;
    }
    const unsigned unit = SettlingControlOf(ctrlID) == SettlingControl::Tolerance
                              ? kalvio::kTextPercent
                              : kalvio::kTextRangeUnitMilliseconds;
    return CSettingsData::FormatNumber(row->details.defaultValue, row->details) +
           kalvio::FormatText(" %s", kalvio::LoadText(unit));
}

} // namespace

CSettlingView::CSettlingView() : m_details(GetHostApplication().settlingDetails) {}

int CSettlingView::InitialiseView(int panel, CPoint) {
    if (panel == kWholeWindow || panel == kalvio::kSettlingPanel) {
        m_panel = AddPanelToFrame(kalvio::SettlingPanelLayout(), kPanelStyle);
    }
    if (CreatePanels() == 0 || (m_panel != nullptr && InitialiseSettlingPanel() == 0)) {
        return 0;
    }
    if (CTypedFrameWnd* const frame = GetParentFrame(); frame != nullptr) {
        frame->SetWindowType(kWindowType, panel);
    }
    return 1;
}

int CSettlingView::InitialiseSettlingPanel() {
    if (m_details == nullptr) {
        TraceError(kTraceCaption, "there is no settling document");
        return 0;
    }
    for (int group = 0; group < kSettlingGroups; ++group) {
        if (!InitialiseGroup(group)) {
            TraceError(kTraceCaption,
                       kalvio::Format("the controls of group %d cannot be initialised", group));
            return 0;
        }
    }
    m_initialised = true;
    OnUpdate(nullptr, kEverything, nullptr);
    return 1;
}

bool CSettlingView::InitialiseGroup(int group) {
    constexpr int kDecimal = 10;
    auto* type = Find<CComboBox>(kCtrlSettlingType + group);
    auto* tolerance = Find<CMultiBaseEdit>(kCtrlSettlingTolerance + group);
    auto* time = Find<CMultiBaseEdit>(kCtrlSettlingTime + group);
    auto* count = Find<CMultiBaseEdit>(kCtrlSettlingCount + group);
    auto* spin = Find<CSpinButtonCtrl>(kCtrlSettlingCountSpin + group);
    auto* average = Find<CButton>(kCtrlSettlingAverage + group);
    if (type == nullptr || tolerance == nullptr || time == nullptr || count == nullptr || spin == nullptr ||
        average == nullptr) {
        return false;
    }
    tolerance->SetDecimalPlaces(SettlingRowOfControl(kCtrlSettlingTolerance + group)->details.decimals);
    time->SetBase(kDecimal);
    count->SetBase(kDecimal);
    const FieldDetails& limits = SettlingRowOfControl(kCtrlSettlingCount + group)->details;
    spin->SetBuddy(count);
    spin->SetRange(static_cast<int>(limits.minimum), static_cast<int>(limits.maximum));
    for (CWnd* control : {static_cast<CWnd*>(type), static_cast<CWnd*>(tolerance), static_cast<CWnd*>(time),
                          static_cast<CWnd*>(count), static_cast<CWnd*>(spin), static_cast<CWnd*>(average)}) {
        const FieldRow* row = SettlingRowOfControl(control->GetDlgCtrlID());
        control->SetTooltip(kalvio::LoadText(row->details.stringId));
    }
    for (const kalvio::FieldChoice& choice : SettlingRowOfControl(kCtrlSettlingType + group)->choices) {
        const CString text = kalvio::LoadText(choice.textId);
        if (text.empty()) {
            return false;
        }
        type->AddString(text, choice.value);
    }
    return true;
}

int CSettlingView::OnControlChanged(int ctrlID) {
    if (m_details == nullptr || m_details->OnViewChanged(this, ctrlID) == 0) {
        return 0;
    }
    OnUpdate(this, ctrlID, nullptr);
    UpdateViews(this, ctrlID, nullptr, 0);
    return 1;
}

void CSettlingView::OnControlUpdateHardware(int ctrlID) {
    m_details->UpdateHardware(ctrlID);
}

void CSettlingView::OnUpdate(CView*, int hint, void*) {
    if (m_initialised && hint == kEverything) {
        for (int ctrlID = kFirstControl; ctrlID <= kLastControl; ++ctrlID) {
            ShowValue(ctrlID);
        }
    } else if (m_initialised) {
        ShowValue(hint);
    }
    if (SettlingControlOf(hint) != SettlingControl::Average) {
        AdjustControls(hint);
    }
}

void CSettlingView::ShowValue(int ctrlID) {
    const FieldRow* row = SettlingRowOfControl(ctrlID);
    if (row == nullptr) {
        return;
    }
    const auto value = static_cast<int>(kalvio::GetKept(*m_details, *row));
    switch (SettlingControlOf(ctrlID)) {
    case SettlingControl::Type:
        if (auto* combo = Find<CComboBox>(ctrlID); !combo->SetCurSelFromItemData(value)) {
            combo->SetCurSel(CComboBox::kNoSelection);
        }
        break;
    case SettlingControl::Count:
    case SettlingControl::CountSpin:
        Find<CSpinButtonCtrl>(kCtrlSettlingCountSpin + SettlingGroupOfControl(ctrlID))->SetPos(value);
        break;
    case SettlingControl::Average:
        Find<CButton>(ctrlID)->SetCheck(value);
        break;
    default:
        DisplayValue(ctrlID);
        break;
    }
}

void CSettlingView::DisplayValue(int ctrlID) {
    const SettlingControl control = SettlingControlOf(ctrlID);
    if (control == SettlingControl::Tolerance || control == SettlingControl::Time) {
        const FieldRow* row = SettlingRowOfControl(ctrlID);
        SetControlText(ctrlID, CSettingsData::FormatNumber(kalvio::GetKept(*m_details, *row), row->details));
    }
}

void CSettlingView::AdjustControls(int ctrlID) {
    if (!m_initialised || (ctrlID != kEverything && SettlingControlOf(ctrlID) != SettlingControl::Type)) {
        return;
    }
    for (int group = 0; group < kSettlingGroups; ++group) {
        if (ctrlID == kEverything || group == SettlingGroupOfControl(ctrlID)) {
            const int type = m_details->Group(static_cast<SettlingGroup>(group)).ToleranceType;
            EnableControl(kCtrlSettlingTolerance + group, type != TOLERANCETYPE_NONE);
            EnableControl(kCtrlSettlingAverage + group, type != TOLERANCETYPE_EXPONENTIAL);
        }
    }
}

LRESULT CSettlingView::OnSetDefault(WPARAM control, LPARAM) {
    const auto ctrlID = static_cast<int>(control);
    const CString question =
        kalvio::FormatText(kalvio::LoadText(kalvio::kTextSetDefault), DefaultText(ctrlID));
    const CString caption = kalvio::LoadText(kalvio::kTextSetDefaultCaption);
    if (m_details == nullptr || !kalvio::AskYesNo(question, kalvio::BoxIcon::Question, caption)) {
        return 0;
    }
    if (const FieldRow* row = SettlingRowOfControl(ctrlID); row != nullptr) {
        kalvio::SetKept(*m_details, *row, row->details.defaultValue);
    } else {
        kalvio::ShowMessage("Error : No default settings");
    }
    UpdateViews(nullptr, ctrlID, nullptr, 0);
    m_details->UpdateHardware(ctrlID);
    return 0;
}

LRESULT CSettlingView::OnShowRange(WPARAM control, LPARAM) {
    const auto ctrlID = static_cast<int>(control);
    if (const unsigned unit = kalvio::SettlingRangeUnit(ctrlID); unit != 0 && m_details != nullptr) {
        const FieldRow* row = SettlingRowOfControl(ctrlID);
        ShowRange(row->details.numberType, m_details->GetMinValue(row->id), m_details->GetMaxValue(row->id),
                  kalvio::LoadText(unit));
    }
    return 0;
}

void CSettlingView::PrintDetails(CDC*) {
    if (m_details != nullptr) {
        m_details->PrintDetails(this);
    }
}

void CSettlingView::SetPrintTabStops(CDC* context) {
    if (context != nullptr) {
        context->SetTabStops({0, (context->HorizontalResolution() - 2 * kLeftMargin) * 3 / 4});
    }
}
