#include "preprocessor/RegulationObserver.h"

#include "preprocessor/PreProcessor.h"

#include <mutex>
#include <utility>

namespace NPreProcessor {
namespace {

RegulationObserver* installedObserver = nullptr; // guarded by the pre-processor lock

} // namespace

const char* NameOf(RegulationRule rule) {
    switch (rule) {
    case RegulationRule::None:
        return "none";
    case RegulationRule::InsideWindow:
        return "inside window";
    case RegulationRule::Proportional:
        return "proportional";
    case RegulationRule::HalfWay:
        return "half-way";
    case RegulationRule::Secant:
        return "secant";
    case RegulationRule::Bisect:
        return "bisect";
    case RegulationRule::March:
        return "march";
    case RegulationRule::MarchReversed:
        return "march reversed";
    case RegulationRule::MarchHalved:
        return "march halved";
    case RegulationRule::SecondPhase:
        return "second phase";
    case RegulationRule::ProbeBetweenMandA:
        return "probe between M and A";
    case RegulationRule::ProbeBetweenMandB:
        return "probe between M and B";
    case RegulationRule::OntoBest:
        return "onto best";
    case RegulationRule::Finished:
        return "finished";
    }
    return "unknown";
}

RegulationObserver* InstallRegulationObserver(RegulationObserver* observer) {
    const kalvio::LockGuard hold(kalvio::preprocessor::Lock());
    return std::exchange(installedObserver, observer);
}

} // namespace NPreProcessor

void kalvio::preprocessor::TellObserver(const NPreProcessor::RegulationStep& step) {
    if (NPreProcessor::installedObserver != nullptr) {
        NPreProcessor::installedObserver->OnRegulationStep(step);
    }
}
