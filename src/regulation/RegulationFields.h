#pragma once

// The fields of the regulation document: indices, control ids, choices, and the one table of what is fixed
// about each.

#include "host/FieldDetails.h"
#include "host/ResultIds.h"
#include "preprocessor/RegulationDetails.h"
#include "regulation/RegulationTexts.h"

#include <algorithm>
#include <array>

namespace kalvio::regulation {

enum FieldIndex : int {
    kResult = 0,
    kResultFftDetector,
    kChannel,
    kRegulationType,
    kRegulateTo,
    kResultUnit,
    kToleranceType,
    kToleranceOffset,   // kept in the result unit, in dB for a level
    kToleranceOffsetDb, // the details of the one above when it is in dB; has no value of its own
    kToleranceRatio,    // kept as a fraction
    kToleranceUnit,
    kSensitivity,
    kTrend,
    kUseSettling,
    kSource,
    kSourceFftDetector,
    kOppositeChannel,
    kSourceMinLimit,
    kSourceMaxLimit,
    kSourceUnit,
    kStepSize, // kept in the source unit, in dB for a level
    kStepSizeAuto,
    kDirection,
    kTimeout, // seconds
    kContinuous,
    kFieldCount,
};

enum ControlId : int {
    kCtrlResult = 2640,
    kCtrlChannel = 2641,
    kCtrlRegulationType = 2642,
    kCtrlRegulateTo = 2643,
    kCtrlResultUnit = 2644,
    kCtrlToleranceType = 2645,
    kCtrlTolerance = 2646,
    kCtrlToleranceUnit = 2647,
    kCtrlUseSettling = 2649,
    kCtrlSource = 2650,
    kCtrlSourceMinLimit = 2651,
    kCtrlSourceMaxLimit = 2652,
    kCtrlSourceUnit = 2653,
    kCtrlTrend = 2654,
    kCtrlTimeout = 2655,
    kCtrlStart = 2656,
    kCtrlAbort = 2657,
    kCtrlContinuous = 2658,
    kCtrlStatus = 2659,
    kCtrlResultFftDetector = 2660,
    kCtrlSourceFftDetector = 2661,
    kCtrlStepSize = 2662,
    kCtrlDirection = 2663,
    kCtrlStepSizeAuto = 2664,
    kCtrlSensitivity = 2665,
    kCtrlOppositeChannel = 2666,
};

enum Channel : int {
    kSelectedChannel = 2,
    kNonSelectedChannel = 3,
    kBothSeparately = 4,
    kBothTied = 5,
    kEither = 6,
};
enum RegulationType : int { kAbsolute = 0, kMaximum = 1, kMinimum = 2 };
enum ToleranceType : int { kOffset = 0, kRatio = 1 };
enum Source : int {
    kSourceGeneratorFrequency = 0,
    kSourceGeneratorAmplitude = 1,
    kSourceDcOffset = 2,
    kSourceJitterFrequency = 3,
    kSourceJitterAmplitude = 4,
};
// The status as scripts see it.
enum ScriptStatus : int { kStatusNone = 0, kStatusInProgress = 1, kStatusOk = 3, kStatusFailed = 4 };

struct FieldEntry {
    int index;
    int ctrlID;
    FieldDetails details;
};

// In the order of the indices. The limits of the fields that take theirs from the host's own settings stand
// in while the host has none. The choices without limits here are checked by IsEnumValueValid.
inline constexpr double kAnyLow = -1e15;
inline constexpr double kAnyHigh = 1e15;

inline constexpr std::array<FieldEntry, kFieldCount> kFields{{
    {kResult, kCtrlResult, {kTextResultField, 0, 0, kResultCtDetectorA, 0, 0}},
    {kResultFftDetector, kCtrlResultFftDetector, {kTextResultFftDetectorField, 0, 0, 0, 0, 0}},
    {kChannel, kCtrlChannel, {kTextChannelField, 0, kEither, kChannelA, 0, 0}},
    {kRegulationType, kCtrlRegulationType, {kTextRegulationTypeField, 0, kMinimum, kAbsolute, 0, 0}},
    {kRegulateTo, kCtrlRegulateTo, {kTextRegulateToField, kAnyLow, kAnyHigh, 0, 5, 4}},
    {kResultUnit, kCtrlResultUnit, {kTextResultUnitField, 0, 0, 0, 0, 0}},
    {kToleranceType, kCtrlToleranceType, {kTextToleranceTypeField, 0, kRatio, kOffset, 0, 0}},
    {kToleranceOffset, kCtrlTolerance, {kTextToleranceField, kAnyLow, kAnyHigh, 0.1, 0, 4}},
    {kToleranceOffsetDb, kCtrlTolerance, {kTextToleranceField, 0, 100, 0.1, 5, 2}},
    {kToleranceRatio, kCtrlTolerance, {kTextToleranceField, 0, 1, 0.01, 5, 3}},
    {kToleranceUnit, kCtrlToleranceUnit, {kTextToleranceUnitField, 0, 0, 0, 0, 0}},
    {kSensitivity, kCtrlSensitivity, {kTextSensitivityField, 0, 100, 10, 4, 1}},
    {kTrend, kCtrlTrend, {kTextTrendField, 0, 3, NPreProcessor::kTrendIncreasing, 0, 0}},
    {kUseSettling, kCtrlUseSettling, {kTextUseSettlingField, 0, 1, 1, 0, 0}},
    {kSource, kCtrlSource, {kTextSourceField, 0, kSourceJitterAmplitude, kSourceGeneratorFrequency, 0, 0}},
    {kSourceFftDetector, kCtrlSourceFftDetector, {kTextSourceFftDetectorField, 0, 0, 0, 0, 0}},
    {kOppositeChannel, kCtrlOppositeChannel, {kTextOppositeChannelField, 0, 1, 0, 0, 0}},
    {kSourceMinLimit, kCtrlSourceMinLimit, {kTextSourceMinLimitField, kAnyLow, kAnyHigh, 0, 0, 4}},
    {kSourceMaxLimit, kCtrlSourceMaxLimit, {kTextSourceMaxLimitField, kAnyLow, kAnyHigh, 0, 0, 4}},
    {kSourceUnit, kCtrlSourceUnit, {kTextSourceUnitField, 0, 0, 0, 0, 0}},
    {kStepSize, kCtrlStepSize, {kTextStepSizeField, -100, 100, 1, 5, 4}},
    {kStepSizeAuto, kCtrlStepSizeAuto, {kTextStepSizeField, 0, 1, 1, 0, 0}},
    {kDirection, kCtrlDirection, {kTextDirectionField, 0, 3, NPreProcessor::kUp, 0, 0}},
    {kTimeout, kCtrlTimeout, {kTextTimeoutField, 1, 3600, 10, 1, 0}},
    {kContinuous, kCtrlContinuous, {kTextContinuousField, 0, 1, 0, 0, 0}},
}};

static_assert(std::is_sorted(kFields.begin(), kFields.end(),
                             [](const FieldEntry& a, const FieldEntry& b) { return a.index < b.index; }));

[[nodiscard]] constexpr const FieldEntry& FieldAt(int index) {
    return kFields[static_cast<std::size_t>(index)];
}

[[nodiscard]] constexpr bool IsField(int index) {
    return index >= 0 && index < kFieldCount;
}

} // namespace kalvio::regulation
