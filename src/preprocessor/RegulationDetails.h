#pragma once

// What a regulation is told: result, window, source, limits, algorithm.

#include "host/SettingsData.h"
#include "platform/Export.h"

#include <bit>
#include <cstdint>

namespace NPreProcessor {

inline constexpr double kAutomaticStep = std::bit_cast<double>(std::uint64_t{0x7FEFFFFFFFFFFFFF});

enum RegulationAlgorithm : int { kMonotonic = 0, kNonMonotonic = 1, kMinimum = 2, kMaximum = 3 };
enum RegulationTrend : int {
    kTrendIncreasing = 0,
    kTrendDecreasing = 1,
    kTrendUnknown = 2,
    kTrendNonMonotonic = 3
};
enum RegulationDirection : int { kUp = 0, kDown = 1, kDirectionUnknown = 2, kUseHistory = 3 };

struct RegulationDetails {
    int resultA = -1; // -1: not used
    int resultB = -1;
    int detector = 65535;
    int channelMode = kChannelA;             // 0 A, 1 B, 2 both, 5 either
    CSettingsData* resultSettings = nullptr; // holds the result
    int resultReferences = -1;               // unit code; -1 for maximum and minimum
    double upper = 0.0;                      // window, storage units; 0 for maximum and minimum
    double lower = 0.0;                      // window; the stopping ratio for maximum and minimum
    double target = 0.0;
    int sourceCtrlID = 0;
    int secondSourceCtrlID = -1; // -1: none
    int sourceDetector = 65535;
    int sourceAccessMode = 2;
    CSettingsData* sourceSettings = nullptr;
    int sourceReferences = kUnitStorage; // unit code for reading and writing the source
    double sourceMaximum = 0.0;
    double sourceMinimum = 0.0;
    double initialStep = kAutomaticStep;
    int algorithm = kMonotonic;
    int trend = kTrendIncreasing;
    int direction = kUp;
    double sensitivity = 0.0; // fraction; maximum and minimum only
    int continuous = 0;       // carried, not used
    int timeout = 10;         // seconds
};

// Where the regulator fetches its details at every start. Called under the pre-processor lock, in the
// thread that starts.
class KALVIO_API RegulationDetailsProvider {
public:
    virtual ~RegulationDetailsProvider() = default;
    // 1, or 0 when the details are not valid.
    virtual int GetRegulationDetails(RegulationDetails& details) = 0;
};

} // namespace NPreProcessor
