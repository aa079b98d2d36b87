#include "preprocessor/PreProcessorState.h"

#include "host/ResultIds.h"

#include <algorithm>
#include <array>

namespace kalvio::preprocessor {

namespace {

// Results of the signal analyser and the continuous-time detector; they arrive together.
constexpr std::array kBlockResults{kResultRmsA,  kResultFrequencyA,  kResultRmsB,       kResultFrequencyB,
                                   kResultPhase, kResultCtDetectorA, kResultCtDetectorB};

} // namespace

SignalList& State::ListOf(int resultID) {
    const bool isBlock =
        std::find(kBlockResults.begin(), kBlockResults.end(), resultID) != kBlockResults.end();
    return isBlock ? block : single;
}

State& GetState() {
    static State& state = *new State;
    return state;
}

} // namespace kalvio::preprocessor
