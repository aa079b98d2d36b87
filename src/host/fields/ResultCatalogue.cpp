#include "host/ResultCatalogue.h"

#include "host/HostApplication.h"

#include <algorithm>
#include <array>

namespace kalvio {
namespace {

// A double of one of the application's result blocks.
template<auto Block, auto Member>
double* In(CHostApplication& host, int) {
    return &((host.*Block).*Member);
}

template<auto Result>
double* OfDetector(CHostApplication& host, int detector) {
    CFFTDetectorSettings* found = host.fftDetectors == nullptr ? nullptr : host.fftDetectors->Find(detector);
    return found != nullptr ? (found->*Result)() : nullptr;
}

using Host = CHostApplication;
using enum ResultList;
using enum ResultSide;

constexpr int kAlone = kNoOtherChannel;
constexpr const Quantity* kAmplitude = nullptr;

// clang-format off
constexpr std::array kRows{
    ResultRow{kResultRmsA, "rms", kTextResultRms, In<&Host::analyserResults, &AnalyserResults::rmsA>,
              8, Block, kResultRmsB, false, kAmplitude, kUnitVolt, Analyser, 0},
    ResultRow{kResultRmsB, "rms-b", kTextResultRms, In<&Host::analyserResults, &AnalyserResults::rmsB>,
              9, Block, kResultRmsA, false, kAmplitude, kUnitVolt, Analyser, 0},
    ResultRow{kResultFrequencyA, "freq", kTextResultFrequency, In<&Host::analyserResults, &AnalyserResults::frequencyA>,
              10, Block, kResultFrequencyB, false, &kMeasuredFrequency, kUnitHertz, Analyser, 1},
    ResultRow{kResultFrequencyB, "freq-b", kTextResultFrequency, In<&Host::analyserResults, &AnalyserResults::frequencyB>,
              11, Block, kResultFrequencyA, false, &kMeasuredFrequency, kUnitHertz, Analyser, 1},
    ResultRow{kResultPhase, "phase", kTextResultPhase, In<&Host::analyserResults, &AnalyserResults::phase>,
              7, Block, kAlone, false, &kMeasuredPhase, kUnitDegree, Analyser, 2},
    ResultRow{kResultCtDetectorA, "ct", kTextResultCtDetector, In<&Host::ctDetectorResults, &CtDetectorResults::channelA>,
              12, Block, kResultCtDetectorB, false, kAmplitude, kUnitVolt, Analyser, 3},
    ResultRow{kResultCtDetectorB, "ct-b", kTextResultCtDetector, In<&Host::ctDetectorResults, &CtDetectorResults::channelB>,
              13, Block, kResultCtDetectorA, false, kAmplitude, kUnitVolt, Analyser, 3},
    ResultRow{kResultFftDetectorA, "fft", kTextResultFftDetector, OfDetector<&CFFTDetectorSettings::ResultA>,
              14, Single, kResultFftDetectorB, true, kAmplitude, kUnitVolt, Analyser, 4},
    ResultRow{kResultFftDetectorB, "fft-b", kTextResultFftDetector, OfDetector<&CFFTDetectorSettings::ResultB>,
              15, Single, kResultFftDetectorA, true, kAmplitude, kUnitVolt, Analyser, 4},
    ResultRow{kResultCarrierAmplitude, "carrier", kTextResultCarrierAmplitude, In<&Host::carrierResults, &CarrierResults::amplitude>,
              4, Single, kAlone, false, &kCarrierAmplitude, kUnitCarrierVolt, Analyser, 5},
    ResultRow{kResultCarrierJitter, "jitter", kTextResultCarrierJitter, In<&Host::carrierResults, &CarrierResults::jitter>,
              5, Single, kAlone, false, &kCarrierJitter, kUnitUi, Analyser, 6},
    ResultRow{kResultCarrierPhase, "carrier-phase", kTextResultCarrierPhase, In<&Host::carrierResults, &CarrierResults::phase>,
              6, Single, kAlone, false, &kMeasuredPhase, kUnitDegree, Analyser, 7},
    ResultRow{kResultInputFrameRate, "frame-rate", kTextResultInputFrameRate, In<&Host::digitalInputResults, &DigitalInputResults::frameRate>,
              2, Single, kAlone, false, &kFrameRate, kUnitHertz, Analyser, 8},
    ResultRow{kResultInputFrameRateDeviation, "frame-deviation", kTextResultInputDeviation, In<&Host::digitalInputResults, &DigitalInputResults::deviation>,
              3, Single, kAlone, false, &kFrameRateDeviation, kUnitPpm, Analyser, 8},
    ResultRow{kResultSyncFrameRate, "sync-rate", kTextResultSyncFrameRate, In<&Host::syncResults, &SyncResults::frameRate>,
              0, Single, kAlone, false, &kFrameRate, kUnitHertz, Generator, 9},
    ResultRow{kResultSyncFrameRateDeviation, "sync-deviation", kTextResultSyncDeviation, In<&Host::syncResults, &SyncResults::deviation>,
              1, Single, kAlone, false, &kFrameRateDeviation, kUnitPpm, Generator, 9},
    ResultRow{kResultPhaseAlias, nullptr, kTextResultPhase, In<&Host::analyserResults, &AnalyserResults::phase>,
              7, Single, kAlone, false, &kMeasuredPhase, kUnitDegree, Analyser, 2},
};
// clang-format on

} // namespace

std::span<const ResultRow> Results() {
    return kRows;
}

const ResultRow* FindResultRow(int resultID) {
    const auto* found = std::ranges::find(kRows, resultID, &ResultRow::id);
    return found == kRows.end() ? nullptr : found;
}

} // namespace kalvio
