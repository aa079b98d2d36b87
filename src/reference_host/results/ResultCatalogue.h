#pragma once

// The results by the names that a user types.

#include "host/Units.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::reference_host {

// A result as named on the command line: "rms", "fft-b:2".
struct ResultChoice {
    std::string name;
    int resultID = 0;
    int detector = 0;              // kNoDetector but for FFT results
    int unit = kUnitNone;          // its usual unit
    std::string_view settlingStem; // of the automation names of its settling parameters
};

// None for an unknown name; an FFT result needs its detector number after a colon.
std::optional<ResultChoice> FindResult(std::string_view name);

// The names for help and messages.
std::vector<std::string> ResultNames();

// A storage value in a unit, with the analyser's references, for people: "0.9987 V"; "no value" for the
// invalid marker.
std::string FormatValue(double storageValue, int unit, const SReferences& references);

// The value in the unit; none for the invalid marker.
std::optional<double> ShownValue(double storageValue, int unit, const SReferences& references);

} // namespace kalvio::reference_host
