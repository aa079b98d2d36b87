#pragma once

// What the host's results and sources measure: the units that each kind offers, its limits and default.

#include "host/FieldDetails.h"
#include "host/Units.h"

#include <array>
#include <map>
#include <span>
#include <utility>

namespace kalvio {

// A kind of value; limits and default in storage units. The first unit is the one used by default.
struct Quantity {
    std::span<const int> units;
    double minimum;
    double maximum;
    double defaultValue;
};

// Absolute units first, the relative ones (dB and %) last.
inline constexpr std::size_t kRelativeUnitCount = 2;
inline constexpr std::array<int, 9> kAnalogueAmplitudeUnits{kUnitVolt, kUnitMillivolt, kUnitMicrovolt,
                                                            kUnitDbu,  kUnitDbv,       kUnitDbm,
                                                            kUnitWatt, kUnitDb,        kUnitPercent};
inline constexpr std::array<int, 4> kDigitalAmplitudeUnits{kUnitDbfs, kUnitFullScale, kUnitDb, kUnitPercent};
inline constexpr std::array<int, 3> kJitterAmplitudeUnits{kUnitUi, kUnitDb, kUnitPercent};
inline constexpr std::array<int, 11> kGeneratorAmplitudeUnits{
    kUnitVolt, kUnitMillivolt, kUnitMicrovolt, kUnitDbu, kUnitDbv,    kUnitDbm,
    kUnitWatt, kUnitFullScale, kUnitDbfs,      kUnitDb,  kUnitPercent};
inline constexpr std::array<int, 2> kFrequencyUnits{kUnitHertz, kUnitKilohertz};
inline constexpr std::array<int, 2> kDcUnits{kUnitVolt, kUnitMillivolt};
inline constexpr std::array<int, 1> kUiUnits{kUnitUi};
inline constexpr std::array<int, 1> kPhaseUnits{kUnitDegree};
inline constexpr std::array<int, 1> kDeviationUnits{kUnitPpm};
inline constexpr std::array<int, 1> kCarrierUnits{kUnitCarrierVolt};

inline constexpr double kDigitalFullScale = SReferences{}.fullScale;

// Of results.
inline constexpr Quantity kAnalogueAmplitude{kAnalogueAmplitudeUnits, 0.0, 200.0 * kStepsPerVolt,
                                             kStepsPerVolt};
inline constexpr Quantity kDigitalAmplitude{kDigitalAmplitudeUnits, 0.0, kDigitalFullScale,
                                            0.1 * kDigitalFullScale};
inline constexpr Quantity kJitterDomainAmplitude{kJitterAmplitudeUnits, 0.0, 10e6, 0.1e6};
inline constexpr Quantity kMeasuredFrequency{kFrequencyUnits, 0.0, 200e6, 1e6};
inline constexpr Quantity kMeasuredPhase{kPhaseUnits, -360.0, 360.0, 0.0};
inline constexpr Quantity kFrameRate{kFrequencyUnits, 0.0, 216e6, 48e6};
inline constexpr Quantity kFrameRateDeviation{kDeviationUnits, -1e5, 1e5, 0.0};
inline constexpr Quantity kCarrierAmplitude{kCarrierUnits, 0.0, 5.0 * kStepsPerPeakVolt, 0.0};
inline constexpr Quantity kCarrierJitter{kUiUnits, 0.0, 10e6, 0.0};

// Of sources.
inline constexpr Quantity kGeneratorFrequency{kFrequencyUnits, 2e3, 80e6, 1e6};
inline constexpr Quantity kGeneratorAmplitude{kGeneratorAmplitudeUnits, 0.0, 20.0 * kStepsPerVolt,
                                              kStepsPerVolt};
inline constexpr Quantity kDcOffset{kDcUnits, -10.0 * kStepsPerVolt, 10.0 * kStepsPerVolt, 0.0};
inline constexpr Quantity kJitterFrequency{kFrequencyUnits, 2e3, 200e6, 1e6};
inline constexpr Quantity kJitterAmplitude{kUiUnits, 0.0, 10e6, 0.0};

// Whether a quantity may be shown in a unit.
[[nodiscard]] bool Offers(const Quantity& quantity, int unit);

// Which units an amplitude offers when it is shown relative to a reference, when it is not, and at all.
enum class Relativity { Absolute, Relative, Either };
[[nodiscard]] std::span<const int> UnitsOf(const Quantity& amplitude, Relativity relativity);

// The details of a quantity with limits and default stated in a unit.
[[nodiscard]] FieldDetails MakeDetails(const Quantity& quantity, unsigned textId, int unit,
                                       const SReferences& references);

// Details that a document handed out: a pointer stays valid while the document lives, and what it points at
// is brought up to date when the same field and unit are asked for again. User-interface thread.
class DetailsCache {
public:
    const FieldDetails* Put(int ctrlID, int unit, const FieldDetails& details);

private:
    std::map<std::pair<int, int>, FieldDetails> m_details;
};

} // namespace kalvio
