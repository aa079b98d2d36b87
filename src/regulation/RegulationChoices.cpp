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

struct Choice {
    int ctrlID;
    int value;
    unsigned textId;
};

constexpr Choice kChoices[] = {
    {kCtrlResult, kalvio::kResultRmsA, kTextRmsAmplitude},
    {kCtrlResult, kalvio::kResultFrequencyA, kTextFrequency},
    {kCtrlResult, kalvio::kResultPhase, kTextPhase},
    {kCtrlChannel, kChannelA, kalvio::kTextChannelA},
    {kCtrlChannel, kChannelB, kalvio::kTextChannelB},
    {kCtrlChannel, kSelectedChannel, kalvio::kTextChannelSelected},
    {kCtrlChannel, kNonSelectedChannel, kalvio::kTextChannelNonSelected},
    {kCtrlChannel, kBothSeparately, kTextBoth},
    {kCtrlChannel, kBothTied, kTextBothTied},
    {kCtrlChannel, kEither, kalvio::kTextChannelEither},
    {kCtrlRegulationType, kAbsolute, kTextTypeAbsolute},
    {kCtrlRegulationType, kMaximum, kTextTypeMaximum},
    {kCtrlRegulationType, kMinimum, kTextTypeMinimum},
    {kCtrlToleranceType, kOffset, kTextOffset},
    {kCtrlToleranceType, kRatio, kTextRatio},
    {kCtrlSource, kSourceGeneratorFrequency, kTextGeneratorFrequency},
    {kCtrlSource, kSourceGeneratorAmplitude, kTextGeneratorAmplitude},
    {kCtrlSource, kSourceDcOffset, kalvio::kTextDcOffset},
    {kCtrlSource, kSourceJitterFrequency, kalvio::kTextJitterFrequency},
    {kCtrlSource, kSourceJitterAmplitude, kalvio::kTextJitterAmplitude},
    {kCtrlTrend, NPreProcessor::kTrendIncreasing, kTextTrendIncreasing},
    {kCtrlTrend, NPreProcessor::kTrendDecreasing, kTextTrendDecreasing},
    {kCtrlTrend, NPreProcessor::kTrendUnknown, kTextTrendUnknown},
    {kCtrlTrend, NPreProcessor::kTrendNonMonotonic, kTextTrendNonMonotonic},
    {kCtrlDirection, NPreProcessor::kUp, kTextUp},
    {kCtrlDirection, NPreProcessor::kDown, kTextDown},
    {kCtrlDirection, NPreProcessor::kDirectionUnknown, kTextUnknownDirection},
    {kCtrlStepSizeAuto, 1, kTextAutomatic},
};

std::uint32_t Pack(int choice, int detector) {
    return (static_cast<std::uint32_t>(detector) << kDetectorShift) |
           (static_cast<std::uint32_t>(choice) & kChoiceMask);
}

void Unpack(std::uint32_t data, int* choice, int* detector) {
    *choice = static_cast<int>(data & kChoiceMask);
    *detector = static_cast<int>(data >> kDetectorShift);
}

CString ChoiceText(int ctrlID, int value) {
    const auto* choice =
        std::find_if(std::begin(kChoices), std::end(kChoices), [ctrlID, value](const Choice& entry) {
            return entry.ctrlID == ctrlID && entry.value == value;
        });
    return choice == std::end(kChoices) ? CString() : kalvio::LoadText(choice->textId);
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
    for (const Choice& choice : kChoices) {
        if (choice.ctrlID == ctrlID && IsOffered(ctrlID, choice.value)) {
            combo->AddString(kalvio::LoadText(choice.textId), choice.value);
        }
    }
    if (ctrlID == kCtrlResult) {
        AddDetectors(*combo);
    } else if (ctrlID == kCtrlToleranceUnit) {
        AddToleranceUnits(*combo);
    } else {
        AddUnits(*combo, GetUnitsForCtrlID(ctrlID));
    }
    return 1;
}

bool CRegulationSettings::IsOffered(int ctrlID, int value) {
    if (ctrlID == kCtrlToleranceType) {
        return IsAbsolute() || value == kRatio;
    }
    return IsEnumValueValid(ctrlID, value) != 0;
}

void CRegulationSettings::AddDetectors(CComboBox& combo) const {
    combo.AddString(ResultText(kalvio::kResultCtDetectorA, 0), kalvio::kResultCtDetectorA);
    const CFFTDetectorList* detectors = GetHostApplication().fftDetectors;
    if (detectors == nullptr) {
        return;
    }
    for (const CFFTDetectorSettings* detector : detectors->All()) {
        combo.AddString(GetFFTDetectorName(detector),
                        GetResultItemData(kalvio::kResultFftDetectorA, detector->Id()));
    }
}

void CRegulationSettings::AddToleranceUnits(CComboBox& combo) const {
    if (IsAbsolute() && IsOffset()) {
        AddUnits(combo, std::array{m_resultUnit.Get()});
        return;
    }
    if (IsAbsolute() && IsAmplitudeUnit(m_resultUnit)) {
        AddUnits(combo, std::array<int, 1>{kUnitDb});
    }
    AddUnits(combo, std::array<int, 1>{kUnitPercent});
}

void CRegulationSettings::AddUnits(CComboBox& combo, std::span<const int> units) {
    for (const int unit : units) {
        combo.AddString(GetStringForUnit(unit), unit);
    }
}

CString CRegulationSettings::ResultText(int result, int detector) const {
    if (result == kalvio::kResultCtDetectorA) {
        const CAnalyserSettings* analyser = GetHostApplication().analyser;
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
