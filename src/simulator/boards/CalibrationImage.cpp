#include "simulator/boards/CalibrationImage.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace kalvio::simulator {

namespace {

constexpr std::size_t kDataStart = 128;
constexpr std::size_t kOrganisation = 16;
constexpr std::size_t kOperator = 48;
constexpr std::uint32_t kUnitSerialNumber = 1042;

// Each calibrated value lies a little beside its nominal one, differently for each entry.
enum class Nominal { UnityGain, MeterGain, LevelGain, Offset, Text };

// A run of equal entries: `count` of them, `stride` bytes apart, from `offset` in the data area.
struct EntryRun {
    std::size_t offset;
    std::size_t stride;
    std::size_t count;
    Nominal nominal;
};

constexpr EntryRun kMainBoardRuns[] = {
    {0, 2, 24, Nominal::UnityGain}, {48, 2, 2, Nominal::Offset}, {52, 2, 5, Nominal::UnityGain}};

constexpr EntryRun kAnalogueBoardRuns[] = {{0, 2, 24, Nominal::UnityGain},   {48, 2, 16, Nominal::Offset},
                                           {80, 2, 2, Nominal::MeterGain},   {84, 4, 5, Nominal::Text},
                                           {256, 2, 24, Nominal::UnityGain}, {304, 2, 16, Nominal::Offset},
                                           {336, 2, 2, Nominal::LevelGain},  {340, 4, 3, Nominal::Text}};

std::uint32_t CalibratedValue(Nominal nominal, std::size_t index) {
    const auto scatter = static_cast<std::int32_t>(index * 37 % 101) - 50;
    const auto beside = [scatter](std::int32_t value) { return static_cast<std::uint32_t>(value + scatter); };
    switch (nominal) {
    case Nominal::UnityGain:
        return beside(32768);
    case Nominal::MeterGain:
        return beside(30935); // 0.94406 of 32768
    case Nominal::LevelGain:
        return beside(34709); // 1.05925 of 32768
    case Nominal::Offset:
        return beside(0);
    case Nominal::Text:
        break;
    }
    return 0;
}

void PutText(ByteSpan image, std::size_t offset, std::string_view text) {
    std::copy(text.begin(), text.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
}

void PutEntries(ByteSpan image, std::span<const EntryRun> runs) {
    for (const EntryRun& run : runs) {
        for (std::size_t i = 0; i < run.count; ++i) {
            const std::size_t place = kDataStart + run.offset + i * run.stride;
            if (run.nominal == Nominal::Text) {
                PutText(image, place, std::string("R") + static_cast<char>('1' + i));
            } else {
                StoreLittle(image, place, CalibratedValue(run.nominal, i + run.offset), 2);
            }
        }
    }
}

void PutHeader(ByteSpan image, std::uint8_t version, std::uint8_t options) {
    struct Number {
        std::size_t offset;
        std::size_t width;
        std::uint32_t value;
    };
    const Number numbers[] = {{2, 2, 2003},
                              {4, 1, 3},
                              {5, 1, 14},
                              {6, 1, 9},
                              {7, 1, 26},
                              {8, 1, 53},
                              {9, 1, 11},
                              {10, 1, 1},
                              {11, 1, options},
                              {12, 1, version},
                              {13, 2, 0x0102},
                              {15, 1, 'g'},
                              {80, 2, kUnitSerialNumber},
                              {82, 2, kCalibrationDataBytes}};
    for (const Number& number : numbers) {
        StoreLittle(image, number.offset, number.value, number.width);
    }
    PutText(image, kOrganisation, "Kalvio Calibration Laboratory");
    PutText(image, kOperator, "Bench 4");
}

void PutChecksum(ByteSpan image) {
    const std::uint32_t sum = std::accumulate(image.begin() + 2, image.end(), std::uint32_t{0});
    StoreLittle(image, 0, sum % 65535, 2);
}

} // namespace

ByteVector MakeCalibrationImage(CalibrationMemory memory, std::uint8_t version, std::uint8_t options) {
    ByteVector image(kCalibrationImageBytes);
    PutHeader(image, version, options);
    if (memory == CalibrationMemory::MainBoard) {
        PutEntries(image, kMainBoardRuns);
    } else {
        PutEntries(image, kAnalogueBoardRuns);
    }
    PutChecksum(image);
    return image;
}

} // namespace kalvio::simulator
