#include "reference_host/results/ResultCatalogue.h"

#include "host/ResultCatalogue.h"

#include <algorithm>
#include <charconv>

namespace kalvio::reference_host {

namespace {

// Of the automation names of the settling parameters, by the result's group.
constexpr const char* kSettlingStems[] = {
    "SETT_SAAmpl",  "SETT_SAFreq",    "SETT_SAPhase",  "SETT_CTD",         "SETT_FFTD",
    "SETT_DICAmpl", "SETT_DICJitter", "SETT_DICPhase", "SETT_DIFrameRate", "SETT_RefSyncSource"};

std::optional<int> ParseDetector(std::string_view text) {
    int detector = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), detector);
    if (error != std::errc() || end != text.data() + text.size() || detector < 1) {
        return std::nullopt;
    }
    return detector;
}

} // namespace

std::optional<ResultChoice> FindResult(std::string_view name) {
    const std::size_t colon = name.find(':');
    const std::string_view stem = name.substr(0, colon);
    const auto rows = Results();
    const auto row = std::ranges::find_if(
        rows, [stem](const ResultRow& each) { return each.name != nullptr && each.name == stem; });
    if (row == rows.end() || row->usesDetector != (colon != std::string_view::npos)) {
        return std::nullopt;
    }
    int detector = kNoDetector;
    if (row->usesDetector) {
        const std::optional<int> parsed = ParseDetector(name.substr(colon + 1));
        if (!parsed) {
            return std::nullopt;
        }
        detector = *parsed;
    }
    return ResultChoice{std::string(name), row->id, detector, row->usualUnit,
                        kSettlingStems[row->settlingGroup]};
}

std::vector<std::string> ResultNames() {
    std::vector<std::string> names;
    for (const ResultRow& row : Results()) {
        if (row.name != nullptr) {
            names.push_back(std::string(row.name) + (row.usesDetector ? ":N" : ""));
        }
    }
    return names;
}

std::optional<double> ShownValue(double storageValue, int unit, const SReferences& references) {
    if (storageValue == kInvalidResult) {
        return std::nullopt;
    }
    return CPhysicalValue::StorageToUnit(storageValue, unit, references);
}

std::string FormatValue(double storageValue, int unit, const SReferences& references) {
    const std::optional<double> value = ShownValue(storageValue, unit, references);
    if (!value) {
        return "no value";
    }
    return Format("%.*f %s", GetNumDPsForUnit(unit), *value, GetStringForUnit(unit).c_str());
}

} // namespace kalvio::reference_host
