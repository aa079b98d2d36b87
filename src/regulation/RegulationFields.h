#pragma once

// The fields of the regulation document: indices, control ids, choices, and the rows of the fields.

#include "host/FieldTable.h"
#include "host/ResultIds.h"
#include "platform/Export.h"
#include "preprocessor/RegulationDetails.h"
#include "regulation/RegulationTexts.h"

#include <span>

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

// Stand-in limits of the fields that take theirs from the host's own settings, while the host has none.
inline constexpr double kAnyLow = -1e15;
inline constexpr double kAnyHigh = 1e15;

enum SaveGroup : int { kResultGroup, kSourceGroup };

// One row for each index, in their order. The choices without limits are those that the host offers.
[[nodiscard]] KALVIO_API std::span<const FieldRow> Fields();

[[nodiscard]] inline const FieldRow& FieldAt(int index) {
    return Fields()[static_cast<std::size_t>(index)];
}

[[nodiscard]] constexpr bool IsField(int index) {
    return index >= 0 && index < kFieldCount;
}

} // namespace kalvio::regulation
