// The rows of the analyser document's own fields.

#include "host/AnalyserSettings.h"
#include "host/HostTexts.h"

#include <array>

using kalvio::FieldChoice;
using kalvio::FieldKind;
using kalvio::FieldRow;
using kalvio::KeptIn;

namespace {

using Document = CAnalyserSettings;

constexpr int kHighestUnit = kUnitRatio;
constexpr double kHighestRate = 216e3; // hertz
constexpr double kUnset = -1.0;
constexpr double kSmallest = 1e-9;
constexpr double kHighestVoltage = 1000.0;
constexpr int kLastWindow = 13;

constexpr FieldChoice kInputs[] = {
    {static_cast<std::int32_t>(kalvio::InputType::Analogue), kalvio::kTextInputAnalogue},
    {static_cast<std::int32_t>(kalvio::InputType::Digital), kalvio::kTextInputDigital},
};
constexpr FieldChoice kChannels[] = {{kChannelA, kalvio::kTextChannelA}, {kChannelB, kalvio::kTextChannelB}};

template<const auto& Units>
std::span<const int> Among(CSettingsData&) {
    return Units;
}

template<std::size_t Channel>
kalvio::Field<double>& Reference(CSettingsData& document, const FieldRow&) {
    return static_cast<Document&>(document).referenceValue[Channel];
}

constexpr FieldRow Choice(int ctrlID, unsigned text, int initial, kalvio::IntMember member,
                          std::span<const FieldChoice> choices, const char* help) {
    return {.ctrlID = ctrlID,
            .details = {text, 0, 1, static_cast<double>(initial), 0, 0},
            .kind = FieldKind::Choice,
            .integer = member,
            .choices = choices,
            .help = help};
}

constexpr FieldRow Flag(int ctrlID, unsigned text, kalvio::IntMember member, const char* help) {
    return {.ctrlID = ctrlID,
            .details = {text, 0, 1, 0, 0, 0},
            .kind = FieldKind::Flag,
            .integer = member,
            .help = help};
}

constexpr FieldRow Real(int ctrlID, unsigned text, double low, double high, double initial,
                        kalvio::RealMember member, const char* help) {
    constexpr int kReal = 7;
    constexpr int kDecimals = 3;
    return {.ctrlID = ctrlID,
            .details = {text, low, high, initial, kReal, kDecimals},
            .real = member,
            .help = help};
}

constexpr FieldRow Unit(int ctrlID, unsigned text, int initial, kalvio::IntMember member,
                        std::span<const int> (*units)(CSettingsData&), const char* help) {
    return {.ctrlID = ctrlID,
            .details = {text, 0, kHighestUnit, static_cast<double>(initial), 0, 0},
            .kind = FieldKind::Choice,
            .integer = member,
            .units = units,
            .help = help};
}

constexpr std::size_t kFields = 14;

std::array<FieldRow, kFields> MakeRows() {
    std::array<FieldRow, kFields> rows{
        Choice(kalvio::kCtrlInputType, kalvio::kTextInputType, 0, KeptIn<&Document::inputType>, kInputs,
               "where the signal comes in"),
        Flag(kalvio::kCtrlJitterDomain, kalvio::kTextJitterDomain, KeptIn<&Document::jitterDomain>,
             "whether the jitter of the carrier is measured instead of the signal"),
        Choice(kalvio::kCtrlFirstChannel, kalvio::kTextFirstChannel, kChannelA,
               KeptIn<&Document::firstChannel>, kChannels, "the converter of the first channel"),
        Choice(kalvio::kCtrlSecondChannel, kalvio::kTextSecondChannel, kChannelB,
               KeptIn<&Document::secondChannel>, kChannels, "the converter of the second channel"),
        FieldRow{.ctrlID = kalvio::kCtrlWindowFunction,
                 .details = {kalvio::kTextWindowFunction, 0, kLastWindow, 0, 1, 0},
                 .integer = KeptIn<&Document::windowFunction>,
                 .help = "the window of the FFT; 0 is rectangular, 12 and 13 correct the frequency"},
        Flag(kalvio::kCtrlChannelsReversed, kalvio::kTextChannelsReversed,
             KeptIn<&Document::channelsReversed>, "whether channels A and B are swapped"),
        Real(kalvio::kCtrlInputSampleRate, kalvio::kTextInputSampleRate, kUnset, kHighestRate, kUnset,
             KeptIn<&Document::inputSampleRate>, "of the digital input, in hertz; -1 when it is not known"),
        Real(kalvio::kCtrlOutputSampleRate, kalvio::kTextOutputSampleRate, kUnset, kHighestRate, kUnset,
             KeptIn<&Document::outputSampleRate>, "of the digital output, in hertz; -1 when it is not known"),
        Real(kalvio::kCtrlLineUpVoltage, kalvio::kTextLineUpVoltage, kSmallest, kHighestVoltage, 1.0,
             KeptIn<&Document::lineUpVoltage>, "the input voltage at the converters' full scale"),
        Real(kalvio::kCtrlReferenceA, kalvio::kTextReferenceA, kSmallest, kHighestVoltage, 1.0, Reference<0>,
             "what full scale of channel A refers to, on the scale of the line-up voltage"),
        Real(kalvio::kCtrlReferenceB, kalvio::kTextReferenceB, kSmallest, kHighestVoltage, 1.0, Reference<1>,
             "what full scale of channel B refers to, on the scale of the line-up voltage"),
        Unit(kalvio::kCtrlCtDetectorUnit, kalvio::kTextCtDetectorUnit, kUnitVolt,
             KeptIn<&Document::ctDetectorUnit>, Among<kalvio::kGeneratorAmplitudeUnits>,
             "the unit that the continuous-time detectors show"),
        Unit(kalvio::kCtrlRmsUnitAnalogue, kalvio::kTextRmsUnitAnalogue, kUnitVolt,
             KeptIn<&Document::rmsUnitAnalogue>, Among<kalvio::kAnalogueAmplitudeUnits>,
             "the unit of the RMS amplitude while the input is analogue"),
        Unit(kalvio::kCtrlRmsUnitDigital, kalvio::kTextRmsUnitDigital, kUnitDbfs,
             KeptIn<&Document::rmsUnitDigital>, Among<kalvio::kDigitalAmplitudeUnits>,
             "the unit of the RMS amplitude while the input is digital"),
    };
    for (int id = 0; FieldRow & row : rows) {
        row.id = row.archivePlace = id++;
    }
    return rows;
}

} // namespace

std::span<const FieldRow> CAnalyserSettings::FieldRows() const {
    static const std::array<FieldRow, kFields> kRows = MakeRows();
    return kRows;
}

void CAnalyserSettings::Serialize(CArchive& archive) {
    kalvio::SerializeRows(archive, *this, m_saved.flags);
}
