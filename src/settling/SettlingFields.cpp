#include "settling/SettlingFields.h"

#include "host/ResultIds.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace kalvio {

namespace {

constexpr std::array<SettlingGroupInfo, kSettlingGroups> kGroups{{
    {12895, "SETT_SAAmpl", 2.5, TOLERANCETYPE_EXPONENTIAL},
    {12901, "SETT_SAFreq", 2.5, TOLERANCETYPE_EXPONENTIAL},
    {12907, "SETT_SAPhase", 5.0, TOLERANCETYPE_EXPONENTIAL},
    {12883, "SETT_CTD", 2.5, TOLERANCETYPE_EXPONENTIAL},
    {12889, "SETT_FFTD", 2.5, TOLERANCETYPE_EXPONENTIAL},
    {12865, "SETT_DICAmpl", 5.0, TOLERANCETYPE_EXPONENTIAL},
    {12871, "SETT_DICJitter", 5.0, TOLERANCETYPE_EXPONENTIAL},
    {12877, "SETT_DICPhase", 5.0, TOLERANCETYPE_EXPONENTIAL},
    {12859, "SETT_DIFrameRate", 0.001, TOLERANCETYPE_NORMAL},
    {12853, "SETT_RefSyncSource", 0.001, TOLERANCETYPE_NORMAL},
}};

constexpr std::array<const char*, kSettlingFieldsPerGroup> kSuffixes{"Convergence", "Tolerance",
                                                                     "SettlingTime", "NumResults", "Average"};

// Limits and number types that every group shares; the first two defaults are the group's own.
constexpr std::array<FieldDetails, kSettlingFieldsPerGroup> kFields{{
    {0, 0.0, 3.0, 0.0, 0, 0},
    {0, 0.0, 100.0, 0.0, 7, 5},
    {0, 0.0, 5000.0, 30.0, 2, 0},
    {0, 1.0, 10.0, 3.0, 1, 0},
    {0, 0.0, 1.0, 0.0, 0, 0},
}};

constexpr auto kFieldTable = [] {
    std::array<FieldDetails, kSettlingGroups * kSettlingFieldsPerGroup> table{};
    for (std::size_t group = 0; group < kGroups.size(); ++group) {
        for (std::size_t field = 0; field < kFields.size(); ++field) {
            FieldDetails& entry = table[group * kFields.size() + field];
            entry = kFields[field];
            entry.stringId = kGroups[group].captionId + 1 + static_cast<unsigned>(field);
        }
        table[group * kFields.size()].defaultValue = kGroups[group].defaultType;
        table[group * kFields.size() + 1].defaultValue = kGroups[group].defaultTolerance;
    }
    return table;
}();

struct ResultGroup {
    int resultID;
    int group;
};

constexpr ResultGroup kResultGroups[] = {
    {kResultRmsA, 0},
    {kResultRmsB, 0},
    {kResultFrequencyA, 1},
    {kResultFrequencyB, 1},
    {kResultPhase, 2},
    {kResultPhaseAlias, 2},
    {kResultCtDetectorA, 3},
    {kResultCtDetectorB, 3},
    {kResultFftDetectorA, 4},
    {kResultFftDetectorB, 4},
    {kResultCarrierAmplitude, 5},
    {kResultCarrierJitter, 6},
    {kResultCarrierPhase, 7},
    {kResultInputFrameRate, 8},
    {kResultInputFrameRateDeviation, 8},
    {kResultSyncFrameRate, 9},
    {kResultSyncFrameRateDeviation, 9},
};

} // namespace

const SettlingGroupInfo& InfoOf(int group) {
    return kGroups[static_cast<std::size_t>(group)];
}

std::span<const FieldDetails> SettlingFieldTable() {
    return kFieldTable;
}

int SettlingGroupOfResult(int resultID) {
    const auto* found =
        std::find_if(std::begin(kResultGroups), std::end(kResultGroups),
                     [resultID](const ResultGroup& entry) { return entry.resultID == resultID; });
    return found == std::end(kResultGroups) ? 0 : found->group;
}

const char* AutomationSuffixOf(int field) {
    return kSuffixes[static_cast<std::size_t>(field)];
}

} // namespace kalvio
