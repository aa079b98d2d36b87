#pragma once

// Units: codes, texts, and conversion between a unit and the storage unit of its quantity.
//
// Storage units, chosen so that 1.0 is the smallest step worth making: amplitude and DC in DSP steps
// (kStepsPerVolt to one volt RMS), frequency in millihertz, jitter amplitude in millionths of a unit
// interval, time in microseconds, phase in degrees, deviation in ppm, ratios as fractions.

#include "platform/Export.h"
#include "platform/Text.h"

// Unit codes. Messengers and archives carry the number.
enum Unit : int {
    kUnitStorage = -3, // the value is in storage units
    kUnitNone = -1,
    kUnitVolt = 1,
    kUnitSecond = 9,
    kUnitHertz = 11,
    kUnitMillivolt = 12,
    kUnitMicrovolt = 13,
    kUnitKilohertz = 14,
    kUnitDbu = 20,
    kUnitDbv = 21,
    kUnitDbm = 22,
    kUnitWatt = 23,
    kUnitCarrierVolt = 29, // peak-to-peak carrier amplitude; a sine's storage value is that of its RMS
    kUnitFullScale = 30,   // fraction of digital full scale
    kUnitDbfs = 31,
    kUnitDb = 37,      // relative: references.reference at 0 dB
    kUnitPercent = 38, // relative: references.reference at 100 %
    kUnitUi = 41,
    kUnitDegree = 53,
    kUnitPpm = 68,
    kUnitRatio = 71, // a bare ratio; as the unit of references it makes relative values plain fractions
};

// DSP steps to one volt: of a peak value, and of an RMS value of a sine.
inline constexpr double kStepsPerPeakVolt = 19456.98863356;
inline constexpr double kStepsPerVolt = 27516.337208519708; // square root of 2 times the peak's

// RMS volts at 0 dBu: one milliwatt in 600 ohms.
inline constexpr double kDbuVolts = 0.7745966692415;

// What every dB unit shows for a magnitude of at most 10^-10 of its 0 dB value, nothing included; a dB
// value at or below it is nothing.
inline constexpr double kLowestLevel = -200.0;

// What relative and level units refer to. A reference, load or full scale that is not a positive finite
// number counts as the default given here.
struct SReferences {
    int unit = kUnitNone;       // unit code that the reference value belongs to
    double reference = 1.0;     // 0 dB or 100 %, storage units
    double ohms = 600.0;        // for dBm and watts
    double fullScale = 27516.0; // storage units at digital full scale
    bool operator==(const SReferences&) const = default;
};

// Any thread; no state.
class KALVIO_API CPhysicalValue {
public:
    // A value in a unit to storage units, and back. kUnitStorage, kUnitNone and unknown codes pass the value
    // through. The answer is always finite: a value beyond the range of a double gives the largest finite
    // one, not-a-number gives 0. A level has no sign: a negative amplitude shows the level of its magnitude.
    static double UnitToStorage(double value, int unit, const SReferences& references);
    static double StorageToUnit(double value, int unit, const SReferences& references);
    // From one unit to another of the same quantity; equal units leave the value as it is.
    static double Convert(double value, int from, int to, const SReferences& references);
};

// dBu, dBV, dBm, dBFS, dB.
[[nodiscard]] KALVIO_API bool IsdBUnit(int unit);
// Units that measure an amplitude, absolutely or relatively (V, mV, µV, dBu, dBV, dBm, W, FS, dBFS, dB, %).
[[nodiscard]] KALVIO_API bool IsAmplitudeUnit(int unit);
// dB and %.
[[nodiscard]] KALVIO_API bool IsRelativeUnit(int unit);
// Decimal places that a value in the unit is shown with; 0 for no unit.
[[nodiscard]] KALVIO_API int GetNumDPsForUnit(int unit);
// The string id of the unit's text: "V" with shortForm 1, "volts" with 0. 0 for no unit.
[[nodiscard]] KALVIO_API unsigned GetStringIDForUnit(int unit, int shortForm);
// The unit's short text; empty for no unit.
[[nodiscard]] KALVIO_API CString GetStringForUnit(int unit);
// A unit by its short text, as typed ("V", "dBu", "Hz", "%", "uV", "deg"), without regard to case or to
// white space around it; kUnitNone for no unit.
[[nodiscard]] KALVIO_API int GetUnitForString(const CString& text);
// Rounds to so many significant figures (at least 1, at most 15); 0 and what is not finite stay as they are.
[[nodiscard]] KALVIO_API double SigFig(double value, int figures);
