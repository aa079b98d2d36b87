#include "hardware/GeneratorRecord.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gmock/gmock.h>

#include <bit>

namespace kalvio::test {
namespace {

using testing::IsEmpty;

// Masks and flags by their number.
MicroGeneratorDetails Micro(std::initializer_list<std::pair<std::size_t, int>> set) {
    MicroGeneratorDetails micro;
    for (const auto& [number, value] : set) {
        micro.m[number] = static_cast<std::uint8_t>(value);
    }
    return micro;
}

CString Text(const GeneratorRegisters& registers) {
    return ToHex(std::array{registers.t, registers.u, registers.v});
}

TEST(GeneratorRecord, HoldsBothChannelsAsTheyAre) {
    DSPGeneratorDetails dsp;
    dsp.channels[0] = {{0x01020304, 5, 6, 0xF0000007}, {0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7}};
    dsp.channels[1] = {{8, 9, 10, 11}, {0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6, 0xB7}};
    const auto record = BuildGeneratorRecord({0xC0, 0xC1, 0x77}, dsp, Micro({{0, 0x5A}, {1, 1}, {10, 1}}));
    EXPECT_EQ(ToHex(record.bytes), "010203040000000500000006F0000007A0A1A2A3A4A5A6A7"
                                   "0000000800000009"
                                   "0000000A0000000BB0B1B2B3B4B5B6B7"
                                   "5A0202C0C1777700");
}

TEST(GeneratorRecord, RelayRegistersAndWhatChangesInThem) {
    struct Case {
        const char* what;
        GeneratorRegisters now;
        MicroGeneratorDetails micro;
        const char* tail;    // bytes 49 to 55
        const char* values;  // 't', 'u', 'v' afterwards
        const char* changed; // likewise
    };
    const GeneratorRegisters idle{0xC0, 0xC0, 0x77};
    const Case cases[] = {
        {"nothing", idle, Micro({}), "0000C0C0777700", "C0C077", "000000"},
        {"t by both channels' masks", idle, Micro({{4, 0x40}, {5, 0x01}, {13, 0x80}, {14, 0x02}}),
         "100003C0777700", "03C077", "C30000"},
        {"u by both channels' masks", idle, Micro({{7, 0x02}, {15, 0xC0}}), "0010C002777700", "C00277",
         "00C200"},
        {"v by both channels", idle, Micro({{8, 0x07}, {9, 0x02}, {17, 0x70}, {18, 0x40}}), "2020C0C0724200",
         "C0C042", "000035"},
        {"v, bits that are not A's: B starts from the old value", idle, Micro({{8, 0x70}, {17, 0x10}}),
         "0020C0C0076700", "C0C067", "000010"},
        {"v by A alone", idle, Micro({{8, 0x01}}), "2000C0C0767600", "C0C076", "000001"},
        {"v, bits that are not B's: it stays", idle, Micro({{17, 0x07}}), "0000C0C0777000", "C0C077",
         "000000"},
        {"A's range asked for", idle, Micro({{3, 1}}), "0800C0C0777700", "C0C077", "000070"},
        {"B's range asked for", idle, Micro({{12, 9}}), "0008C0C0777700", "C0C077", "000007"},
        {"A's range asked for with another value for A", idle, Micro({{3, 1}, {9, 0x08}}), "0800C0C07F7700",
         "C0C077", "000078"},
        {"B's range asked for with another value for B", idle, Micro({{12, 1}, {17, 0x07}}), "0008C0C0777000",
         "C0C077", "000007"},
        {"outputs asked for",
         {0x81, 0x3F, 0x77},
         Micro({{2, 1}, {11, 1}}),
         "0404813F777700",
         "813F77",
         "41FF00"},
        {"outputs asked for and changed", idle, Micro({{2, 1}, {4, 0x80}}), "140040C0777700", "40C077",
         "800000"},
    };
    for (const Case& c : cases) {
        const auto record = BuildGeneratorRecord(c.now, {}, c.micro);
        EXPECT_EQ(ToHex(std::span(record.bytes).subspan(49)), c.tail) << c.what;
        EXPECT_EQ(Text(record.values), c.values) << c.what;
        EXPECT_EQ(Text(record.changed), c.changed) << c.what;
    }
}

struct Generator : testing::Test {
    Generator() {
        EXPECT_EQ(rig.BringUp(), 1);
        rig.host.clock.Advance(1000);
        rig.unit.ClearLogs();
        start = rig.host.clock.TickCount();
    }

    // Milliseconds after the start at which the last command reached the unit.
    [[nodiscard]] std::uint32_t LastSent() const { return rig.unit.Exchanges().back().tick - start; }
    std::int16_t Send(const MicroGeneratorDetails& micro) {
        const DSPGeneratorDetails dsp;
        return rig.hardware.SendGeneratorDetails(&dsp, &micro);
    }
    std::int16_t AutoRange(std::array<std::uint8_t, 4> registers) {
        WriteAutoRangeDetailsOut record;
        record.registers = registers;
        return rig.hardware.WriteAutoRangeDetails(&record);
    }

    UnitRig rig;
    std::uint32_t start = 0;
};

const auto kClearT = Micro({{4, 0x40}});
const auto kSetT = Micro({{5, 0x40}});

TEST_F(Generator, TogglingARelayBackWaitsAndAnythingElseDoesNot) {
    EXPECT_EQ(Send(kClearT), 0);
    EXPECT_EQ(LastSent(), 0U);
    rig.host.clock.Advance(30);
    EXPECT_EQ(Send(kSetT), 0);
    EXPECT_EQ(LastSent(), 120U);
    EXPECT_EQ(Send(kSetT), 0); // nothing to change
    EXPECT_EQ(Send(Micro({{7, 0x04}})), 0);
    EXPECT_EQ(Send(Micro({{7, 0x08}})), 0);
    EXPECT_EQ(LastSent(), 120U);
    EXPECT_EQ(Send(Micro({{6, 0x08}})), 0);
    EXPECT_EQ(LastSent(), 240U);
}

TEST_F(Generator, TheWaitCountsFromTheLatestOfTheThreeRegisters) {
    EXPECT_EQ(Send(kClearT), 0);
    rig.host.clock.Advance(60);
    EXPECT_EQ(rig.hardware.AnaloguePutBits('v', 0, 0x08), 0);
    rig.host.clock.Advance(10);
    EXPECT_EQ(Send(kSetT), 0);
    EXPECT_EQ(LastSent(), 180U);
    EXPECT_EQ(rig.unit.PeekRegister('t'), 0xC0);
    EXPECT_THAT(rig.unit.RelayViolations(), IsEmpty());
    EXPECT_THAT(rig.unit.ProtocolErrors(), IsEmpty());
}

TEST_F(Generator, AFailedRecordCountsAsWritten) {
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0123, 22});
    EXPECT_EQ(Send(kClearT), 0x0123);
    EXPECT_EQ(Send(kSetT), 0);
    EXPECT_EQ(LastSent(), 120U);
}

TEST_F(Generator, AutoRangeRecordsGoOutBigEndian) {
    WriteAutoRangeDetailsOut record{
        0x01020304, 0xF0000005, {1, 2, 3, 4, 5, 6, 7, 8}, {0x81, 0x82, 0x21, 0xC0}};
    EXPECT_EQ(rig.hardware.WriteAutoRangeDetails(&record), 0);
    EXPECT_EQ(ToHex(rig.unit.Exchanges().back().outData), "01020304F0000005"
                                                          "0102030405060708"
                                                          "818221C0");
    EXPECT_EQ(ToHex(rig.unit.Exchanges().back().parameters), "0E000000");
    EXPECT_EQ(ToHex(std::bit_cast<std::array<std::uint8_t, 4>>(record.value0)), "01020304");
    EXPECT_EQ(rig.unit.PeekRegister('q'), 0x82);
    EXPECT_EQ(rig.hardware.AnaloguePutBits('p', 0, 0), 0);
    EXPECT_EQ(rig.unit.PeekRegister('p'), 0x81); // the shadows know of it
}

TEST_F(Generator, AutoRangeWaitsForItsRelaysButNotForS) {
    EXPECT_EQ(AutoRange({0x80, 0x80, 0x21, 0x80}), 0); // 'r' changes
    EXPECT_EQ(AutoRange({0x80, 0x80, 0x21, 0xC0}), 0);
    EXPECT_EQ(AutoRange({0x80, 0x80, 0x21, 0x80}), 0); // 's' back and forth
    EXPECT_EQ(LastSent(), 0U);
    EXPECT_EQ(AutoRange({0x80, 0x81, 0x21, 0x80}), 0);
    rig.host.clock.Advance(50);
    EXPECT_EQ(AutoRange({0x80, 0x80, 0x21, 0x80}), 0);
    EXPECT_EQ(LastSent(), 120U);
}

TEST_F(Generator, AFailedAutoRangeKeepsItsShadowsButNotItsStamps) {
    EXPECT_EQ(AutoRange({0x80, 0x82, 0x20, 0x80}), 0);
    rig.host.clock.Advance(50);
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0123, 22});
    EXPECT_EQ(AutoRange({0x80, 0x80, 0x20, 0x80}), 0x0123);
    EXPECT_EQ(LastSent(), 120U);
    EXPECT_EQ(AutoRange({0x80, 0x82, 0x20, 0x80}), 0); // the shadow went back, so this is a change again
    EXPECT_EQ(LastSent(), 120U);
    rig.host.clock.Advance(1);
    EXPECT_EQ(AutoRange({0x80, 0x80, 0x20, 0x80}), 0);
    EXPECT_EQ(LastSent(), 240U);
}

TEST_F(Generator, DivisorsAndVideoSyncHaveTheirRecords) {
    const auto video = [this](std::uint8_t a, std::uint8_t b) {
        EXPECT_EQ(rig.hardware.SetVideoSyncDetails(0x104, a, b, 0x0102, 0x0304, 5, 6, 7, 8, 9, 0xA00B), 0);
        return ToHex(rig.unit.Exchanges().back().outData);
    };
    const CString common = "000700080009A00B"
                           "0102030400050006"
                           "04";
    static_cast<void>(video(0xFF, 0xFF)); // the pair outlives hardware objects
    EXPECT_EQ(video(0xFF, 0xFF), common + "FFFF00");
    EXPECT_EQ(video(0, 0), common + "000001");
    EXPECT_EQ(video(0, 0), common + "000000");
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0123, 22});
    EXPECT_EQ(rig.hardware.SetVideoSyncDetails(0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0x0123);
    EXPECT_EQ(video(1, 0), common + "010000");

    EXPECT_EQ(rig.hardware.WriteDivisorsToHardware(0x0102, 3, 4, 5, 0xFFFE), 0);
    EXPECT_EQ(ToHex(rig.unit.Exchanges().back().outData), "0102000300040005FFFE");
    EXPECT_EQ(ToHex(rig.unit.Exchanges().back().parameters), "07000000");
}

TEST_F(Generator, JitterAveragingIsClearedAndRestarted) {
    auto& analyser = rig.host.analyser;
    for (const int restart : {1, 0}) {
        analyser.jitterAverage = 3.0;
        analyser.jitterAverageCount = 5;
        analyser.jitterAveragingState = 2;
        rig.hardware.ResetJitterAveraging(restart);
        EXPECT_EQ(analyser.jitterAverage, 0.0);
        EXPECT_EQ(analyser.jitterAverageCount, 0);
        EXPECT_EQ(analyser.jitterAveragingState, restart != 0 ? 4 : 0);
    }
}

} // namespace
} // namespace kalvio::test
