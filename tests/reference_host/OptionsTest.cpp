#include "host/ResultIds.h"
#include "reference_host/results/ResultCatalogue.h"
#include "reference_host/unit/DeviceOption.h"

#include <gtest/gtest.h>

namespace kalvio::reference_host {
namespace {

TEST(DeviceOption, WordsChangeTheirFiguresAndLeaveTheOthers) {
    simulator::DeviceUnderTest device;
    device.noiseVolts = 0.25;
    EXPECT_EQ(ParseDeviceOption(
                  "gain=-2.5,offset=-0.1,resonance=1000:12.5,saturation=3,time=40,bgain=0.5,silent", device),
              "");
    EXPECT_EQ(device.gain, -2.5);
    EXPECT_EQ(device.offsetVolts, -0.1);
    EXPECT_EQ(device.resonanceHz, 1000.0);
    EXPECT_EQ(device.resonanceQ, 12.5);
    EXPECT_EQ(device.saturationVolts, 3.0);
    EXPECT_EQ(device.timeConstantMs, 40.0);
    EXPECT_EQ(device.channelBGain, 0.5);
    EXPECT_TRUE(device.silent);
    EXPECT_EQ(device.noiseVolts, 0.25);
}

TEST(ResultCatalogue, NamesFindResults) {
    struct Row {
        const char* name;
        int resultID;
        int detector;
    };
    constexpr Row kRows[] = {
        {"rms", 3208, 65535},    {"rms-b", 3210, 65535},           {"phase", 3216, 65535},
        {"fft:3", 3351, 3},      {"fft-b:40", 3352, 40},           {"carrier", 3051, 65535},
        {"jitter", 3054, 65535}, {"frame-deviation", 3009, 65535}, {"sync-rate", 4008, 65535}};
    for (const Row& row : kRows) {
        const std::optional<ResultChoice> choice = FindResult(row.name);
        ASSERT_TRUE(choice) << row.name;
        EXPECT_EQ(choice->resultID, row.resultID);
        EXPECT_EQ(choice->detector, row.detector);
    }
    for (const char* name : {"", "RMS", "rms:1", "fft", "fft:", "fft:0", "fft:x", "fft:1x", "level"}) {
        EXPECT_FALSE(FindResult(name)) << name;
    }
}

TEST(ResultCatalogue, ValuesAreFormattedInTheirUnit) {
    EXPECT_EQ(FormatValue(kStepsPerVolt * 0.5, kUnitVolt, {}), "0.5000 V");
    EXPECT_EQ(FormatValue(kInvalidResult, kUnitVolt, {}), "no value");
    EXPECT_FALSE(ShownValue(kInvalidResult, kUnitHertz, {}));
}

} // namespace
} // namespace kalvio::reference_host
