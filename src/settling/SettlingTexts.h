#pragma once

// String ids of the settling document's texts.

namespace kalvio::settling {

enum SettlingText : unsigned {
    kTextTitle = 12695,
    kTextTypeNone,
    kTextTypeNormal,
    kTextTypeExponential,
    // The caption of each group; the descriptions of its five fields follow it.
    kTextSyncSource = 12853,
    kTextInputFrameRate = 12859,
    kTextCarrierAmplitude = 12865,
    kTextCarrierJitter = 12871,
    kTextCarrierPhase = 12877,
    kTextCtDetector = 12883,
    kTextFftDetector = 12889,
    kTextAmplitude = 12895,
    kTextFrequency = 12901,
    kTextPhase = 12907,
};

} // namespace kalvio::settling
