#pragma once

// The host's result identifiers and the blocks that hold the values.

#include <atomic>
#include <bit>
#include <cstdint>

namespace kalvio {

inline constexpr int kResultInputFrameRate = 3008;
inline constexpr int kResultInputFrameRateDeviation = 3009;
inline constexpr int kResultCarrierAmplitude = 3051;
inline constexpr int kResultCarrierJitter = 3054;
inline constexpr int kResultCarrierPhase = 3057;
inline constexpr int kResultRmsA = 3208;
inline constexpr int kResultFrequencyA = 3209;
inline constexpr int kResultRmsB = 3210;
inline constexpr int kResultFrequencyB = 3211;
inline constexpr int kResultPhase = 3216;
inline constexpr int kResultCtDetectorA = 3251;
inline constexpr int kResultCtDetectorB = 3253;
inline constexpr int kResultFftDetectorA = 3351;
inline constexpr int kResultFftDetectorB = 3352;
inline constexpr int kResultSyncFrameRate = 4008;
inline constexpr int kResultSyncFrameRateDeviation = 4009;
inline constexpr int kResultPhaseAlias = 9991;
inline constexpr int kNoDetector = 65535;

// No result: the most negative finite double.
inline constexpr double kInvalidResult = std::bit_cast<double>(std::uint64_t{0xFFEFFFFFFFFFFFFF});
// Not a comparison of values: the marker is one bit pattern.
[[nodiscard]] constexpr bool IsInvalidResult(double value) {
    return std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(kInvalidResult);
}

// Result values in storage units. Written by the measurement code under the hardware object's results
// lock; read by notifications and waits without it, so every access goes through ReadResult/WriteResult.
struct AnalyserResults {
    double rmsA = kInvalidResult;
    double frequencyA = kInvalidResult;
    double rmsB = kInvalidResult;
    double frequencyB = kInvalidResult;
    double phase = kInvalidResult;
};

struct CtDetectorResults {
    double channelA = kInvalidResult;
    double channelB = kInvalidResult;
};

struct DigitalInputResults {
    double frameRate = kInvalidResult;
    double deviation = kInvalidResult;
};

struct CarrierResults {
    double amplitude = kInvalidResult;
    double jitter = kInvalidResult;
    double phase = kInvalidResult;
};

struct SyncResults {
    double frameRate = kInvalidResult;
    double deviation = kInvalidResult;
};

inline double ReadResult(const double& field) {
    return std::atomic_ref<double>(const_cast<double&>(field)).load(std::memory_order_acquire);
}

inline void WriteResult(double& field, double value) {
    std::atomic_ref<double>(field).store(value, std::memory_order_release);
}

} // namespace kalvio
