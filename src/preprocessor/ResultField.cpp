#include "host/HostApplication.h"
#include "preprocessor/SettledResult.h"

#include <algorithm>
#include <iterator>

namespace {

using namespace kalvio;

struct ResultField {
    int resultID;
    double* (*find)(CHostApplication& host, int detector);
};

// A double of one of the application's result blocks.
template<auto Block, auto Field>
double* InBlock(CHostApplication& host, int) {
    return &((host.*Block).*Field);
}

template<auto Result>
double* OfDetector(CHostApplication&, int detector) {
    CFFTDetectorSettings* found = GetFFTDetectorFromID(detector);
    return found != nullptr ? (found->*Result)() : nullptr;
}

constexpr auto kAnalyser = &CHostApplication::analyserResults;
constexpr auto kCtDetector = &CHostApplication::ctDetectorResults;
constexpr auto kDigitalInput = &CHostApplication::digitalInputResults;
constexpr auto kCarrier = &CHostApplication::carrierResults;
constexpr auto kSync = &CHostApplication::syncResults;

constexpr ResultField kFields[] = {
    {kResultRmsA, InBlock<kAnalyser, &AnalyserResults::rmsA>},
    {kResultFrequencyA, InBlock<kAnalyser, &AnalyserResults::frequencyA>},
    {kResultRmsB, InBlock<kAnalyser, &AnalyserResults::rmsB>},
    {kResultFrequencyB, InBlock<kAnalyser, &AnalyserResults::frequencyB>},
    {kResultPhase, InBlock<kAnalyser, &AnalyserResults::phase>},
    {kResultPhaseAlias, InBlock<kAnalyser, &AnalyserResults::phase>},
    {kResultCtDetectorA, InBlock<kCtDetector, &CtDetectorResults::channelA>},
    {kResultCtDetectorB, InBlock<kCtDetector, &CtDetectorResults::channelB>},
    {kResultFftDetectorA, OfDetector<&CFFTDetectorSettings::ResultA>},
    {kResultFftDetectorB, OfDetector<&CFFTDetectorSettings::ResultB>},
    {kResultInputFrameRate, InBlock<kDigitalInput, &DigitalInputResults::frameRate>},
    {kResultInputFrameRateDeviation, InBlock<kDigitalInput, &DigitalInputResults::deviation>},
    {kResultCarrierAmplitude, InBlock<kCarrier, &CarrierResults::amplitude>},
    {kResultCarrierJitter, InBlock<kCarrier, &CarrierResults::jitter>},
    {kResultCarrierPhase, InBlock<kCarrier, &CarrierResults::phase>},
    {kResultSyncFrameRate, InBlock<kSync, &SyncResults::frameRate>},
    {kResultSyncFrameRateDeviation, InBlock<kSync, &SyncResults::deviation>},
};

} // namespace

double* GetResultFieldFromID(int resultID, int detector) {
    const auto* found = std::find_if(std::begin(kFields), std::end(kFields),
                                     [=](const ResultField& field) { return field.resultID == resultID; });
    return found != std::end(kFields) ? found->find(GetHostApplication(), detector) : nullptr;
}
