#pragma once

// A regulation as the command line describes it, and how it gets into the document.

#include "regulation/RegulationSettings.h"

#include <optional>
#include <string>
#include <vector>

namespace kalvio::reference_host {

// Words as typed; what is empty or absent keeps the document's default.
struct RegulationSetup {
    std::string result = "rms"; // rms, freq, phase, ct, fft:N
    std::optional<double> to{};
    std::string unit{};
    std::string source = "gen-ampl";
    std::optional<double> minimum{};
    std::optional<double> maximum{};
    std::string sourceUnit{};
    std::string type{}; // absolute, max, min
    std::string trend{};
    std::optional<double> tolerance{};
    std::string toleranceType{}; // offset, ratio
    std::string channel{};
    std::optional<double> step{};
    std::string direction{};
    std::optional<double> sensitivity{};
    std::optional<int> timeout{}; // seconds
};

// A word of a choice and the number that the document knows it by.
struct ChoiceWord {
    const char* word;
    int value;
};

// The choices by their option's name: "source", "type", "trend", "tolerance-type", "channel", "direction".
std::vector<std::string> ChoiceWords(const char* option);

// Sets the document's fields through its automation names, as a script would. Empty, or what was refused.
std::string ApplySetup(const RegulationSetup& setup, CRegulationSettings& document);

} // namespace kalvio::reference_host
