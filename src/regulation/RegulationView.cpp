#include "regulation/RegulationView.h"

#include "host/HostApplication.h"
#include "regulation/RegulationSettings.h"
#include "regulation/RegulationStatusText.h"
#include "regulation/RegulationViewControls.h"
#include "regulation/RegulationViewLayout.h"

#include <algorithm>
#include <iterator>

using namespace kalvio::regulation;

namespace {

constexpr int kWholeWindow = -1;
constexpr int kEverything = -1;
constexpr int kEverythingButStatus = -2;
constexpr unsigned kDocked = 5120;
constexpr unsigned kFloating = 21760;

// What the host says of its detectors: come, gone, renamed; shown relatively.
constexpr int kDetectorHints[] = {-301, -302, -303, 3255, 3355};

} // namespace

CRegulationSettings* CRegulationView::GetRegulationSettings() const {
    return m_leaving ? nullptr : GetHostApplication().regulation;
}

int CRegulationView::InitialiseView(int panel, CPoint) {
    for (const kalvio::DialogTemplate& layout : PanelLayouts()) {
        if (panel == kWholeWindow || panel == layout.id) {
            AddPanelToFrame(layout, panel == kWholeWindow ? kDocked : kFloating);
        }
    }
    if (Panels().empty() || CreatePanels() == 0) {
        return 0;
    }
    for (const auto& made : Panels()) {
        if (InitialisePanel(made->Resource()) == 0) {
            return 0;
        }
    }
    AdjustControls(kEverything);
    if (CTypedFrameWnd* const frame = GetParentFrame(); frame != nullptr) {
        frame->SetWindowType(kWindowType, panel);
    }
    return 1;
}

int CRegulationView::InitialiseResultPanel() {
    return InitialisePanel(kResultPanel);
}

int CRegulationView::InitialiseSourcePanel() {
    return InitialisePanel(kSourcePanel);
}

int CRegulationView::InitialiseOperationPanel() {
    return InitialisePanel(kOperationPanel);
}

int CRegulationView::InitialisePanel(int resource) {
    const CDragDialog* const panel = FindPanel(resource);
    if (panel == nullptr || GetRegulationSettings() == nullptr) {
        return 0;
    }
    for (const CWnd* control : panel->Children()) {
        FillCombo(control->GetDlgCtrlID());
        ShowValue(control->GetDlgCtrlID());
    }
    return 1;
}

void CRegulationView::FillCombo(int ctrlID) {
    if (const ViewControl* control = FindViewControl(ctrlID); control != nullptr && IsChoice(*control)) {
        GetRegulationSettings()->FillCombo(Find<CComboBox>(ctrlID), ctrlID);
    }
}

void CRegulationView::OnUpdate(CView*, int hint, void*) {
    if (GetRegulationSettings() == nullptr) {
        return;
    }
    if (hint == kEverything || hint == kEverythingButStatus) {
        ShowEverything();
    } else if (std::ranges::find(kDetectorHints, hint) != std::end(kDetectorHints)) {
        for (const int ctrlID : {kCtrlResult, kCtrlSource}) {
            FillCombo(ctrlID);
            ShowValue(ctrlID);
        }
    } else {
        ShowChanged(hint);
    }
    if (hint == kEverything || hint == kCtrlStatus) {
        ShowStatus();
    }
    AdjustControls(hint);
}

void CRegulationView::ShowEverything() {
    for (const ViewControl& control : ViewControls()) {
        FillCombo(control.ctrlID);
        if (control.content != ControlContent::Status) {
            ShowValue(control.ctrlID);
        }
    }
}

void CRegulationView::ShowChanged(int ctrlID) {
    ShowValue(ctrlID);
    for (const Consequence& consequence : Consequences()) {
        if (consequence.hint == ctrlID) {
            if (consequence.refill) {
                FillCombo(consequence.ctrlID);
            }
            ShowValue(consequence.ctrlID);
        }
    }
}

void CRegulationView::ShowValue(int ctrlID) {
    const ViewControl* const control = FindViewControl(ctrlID);
    CRegulationSettings* const document = GetRegulationSettings();
    if (control == nullptr || document == nullptr || Find<CWnd>(ctrlID) == nullptr) {
        return;
    }
    switch (control->content) {
    case ControlContent::Detector:
    case ControlContent::Choice:
        ShowChoice(ctrlID);
        break;
    case ControlContent::Flag:
        Find<CButton>(ctrlID)->SetCheck(
            static_cast<int>(document->GetStoredValue(ShownFieldIndex(*document, ctrlID))));
        break;
    case ControlContent::Integer:
    case ControlContent::Real:
        DisplayValue(ctrlID);
        break;
    case ControlContent::Status:
        ShowStatus();
        break;
    case ControlContent::Button:
        break;
    }
}

// A value that is not among the choices is shown in words.
void CRegulationView::ShowChoice(int ctrlID) {
    CRegulationSettings& document = *GetRegulationSettings();
    const auto plain = static_cast<int>(document.GetStoredValue(ShownFieldIndex(document, ctrlID)));
    const std::intptr_t packed = ctrlID == kCtrlResult   ? document.GetResultItemData()
                                 : ctrlID == kCtrlSource ? document.GetSourceItemData()
                                                         : static_cast<std::uint32_t>(plain);
    auto* const combo = Find<CComboBox>(ctrlID);
    if (!combo->SetCurSelFromItemData(packed) && !combo->SetCurSelFromItemData(plain)) {
        combo->SetCurSel(CComboBox::kNoSelection);
        combo->SetText(document.GetComboItemText(ctrlID, static_cast<int>(packed)));
    }
}

void CRegulationView::DisplayValue(int ctrlID) {
    auto* const edit = Find<CMultiBaseEdit>(ctrlID);
    CRegulationSettings* const document = GetRegulationSettings();
    if (edit != nullptr && document != nullptr) {
        edit->SetUnit(document->GetShownUnit(ctrlID));
        edit->SetText(document->GetNumberText(ctrlID));
    }
}

void CRegulationView::ShowStatus() {
    if (auto* const status = Find<CStatic>(kCtrlStatus); status != nullptr) {
        const StatusText shown = DescribeStatus(GetRegulationSettings()->GetStatus());
        status->SetText(shown.text);
        status->SetTextColor(shown.color);
    }
}

void CRegulationView::AdjustControls(int) {
    CRegulationSettings* const document = GetRegulationSettings();
    if (document == nullptr) {
        return;
    }
    for (const ViewControl& control : ViewControls()) {
        EnableControl(control.ctrlID, Applies(control.rule, *document));
    }
}

void CRegulationView::PrintDetails(CDC*) {
    if (CRegulationSettings* const document = GetRegulationSettings(); document != nullptr) {
        document->PrintDetails(this);
    }
}

void CRegulationView::OnDestroy() {
    m_leaving = true;
}
