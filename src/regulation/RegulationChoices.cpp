// The choices of the fields as the combos show them.

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "regulation/RegulationSettings.h"

#include <algorithm>

using namespace kalvio::regulation;

namespace {

constexpr int kFirstCombo = 2640;
constexpr int kLastCombo = 2663;
constexpr unsigned kDetectorShift = 16;
constexpr std::uint32_t kChoiceMask = 0xFFFF;

std::uint32_t Pack(int choice, int detector) {
    return (static_cast<std::uint32_t>(detector) << kDetectorShift) |
           (static_cast<std::uint32_t>(choice) & kChoiceMask);
}

void Unpack(std::uint32_t data, int* choice, int* detector) {
    *choice = static_cast<int>(data & kChoiceMask);
    *detector = static_cast<int>(data >> kDetectorShift);
}

CString ChoiceText(int ctrlID, int value) {
    const kalvio::FieldRow* row = kalvio::FindControl(Fields(), ctrlID);
    if (row == nullptr) {
        return {};
    }
    const auto choice = std::ranges::find(row->choices, value, &kalvio::FieldChoice::value);
    const bool known = choice != row->choices.end() && value != NPreProcessor::kUseHistory;
    return known || (choice != row->choices.end() && ctrlID != kCtrlDirection)
               ? kalvio::LoadText(choice->textId)
               : CString();
}

} // namespace

std::uint32_t CRegulationSettings::GetResultItemData() const {
    return GetResultItemData(m_result, m_resultFftDetector);
}

std::uint32_t CRegulationSettings::GetResultItemData(int result, int detector) {
    return Pack(result, detector);
}

std::uint32_t CRegulationSettings::GetSourceItemData() const {
    return GetSourceItemData(m_source, m_sourceFftDetector);
}

std::uint32_t CRegulationSettings::GetSourceItemData(int source, int detector) {
    return Pack(source, detector);
}

int CRegulationSettings::ExtractResultFromItemData(std::uint32_t data, int* result, int* detector) {
    return ExtractChoice(data, kCtrlResult, kCtrlResultFftDetector, result, detector);
}

int CRegulationSettings::ExtractSourceFromItemData(std::uint32_t data, int* source, int* detector) {
    return ExtractChoice(data, kCtrlSource, kCtrlSourceFftDetector, source, detector);
}

int CRegulationSettings::ExtractChoice(std::uint32_t data, int ctrlID, int detectorCtrlID, int* choice,
                                       int* detector) {
    Unpack(data, choice, detector);
    const bool valid =
        IsEnumValueValid(ctrlID, *choice) != 0 && IsEnumValueValid(detectorCtrlID, *detector) != 0;
    return valid ? 1 : 0;
}

int CRegulationSettings::FillCombo(CComboBox* combo, int ctrlID) {
    if (combo == nullptr || ctrlID < kFirstCombo || ctrlID > kLastCombo) {
        return 0;
    }
    combo->ResetContent();
    if (const kalvio::FieldRow* row = kalvio::FindControl(Fields(), ctrlID)) {
        for (const kalvio::FieldChoice& choice : row->choices) {
            if (IsOffered(ctrlID, choice.value)) {
                combo->AddString(kalvio::LoadText(choice.textId), choice.value);
            }
        }
    }
    if (ctrlID == kCtrlResult) {
        AddDetectors(*combo);
    }
    AddUnits(*combo, GetUnitsForCtrlID(ctrlID));
    return 1;
}

bool CRegulationSettings::IsOffered(int ctrlID, int value) {
    if (ctrlID == kCtrlToleranceType) {
        return IsAbsolute() || value == kRatio;
    }
    // Detectors are added one by one, with their names.
    if (value == kalvio::kResultCtDetectorA || value == kalvio::kResultFftDetectorA) {
        return false;
    }
    return IsEnumValueValid(ctrlID, value) != 0;
}

void CRegulationSettings::AddDetectors(CComboBox& combo) const {
    combo.AddString(ResultText(kalvio::kResultCtDetectorA, 0), kalvio::kResultCtDetectorA);
    const CFFTDetectorList* detectors = Host().fftDetectors;
    if (detectors == nullptr) {
        return;
    }
    for (const CFFTDetectorSettings* detector : detectors->All()) {
        combo.AddString(GetFFTDetectorName(detector),
                        GetResultItemData(kalvio::kResultFftDetectorA, detector->Id()));
    }
}

void CRegulationSettings::AddUnits(CComboBox& combo, std::span<const int> units) {
    for (const int unit : units) {
        combo.AddString(GetStringForUnit(unit), unit);
    }
}

CString CRegulationSettings::ResultText(int result, int detector) const {
    if (result == kalvio::kResultCtDetectorA) {
        const CAnalyserSettings* analyser = Host().analyser;
        return kalvio::FormatText(kalvio::LoadText(kTextCtDetector),
                                  analyser == nullptr ? CString() : analyser->ctDetectorName);
    }
    if (result == kalvio::kResultFftDetectorA) {
        return GetFFTDetectorName(GetFFTDetectorFromID(detector != 0 ? detector : m_resultFftDetector.Get()));
    }
    return ChoiceText(kCtrlResult, result);
}

CString CRegulationSettings::GetFFTDetectorName(const CFFTDetectorSettings* detector) const {
    return detector == nullptr
               ? CString()
               : kalvio::FormatText(kalvio::LoadText(kTextFftDetector), detector->Id(), detector->Name());
}

CString CRegulationSettings::GetComboItemText(int ctrlID, int value) {
    int choice = 0;
    int detector = 0;
    Unpack(static_cast<std::uint32_t>(value), &choice, &detector);
    switch (ctrlID) {
    case kCtrlResult:
        return ResultText(choice, detector);
    case kCtrlSource:
        return ChoiceText(kCtrlSource, choice);
    case kCtrlResultUnit:
    case kCtrlToleranceUnit:
    case kCtrlSourceUnit:
        return GetStringForUnit(value);
    default:
        return ChoiceText(ctrlID, value);
    }
}
