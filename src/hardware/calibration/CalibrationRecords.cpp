// The built-in entry lists of the two boards.

#include "hardware/CalibrationTable.h"

#include <array>

namespace kalvio {

namespace {

// Entries of one kind that stand at equal distances.
struct RecordRun {
    std::uint32_t first; // number of the first entry
    std::uint32_t count;
    std::uint32_t offset; // of the first entry, from the start of the data area
    std::uint32_t stride;
    std::uint32_t type;
    double defaultValue;
};

template<std::size_t Count, std::size_t Runs>
consteval std::array<CalibTableRecord, Count> Expand(const RecordRun (&runs)[Runs]) {
    std::array<CalibTableRecord, Count> records{};
    std::size_t next = 0;
    for (const RecordRun& run : runs) {
        if (run.first != next) {
            throw "a run does not start where the one before it ended";
        }
        for (std::uint32_t i = 0; i < run.count; ++i) {
            records[next++] = {run.offset + i * run.stride, run.type, run.defaultValue, 0.0};
        }
    }
    if (next != Count) {
        throw "the runs do not fill the list";
    }
    return records;
}

constexpr RecordRun kMainBoardRuns[] = {
    {0, 24, 0, 2, 2, 1.0},
    {24, 2, 48, 2, 6, 0.0},
    {26, 5, 52, 2, 7, 1.0},
};

constexpr RecordRun kAnalogueBoardRuns[] = {
    {0, 24, 0, 2, 2, 1.0},    {24, 16, 48, 2, 3, 0.0},  {40, 2, 80, 2, 2, 0.94406},  {42, 5, 84, 4, 5, 0.0},
    {47, 24, 256, 2, 2, 1.0}, {71, 16, 304, 2, 3, 0.0}, {87, 2, 336, 2, 2, 1.05925}, {89, 3, 340, 4, 5, 0.0},
};

constexpr auto kMainBoardRecords = Expand<31>(kMainBoardRuns);
constexpr auto kAnalogueBoardRecords = Expand<92>(kAnalogueBoardRuns);

} // namespace

std::span<const CalibTableRecord> MainBoardRecords() {
    return kMainBoardRecords;
}

std::span<const CalibTableRecord> AnalogueBoardRecords() {
    return kAnalogueBoardRecords;
}

} // namespace kalvio
