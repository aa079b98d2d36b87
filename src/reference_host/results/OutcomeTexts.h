#pragma once

// Outcomes of watches and regulations, and the rules behind them, in words.

#include "host/Units.h"
#include "preprocessor/EResult.h"
#include "preprocessor/SettlingFilter.h"

#include <string>

namespace kalvio::reference_host {

// One word for programs: "settled", "not-settled", "no-data", …
const char* WordOf(NPreProcessor::EResult result);

// The text that the status display shows for a regulation's outcome, on one line.
std::string RegulationText(NPreProcessor::EResult outcome);

// Which rule decided about a watched result, with the values, the tolerance and the older value that
// disagreed.
std::string VerdictText(int status, const SettlingVerdict& verdict, int unit, const SReferences& references);

const char* WordOfTolerance(int toleranceType);

} // namespace kalvio::reference_host
