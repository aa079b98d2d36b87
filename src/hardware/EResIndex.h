#pragma once

// Result-ready flag indices.

// One flag per index; which result ids share one is CHardware::GetResultIndex's.
enum EResIndex : int {
    kResSyncFrameRate = 0, // and every result that no other index names
    kResSyncDeviation = 1,
    kResInputFrameRate = 2,
    kResInputDeviation = 3,
    kResCarrierAmplitude = 4,
    kResCarrierJitter = 5,
    kResCarrierPhase = 6,
    kResPhase = 7,
    kResRmsA = 8,
    kResRmsB = 9,
    kResFrequencyA = 10,
    kResFrequencyB = 11,
    kResCtDetectorA = 12,
    kResCtDetectorB = 13,
    kResFftDetectorA = 14,
    kResFftDetectorB = 15,
};

inline constexpr int kResultFlagCount = 16;
