#include "reference_host/results/OutcomeTexts.h"

#include "reference_host/results/ResultCatalogue.h"
#include "regulation/RegulationStatusText.h"
#include "settling/SettlingDetails.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kalvio::reference_host {

using NPreProcessor::EResult;

namespace {

// By the number of the outcome.
constexpr std::array kWords{"none",          "working",      "settled",        "succeeded",
                            "failed",        "source-limit", "step-too-small", "monotonic-failed",
                            "not-converged", "not-settled",  "no-data",        "timed-out",
                            "aborted"};
static_assert(kWords.size() == NPreProcessor::Aborted + 1);

// How a difference reads: in the unit where it adds, else in percent of the newest value.
std::string Difference(double storage, double newest, int unit, const SReferences& references) {
    if (!IsdBUnit(unit)) {
        return FormatValue(storage, unit, references);
    }
    return Format("%.3g %%", newest == 0.0 ? 0.0 : storage / std::fabs(newest) * 100.0);
}

std::string ListValues(const SettlingVerdict& verdict, int unit, const SReferences& references) {
    std::string list;
    const auto count = static_cast<std::size_t>(std::clamp(verdict.count, 0, kSettlingWindow));
    for (std::size_t i = 0; i < count; ++i) {
        list += (i == 0 ? "" : ", ") + FormatValue(verdict.values[i], unit, references);
    }
    return list;
}

std::string Tolerance(const SettlingVerdict& verdict) {
    const std::string percent = Format("%g %%", verdict.tolerance * 100.0);
    switch (verdict.toleranceType) {
    case TOLERANCETYPE_NONE:
        return "no tolerance asked for";
    case TOLERANCETYPE_EXPONENTIAL:
        return percent + " of the newest, doubled for each step further back";
    default:
        return percent + " of the newest";
    }
}

} // namespace

const char* WordOf(EResult result) {
    const auto index = static_cast<std::size_t>(result);
    return index < kWords.size() ? kWords[index] : kWords[NPreProcessor::Failed];
}

std::string RegulationText(EResult outcome) {
    if (outcome == NPreProcessor::None) {
        return "No regulation was started";
    }
    std::string text = regulation::DescribeStatus(outcome).text;
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string VerdictText(int status, const SettlingVerdict& verdict, int unit, const SReferences& references) {
    const std::string values = ListValues(verdict, unit, references);
    const std::string held = Format("newest first %s", values.empty() ? "none" : values.c_str());
    if (status == NPreProcessor::NoData) {
        return "no data came any more; " + held;
    }
    if (verdict.stable) {
        return Format("the %d newest agree (%s): %s", verdict.count, Tolerance(verdict).c_str(),
                      held.c_str());
    }
    if (verdict.disagreeing == 0) {
        return Format("too few values, %d of %d and one more to compare: %s", verdict.count, verdict.needed,
                      held.c_str());
    }
    const double newest = verdict.values.front();
    return Format("the value %d back differs by %s, allowed %s (%s): %s", verdict.disagreeing,
                  Difference(verdict.deviation, newest, unit, references).c_str(),
                  Difference(verdict.allowed, newest, unit, references).c_str(), Tolerance(verdict).c_str(),
                  held.c_str());
}

const char* WordOfTolerance(int toleranceType) {
    switch (toleranceType) {
    case TOLERANCETYPE_NONE:
        return "none";
    case TOLERANCETYPE_EXPONENTIAL:
        return "exponential";
    default:
        return "normal";
    }
}

} // namespace kalvio::reference_host
