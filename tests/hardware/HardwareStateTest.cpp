#include "hardware/LevelConversions.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gmock/gmock.h>

namespace kalvio::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(UnitState, TemperaturesAreSignedHalfDegrees) {
    struct Case {
        std::int16_t halfDegrees;
        double degrees;
    };
    for (const Case& c : {Case{50, 25.0}, {-1, -0.5}, {0, 0.0}, {255, 127.5}, {-110, -55.0}}) {
        simulator::UnitOptions options;
        options.mainTemperatureHalfDegrees = c.halfDegrees;
        options.analogueTemperatureHalfDegrees = 3;
        UnitRig rig(options);
        EXPECT_EQ(rig.hardware.GetMainBoardTemperature(), 0.0); // not open yet
        ASSERT_EQ(rig.BringUp(), 1);
        EXPECT_EQ(rig.hardware.GetMainBoardTemperature(), c.degrees);
        rig.hardware.SuspendDevice();
        EXPECT_EQ(rig.hardware.GetAnalogueBoardTemperature(), 1.5);
        double degrees = 9.0;
        EXPECT_EQ(rig.hardware.GetTemperature(72, degrees, 0), 0);
        rig.hardware.UnsuspendDevice();
        rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0123, 11});
        degrees = 9.0;
        EXPECT_EQ(rig.hardware.GetTemperature(72, degrees, 1), 0x0123);
        EXPECT_EQ(degrees, 9.0);
    }
}

TEST(UnitState, Hf2FlagsOfEachDspCanBeIgnoredForAWhile) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    rig.unit.SetResultCadence(1000000);
    CHardware& hardware = rig.hardware;
    for (const std::uint8_t dsp : {std::uint8_t{0}, std::uint8_t{1}}) {
        const std::uint16_t address = dsp == 1 ? 0xB02A : 0xB022;
        rig.unit.PokeMicro('X', dsp == 1 ? 0xB022 : 0xB02A, 0);
        rig.unit.PokeMicro('X', address, 0x08);
        rig.unit.ClearLogs();
        hardware.SetHF2FlagIgnoreCount(dsp, 2);
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp), 0);
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp), 0);
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp), 1);
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp ^ 1), 0);
        EXPECT_EQ(rig.ParametersOf(17).at(0), dsp == 1 ? "00B02A0800015801" : "00B0220800015801");
        EXPECT_EQ(hardware.ResetHF2Flag(dsp), 0);
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp), 0);
        rig.unit.PokeMicro('X', address, 0x08);
        hardware.SetHF2FlagIgnoreCount(dsp, 1);
        rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0123, 17});
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp), 0); // a failed look ignores nothing
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp), 0);
        EXPECT_EQ(hardware.IsHF2FlagReady(dsp), 1);
    }
}

TEST(UnitState, PeaksAreReadForTheChannelsAskedFor) {
    UnitRig rig;
    std::array<std::uint8_t, 8> a{};
    std::array<std::uint8_t, 8> b{};
    b.fill(0x5A);
    EXPECT_EQ(rig.hardware.ReadPeakDetectorValues(a.data(), b.data()), 0);
    EXPECT_THAT(b, testing::Each(0x5A)); // no unit
    ASSERT_EQ(rig.BringUp(), 1);
    rig.unit.ClearLogs();
    EXPECT_EQ(rig.hardware.ReadPeakDetectorValues(nullptr, b.data()), 0);
    EXPECT_EQ(rig.hardware.ReadPeakDetectorValues(a.data(), nullptr), 0);
    const auto exchanges = rig.unit.Exchanges();
    ASSERT_EQ(exchanges.size(), 2U);
    EXPECT_EQ(ToHex(exchanges[0].outData), "0001");
    EXPECT_EQ(ToHex(exchanges[1].outData), "0100");
    EXPECT_EQ(exchanges[0].expectedInLength, 18U);
    EXPECT_NE(ToHex(b), "5A5A5A5A5A5A5A5A");
}

TEST(UnitState, ClockCycleShortensWithBringUp) {
    UnitRig rig;
    EXPECT_DOUBLE_EQ(rig.hardware.GetDSPClockCycleTime(), 19.929846);
    ASSERT_EQ(rig.BringUp(), 1);
    EXPECT_DOUBLE_EQ(rig.hardware.GetDSPClockCycleTime(), 19.929846 * 49.0 / 54.0);
}

TEST(UnitState, AnalyserChannelsFollowTheInputSelection) {
    UnitRig rig;
    struct Case {
        int first;
        int second;
        int reversed;
        int jitter;
        int channelA;
        int channelB;
    };
    for (const Case& c : {Case{0, 1, 0, 0, 1, 1},
                          {0, 0, 0, 0, 1, 0},
                          {1, 1, 0, 0, 0, 1},
                          {0, 0, 1, 0, 0, 1},
                          {0, 1, 0, 1, 1, 0}}) {
        rig.host.analyser.firstChannel = c.first;
        rig.host.analyser.secondChannel = c.second;
        rig.host.analyser.channelsReversed = c.reversed;
        rig.host.analyser.jitterDomain = c.jitter;
        int channelA = 9;
        int channelB = 9;
        rig.hardware.GetHWAnalyserChannels(channelA, channelB);
        EXPECT_EQ(channelA, c.channelA);
        EXPECT_EQ(channelB, c.channelB);
    }
}

TEST(LevelConversions, GiveVolts) {
    EXPECT_DOUBLE_EQ(ConvertdBuToV(0.0), 0.7745966692415);
    EXPECT_DOUBLE_EQ(ConvertdBuToV(20.0), 7.745966692415);
    EXPECT_DOUBLE_EQ(ConvertdBVToV(-40.0), 0.01);
    EXPECT_DOUBLE_EQ(ConvertdBmToV(30.0, 16.0), 4.0);
    EXPECT_DOUBLE_EQ(ConvertWToV(2.0, 8.0), 4.0);
    EXPECT_DOUBLE_EQ(ConvertWToV(-2.0, 8.0), -4.0);
}

} // namespace
} // namespace kalvio::test
