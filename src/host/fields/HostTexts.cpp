#include "host/HostTexts.h"

#include "host/Units.h"
#include "platform/Text.h"

#include <array>
#include <iterator>

namespace kalvio {
namespace {

constexpr TextResource kGeneralTexts[] = {
    {kTextUnknown, "Unknown"},
    {kTextPercent, "%"},
    {kTextRangeUnitCount, ""},
    {kTextRangeUnitPercent, "%"},
    {kTextRangeUnitMilliseconds, "ms"},
    {kTextFirmwareFilter, "Firmware files (*.fw)|*.fw|All files (*.*)|*.*||"},
    {kTextFirmwareExtension, "fw"},
    {kTextOutOfMemory, "There is not enough memory."},
    {kTextNoWindow, "The window could not be opened."},
    {kTextOff, "Off"},
    {kTextOn, "On"},
    {kTextNo, "No"},
    {kTextYes, "Yes"},
    {kTextNoFrequency, "---"},
    {kTextGateArrayFailed, "The gate array image could not be loaded."},
    {kTextBringUpFailed, "The hardware could not be initialised.\n%s"},
    {kTextDspFailed, "The program image of DSP %d could not be loaded."},
    {kTextLoadFailed, "The settings could not be loaded: %s."},
    {kTextOutOfRange, "%s is out of range.\nThe valid range is %s."},
    {kTextRange, "%s to %s"},
    {kTextValidRange, "The valid range is %s."},
    {kTextSetDefault, "Set this control to its default of %s?"},
    {kTextSetDefaultCaption, "Set default"},
    {kTextValueRefused, "the value given for %s is not valid"},
    {kTextMethodRefused, "the call of %s was not carried out"},
    {kTextPropertyNotSet, "The property was not set: %s."},
    {kTextMethodFailed, "The method failed: %s."},
};

constexpr TextResource kFieldTexts[] = {
    {kTextInputType, "Input"},
    {kTextInputAnalogue, "Analogue"},
    {kTextInputDigital, "Digital"},
    {kTextJitterDomain, "Jitter domain"},
    {kTextFirstChannel, "First channel"},
    {kTextSecondChannel, "Second channel"},
    {kTextWindowFunction, "Window function"},
    {kTextChannelsReversed, "Channels reversed"},
    {kTextInputSampleRate, "Input sample rate"},
    {kTextOutputSampleRate, "Output sample rate"},
    {kTextLineUpVoltage, "Line-up voltage"},
    {kTextReferenceA, "Reference, channel A"},
    {kTextReferenceB, "Reference, channel B"},
    {kTextCtDetectorUnit, "Continuous-time detector's unit"},
    {kTextRmsUnitAnalogue, "RMS amplitude's unit, analogue"},
    {kTextRmsUnitDigital, "RMS amplitude's unit, digital"},
    {kTextGeneratorIndependent, "Channels independent"},
    {kTextGeneratorOnA, "Generator on, channel A"},
    {kTextGeneratorOnB, "Generator on, channel B"},
    {kTextGeneratorSampleRate, "Generator sample rate"},
    {kTextFftLength, "FFT length"},
    {kTextTriggerPosition, "Trigger position"},
    {kTextTriggerLevelA, "Trigger level, channel A"},
    {kTextTriggerLevelB, "Trigger level, channel B"},
    {kTextTriggerSlope, "Trigger slope"},
    {kTextTriggerFalling, "Falling"},
    {kTextTriggerRising, "Rising"},
    {kTextTriggerOn, "Wait for the trigger"},
    {kTextTriggerSource, "Trigger source"},
    {kTextTriggerChannel, "Trigger channel"},
    {kTextDetectorUnit, "Detector's unit"},
    {kTextDetectorReference, "Detector's reference"},
};

constexpr TextResource kMeasurementTexts[] = {
    {kTextChannelA, "Channel A"},
    {kTextChannelB, "Channel B"},
    {kTextChannelSelected, "Selected channel"},
    {kTextChannelNonSelected, "Non-selected channel"},
    {kTextChannelEither, "Either"},
    {kTextDcOffset, "DC offset"},
    {kTextJitterFrequency, "Jitter frequency"},
    {kTextJitterAmplitude, "Jitter amplitude"},
    {kTextGeneratorFrequencyA, "Generator frequency, channel A"},
    {kTextGeneratorFrequencyB, "Generator frequency, channel B"},
    {kTextGeneratorAmplitudeA, "Generator amplitude, channel A"},
    {kTextGeneratorAmplitudeB, "Generator amplitude, channel B"},
    {kTextResultRms, "RMS amplitude"},
    {kTextResultFrequency, "Frequency"},
    {kTextResultPhase, "Phase"},
    {kTextResultCtDetector, "Continuous-time detector"},
    {kTextResultFftDetector, "FFT detector"},
    {kTextResultInputFrameRate, "Digital input frame rate"},
    {kTextResultInputDeviation, "Digital input frame rate deviation"},
    {kTextResultCarrierAmplitude, "Digital input carrier amplitude"},
    {kTextResultCarrierJitter, "Digital input carrier jitter"},
    {kTextResultCarrierPhase, "Digital input carrier phase"},
    {kTextResultSyncFrameRate, "Reference sync frame rate"},
    {kTextResultSyncDeviation, "Reference sync frame rate deviation"},
};

struct UnitText {
    int unit;
    const char* shortForm;
    const char* longForm;
};

constexpr UnitText kUnits[] = {
    {kUnitVolt, "V", "volts"},
    {kUnitSecond, "s", "seconds"},
    {kUnitHertz, "Hz", "hertz"},
    {kUnitMillivolt, "mV", "millivolts"},
    {kUnitMicrovolt, "µV", "microvolts"},
    {kUnitKilohertz, "kHz", "kilohertz"},
    {kUnitDbu, "dBu", "decibels re 0.775 V"},
    {kUnitDbv, "dBV", "decibels re 1 V"},
    {kUnitDbm, "dBm", "decibels re 1 mW"},
    {kUnitWatt, "W", "watts"},
    {kUnitCarrierVolt, "Vpp", "volts peak-to-peak"},
    {kUnitFullScale, "FS", "fraction of full scale"},
    {kUnitDbfs, "dBFS", "decibels re full scale"},
    {kUnitDb, "dB", "decibels"},
    {kUnitPercent, "%", "percent"},
    {kUnitUi, "UI", "unit intervals"},
    {kUnitDegree, "°", "degrees"},
    {kUnitPpm, "ppm", "parts per million"},
    {kUnitRatio, "x", "ratio"},
};

consteval auto UnitTexts() {
    std::array<TextResource, 2 * std::size(kUnits)> texts{};
    std::size_t next = 0;
    for (const UnitText& unit : kUnits) {
        const auto code = static_cast<unsigned>(unit.unit);
        texts[next++] = {kTextUnitShort + code, unit.shortForm};
        texts[next++] = {kTextUnitLong + code, unit.longForm};
    }
    return texts;
}

constexpr auto kUnitTexts = UnitTexts();

const TextTable kRegisterGeneral{kGeneralTexts};
const TextTable kRegisterFields{kFieldTexts};
const TextTable kRegisterMeasurement{kMeasurementTexts};
const TextTable kRegisterUnits{kUnitTexts};

} // namespace
} // namespace kalvio
