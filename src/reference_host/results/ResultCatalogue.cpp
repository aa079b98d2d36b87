#include "reference_host/results/ResultCatalogue.h"

#include "host/ResultIds.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

namespace kalvio::reference_host {

namespace {

struct Row {
    const char* name;
    int resultID;
    int unit;
    const char* settlingStem;
    bool hasDetector;
};

constexpr std::array kRows{
    Row{"rms", kResultRmsA, kUnitVolt, "SETT_SAAmpl", false},
    Row{"rms-b", kResultRmsB, kUnitVolt, "SETT_SAAmpl", false},
    Row{"freq", kResultFrequencyA, kUnitHertz, "SETT_SAFreq", false},
    Row{"freq-b", kResultFrequencyB, kUnitHertz, "SETT_SAFreq", false},
    Row{"phase", kResultPhase, kUnitDegree, "SETT_SAPhase", false},
    Row{"ct", kResultCtDetectorA, kUnitVolt, "SETT_CTD", false},
    Row{"ct-b", kResultCtDetectorB, kUnitVolt, "SETT_CTD", false},
    Row{"fft", kResultFftDetectorA, kUnitVolt, "SETT_FFTD", true},
    Row{"fft-b", kResultFftDetectorB, kUnitVolt, "SETT_FFTD", true},
    Row{"carrier", kResultCarrierAmplitude, kUnitCarrierVolt, "SETT_DICAmpl", false},
    Row{"jitter", kResultCarrierJitter, kUnitUi, "SETT_DICJitter", false},
    Row{"carrier-phase", kResultCarrierPhase, kUnitDegree, "SETT_DICPhase", false},
    Row{"frame-rate", kResultInputFrameRate, kUnitHertz, "SETT_DIFrameRate", false},
    Row{"frame-deviation", kResultInputFrameRateDeviation, kUnitPpm, "SETT_DIFrameRate", false},
    Row{"sync-rate", kResultSyncFrameRate, kUnitHertz, "SETT_RefSyncSource", false},
    Row{"sync-deviation", kResultSyncFrameRateDeviation, kUnitPpm, "SETT_RefSyncSource", false},
};

std::optional<int> ParseDetector(std::string_view text) {
    int detector = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), detector);
    if (error != std::errc() || end != text.data() + text.size() || detector < 1)
        return std::nullopt;
    return detector;
}

} // namespace

std::optional<ResultChoice> FindResult(std::string_view name) {
    const std::size_t colon = name.find(':');
    const std::string_view stem = name.substr(0, colon);
    const auto* row =
        std::find_if(kRows.begin(), kRows.end(), [stem](const Row& each) { return each.name == stem; });
    if (row == kRows.end() || row->hasDetector != (colon != std::string_view::npos))
        return std::nullopt;
    int detector = kNoDetector;
    if (row->hasDetector) {
        const std::optional<int> parsed = ParseDetector(name.substr(colon + 1));
        if (!parsed)
            return std::nullopt;
        detector = *parsed;
    }
    return ResultChoice{std::string(name), row->resultID, detector, row->unit, row->settlingStem};
}

std::vector<std::string> ResultNames() {
    std::vector<std::string> names;
    std::transform(kRows.begin(), kRows.end(), std::back_inserter(names),
                   [](const Row& row) { return std::string(row.name) + (row.hasDetector ? ":N" : ""); });
    return names;
}

std::optional<double> ShownValue(double storageValue, int unit, const SReferences& references) {
    if (storageValue == kInvalidResult)
        return std::nullopt;
    return CPhysicalValue::StorageToUnit(storageValue, unit, references);
}

std::string FormatValue(double storageValue, int unit, const SReferences& references) {
    const std::optional<double> value = ShownValue(storageValue, unit, references);
    if (!value)
        return "no value";
    return Format("%.*f %s", GetNumDPsForUnit(unit), *value, GetStringForUnit(unit).c_str());
}

} // namespace kalvio::reference_host
