// The document's windows and print-out, and how its numbers read.

#include "host/HostTexts.h"
#include "regulation/RegulationSettings.h"
#include "regulation/RegulationView.h"
#include "regulation/RegulationViewLayout.h"

#include <algorithm>
#include <iterator>

using namespace kalvio::regulation;

namespace {

// In the order of the print-out.
constexpr int kPrinted[] = {
    kResult,         kChannel,         kRegulationType, kRegulateTo,      kResultUnit,
    kToleranceType,  kToleranceOffset, kToleranceUnit,  kSensitivity,     kUseSettling,
    kTimeout,        kContinuous,      kSource,         kOppositeChannel, kSourceMinLimit,
    kSourceMaxLimit, kSourceUnit,      kTrend,          kStepSize,        kDirection,
};

struct PanelTitle {
    int panel;
    unsigned textId;
};

constexpr PanelTitle kPanelTitles[] = {
    {kResultPanel, kTextResultGroup},
    {kSourcePanel, kTextSourceGroup},
    {kOperationPanel, kTextOperationGroup},
};

unsigned TitleOf(int panel) {
    const auto* const found = std::ranges::find(kPanelTitles, panel, &PanelTitle::panel);
    return found == std::end(kPanelTitles) ? kTextTitle : found->textId;
}

} // namespace

CTypedFrameWnd* CRegulationSettings::OpenSettingsWindow(int panel, int show, int, const CPoint* where) {
    CTypedFrameWnd* const open = kalvio::MoveOpenWindow(CRegulationView::kWindowType, panel, where);
    return open != nullptr ? open : m_windows.Open(m_viewFactory, TitleOf(panel), {panel, show, where});
}

int CRegulationSettings::GetShownUnit(int ctrlID) const {
    switch (ctrlID) {
    case kCtrlRegulateTo:
        return m_resultUnit;
    case kCtrlTolerance:
        return IsOffset() ? m_resultUnit : m_toleranceUnit;
    case kCtrlSourceMinLimit:
    case kCtrlSourceMaxLimit:
    case kCtrlStepSize:
        return m_sourceUnit;
    case kCtrlTimeout:
        return kUnitSecond;
    case kCtrlSensitivity:
        return kUnitPercent;
    default:
        return kUnitNone;
    }
}

CString CRegulationSettings::GetNumberText(int ctrlID) {
    if (ctrlID == kCtrlTimeout) {
        return kalvio::Format("%d", m_timeout.Get());
    }
    if (ctrlID == kCtrlStepSize && m_stepSizeAuto != 0) {
        return {};
    }
    const int decimals = ctrlID == kCtrlSensitivity ? FieldAt(kSensitivity).details.decimals
                                                    : GetNumDPsForUnit(GetShownUnit(ctrlID));
    return kalvio::Format("%.*f", decimals, OLEGetPhyValue(ctrlID));
}

void CRegulationSettings::PrintDetails(CPrintView* view) {
    view->PrintTitle(kalvio::LoadText(kTextTitle));
    for (const int index : kPrinted) {
        const kalvio::FieldRow& row = FieldAt(index);
        const CString label = kalvio::LoadText(row.details.stringId);
        if (row.kind == kalvio::FieldKind::Flag) {
            view->PrintField(label, GetYesNoText(GetStoredValue(index) != 0.0), {});
        } else if (row.kind == kalvio::FieldKind::Choice) {
            view->PrintField(label, GetComboItemText(row.ctrlID, Int(index)), {});
        } else if (const CString number = GetNumberText(row.ctrlID); number.empty()) {
            view->PrintField(label, kalvio::LoadText(kTextAutomatic), {});
        } else {
            view->PrintField(label, number, GetStringForUnit(GetShownUnit(row.ctrlID)));
        }
    }
}
