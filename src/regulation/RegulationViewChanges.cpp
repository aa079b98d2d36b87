// What the user does to the controls of the regulation window.

#include "host/FieldDetails.h"
#include "regulation/RegulationSettings.h"
#include "regulation/RegulationView.h"
#include "regulation/RegulationViewControls.h"

#include <algorithm>

using namespace kalvio::regulation;

int CRegulationView::OnControlChanged(int ctrlID) {
    CRegulationSettings* const document = GetRegulationSettings();
    const ViewControl* const control = FindViewControl(ctrlID);
    const bool halfMade = std::ranges::any_of(Panels(), [](const auto& panel) { return !panel->Exists(); });
    if (document == nullptr || control == nullptr || halfMade) {
        return 1;
    }
    if (ctrlID == kCtrlStart) {
        document->StartRegulation(1);
        return 1;
    }
    if (ctrlID == kCtrlAbort) {
        document->StopRegulation();
        return 1;
    }
    const bool taken = Take(*control);
    ShowValue(ctrlID); // as the document has it
    if (taken) {
        AdjustControls(ctrlID);
    }
    return taken ? 1 : 0;
}

bool CRegulationView::Take(const ViewControl& control) {
    const int ctrlID = control.ctrlID;
    if (const auto* combo = Find<CComboBox>(ctrlID); combo != nullptr) {
        const auto data = combo->GetItemData(combo->GetCurSel());
        return control.content == ControlContent::Detector
                   ? TakePacked(ctrlID, static_cast<std::uint32_t>(data))
                   : SendInt(ctrlID, static_cast<int>(data));
    }
    if (const auto* box = Find<CButton>(ctrlID); box != nullptr) {
        return SendInt(ctrlID, box->GetCheck());
    }
    return TakeNumber(ctrlID);
}

// The detector goes first, so that the choice finds it; a choice that is refused then leaves neither.
bool CRegulationView::TakePacked(int ctrlID, std::uint32_t data) {
    CRegulationSettings& document = *GetRegulationSettings();
    const bool isResult = ctrlID == kCtrlResult;
    const int detectorCtrlID = isResult ? kCtrlResultFftDetector : kCtrlSourceFftDetector;
    const int before = isResult ? document.GetResultFFTDetector() : document.GetSourceFFTDetector();
    int choice = 0;
    int detector = 0;
    if (isResult) {
        document.ExtractResultFromItemData(data, &choice, &detector);
    } else {
        document.ExtractSourceFromItemData(data, &choice, &detector);
    }
    if (!SendInt(detectorCtrlID, detector)) {
        return false;
    }
    if (!SendInt(ctrlID, choice)) {
        SendInt(detectorCtrlID, before);
        return false;
    }
    return true;
}

bool CRegulationView::TakeNumber(int ctrlID) {
    const auto* edit = Find<CMultiBaseEdit>(ctrlID);
    // What is shown already stands for the value with all its digits.
    if (edit == nullptr || edit->GetText() == GetRegulationSettings()->GetNumberText(ctrlID)) {
        return true;
    }
    return ctrlID == kCtrlTimeout ? SendInt(ctrlID, edit->GetIntValue())
                                  : SendReal(ctrlID, edit->GetNumericalValue(), kUnitNone);
}

bool CRegulationView::SendInt(int ctrlID, int value) {
    CIntValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = value;
    messenger.wantsMessages = true;
    return GetRegulationSettings()->OnMessenger(&messenger) && !messenger.refused;
}

bool CRegulationView::SendReal(int ctrlID, double value, int unit) {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = value;
    messenger.unit = unit;
    messenger.wantsMessages = true;
    return GetRegulationSettings()->OnMessenger(&messenger) && !messenger.refused;
}

LRESULT CRegulationView::OnSetDefault(WPARAM ctrlID, LPARAM) {
    CRegulationSettings* const document = GetRegulationSettings();
    const ViewControl* const control = FindViewControl(static_cast<int>(ctrlID));
    if (document == nullptr || control == nullptr || document->IsRegulationRunning() != 0) {
        return 0;
    }
    const int index = ShownFieldIndex(*document, control->ctrlID);
    const double value = document->GetDefaultValue(index);
    const bool inStorage = control->inStorage || index == kToleranceRatio;
    switch (control->content) {
    case ControlContent::Detector:
        TakePacked(control->ctrlID, static_cast<std::uint32_t>(value)); // with no detector
        break;
    case ControlContent::Real:
        SendReal(control->ctrlID, value, inStorage ? kUnitStorage : kUnitNone);
        break;
    case ControlContent::Button:
    case ControlContent::Status:
        return 0;
    default:
        SendInt(control->ctrlID, static_cast<int>(value));
        break;
    }
    ShowValue(control->ctrlID);
    AdjustControls(control->ctrlID);
    return 0;
}

LRESULT CRegulationView::OnShowRange(WPARAM control, LPARAM) {
    const auto ctrlID = static_cast<int>(control);
    CRegulationSettings* const document = GetRegulationSettings();
    const int unit = document == nullptr ? kUnitNone : document->GetShownUnit(ctrlID);
    if (unit == kUnitNone) {
        return 0;
    }
    const int index = ShownFieldIndex(*document, ctrlID);
    double low = document->GetMinValue(index);
    double high = document->GetMaxValue(index);
    if (index == kToleranceRatio) {
        constexpr SReferences kItself{.unit = kUnitRatio, .reference = 1.0};
        low = CPhysicalValue::StorageToUnit(low, unit, kItself);
        high = CPhysicalValue::StorageToUnit(high, unit, kItself);
    }
    const int textUnit = index == kToleranceOffsetDb ? kUnitDb : unit;
    ShowRange(FieldAt(index).details.numberType, low, high,
              kalvio::LoadText(GetStringIDForUnit(textUnit, 1)));
    return 0;
}
