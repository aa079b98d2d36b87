// Register writes, and the judgement of their timing.

#include "simulator/Wire.h"
#include "simulator/peripherals/IoSwitcher.h"

#include <gmock/gmock.h>

#include <thread>

namespace kalvio::simulator {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

void WriteRegister(Wire& wire, char reg, const char* value) {
    const std::uint8_t address = static_cast<std::uint8_t>(reg);
    EXPECT_EQ(
        wire.Ask("0000ABCD 00000007 00000000 00000000 00" + ToHex({&address, 1}) + "32" + value + "00000000"),
        "0000600D 00000007 00000000");
}

// Flags of A and of B, then the values of 't', 'u' and 'v' (for A and for B).
void WriteGenerator(Wire& wire, const char* flagsAndRegisters) {
    EXPECT_EQ(
        wire.Ask("0000ABCD 00000016 00000038 00000000 0D000000", Repeat("00", 49) + flagsAndRegisters + "00"),
        "0000600D 00000016 00000000");
}

void WriteAutoRange(Wire& wire, const char* registers) {
    EXPECT_EQ(wire.Ask("0000ABCD 00000016 00000014 00000000 0E000000", Repeat("00", 16) + registers),
              "0000600D 00000016 00000000");
}

TEST(Relays, RecordsWriteTheRegistersThatTheyFlag) {
    Wire wire;
    WriteGenerator(wire, "10 00 AA BB C1 C2");
    EXPECT_EQ(wire.unit.PeekRegister('t'), 0xAA);
    EXPECT_EQ(wire.unit.PeekRegister('u'), 0x00);
    wire.now += 500;
    WriteGenerator(wire, "20 10 00 BB C1 C2");
    EXPECT_EQ(wire.unit.PeekRegister('t'), 0xAA);
    EXPECT_EQ(wire.unit.PeekRegister('u'), 0xBB);
    EXPECT_EQ(wire.unit.PeekRegister('v'), 0xC1);
    WriteGenerator(wire, "20 20 00 00 C1 C2"); // both flagged: the value for B holds what A asked for
    EXPECT_EQ(wire.unit.PeekRegister('v'), 0xC2);
    WriteAutoRange(wire, "01020304");
    EXPECT_EQ(wire.unit.PeekRegister('p'), 0x01);
    EXPECT_EQ(wire.unit.PeekRegister('s'), 0x04);
    const auto writes = wire.unit.RegisterWrites();
    ASSERT_THAT(writes, SizeIs(8));
    EXPECT_EQ(writes[0].reg, 't');
    EXPECT_EQ(writes[0].tick, 1000U);
    EXPECT_EQ(writes[3].reg, 'v');
    EXPECT_EQ(writes[3].changed, 0xC1 ^ 0xC2);
    EXPECT_EQ(writes[3].tick, 1500U);
}

TEST(Relays, TogglingBackTooEarlyIsAViolationWhereTheGuardRules) {
    struct Case {
        char reg;
        const char* first;
        const char* second;
        std::uint32_t pause;
        bool violates;
    };
    const Case cases[] = {
        {'p', "02", "00", 119, true}, {'p', "02", "00", 120, false}, {'p', "01", "00", 0, false},
        {'p', "03", "02", 0, false},  {'p', "03", "00", 0, true},    {'q', "80", "00", 10, true},
        {'t', "40", "00", 10, true},  {'u', "40", "00", 10, true},   {'u', "40", "41", 10, false},
        {'r', "01", "00", 10, true},  {'r', "01", "03", 10, false},  {'s', "FF", "00", 0, false},
        {'v', "FF", "00", 0, false},  {'w', "FF", "00", 0, false},
    };
    for (const Case& c : cases) {
        Wire wire;
        WriteRegister(wire, c.reg, c.first);
        wire.now += c.pause;
        WriteRegister(wire, c.reg, c.second);
        EXPECT_THAT(wire.unit.RelayViolations(), SizeIs(c.violates ? 1 : 0))
            << c.reg << ' ' << c.first << ' ' << c.second;
    }
}

TEST(Relays, JudgementKnowsTheGuardsLimits) {
    Wire wire;
    WriteRegister(wire, 'r', "01");
    WriteRegister(wire, 'r', "03"); // the guard forgets bit 0 here
    WriteRegister(wire, 'r', "02");
    WriteRegister(wire, 'r', "02"); // and everything here
    WriteRegister(wire, 'r', "03");
    EXPECT_THAT(wire.unit.RelayViolations(), IsEmpty());
    wire.Ask(kInitialise); // a fresh start knows nothing of the time before
    WriteRegister(wire, 'r', "00");
    EXPECT_THAT(wire.unit.RelayViolations(), IsEmpty());
    for (const std::uint32_t tick : {0x7FFFFFFFU, 0xFFFFFFF0U}) {
        wire.now = tick;
        WriteRegister(wire, 'r', tick == 0xFFFFFFF0U ? "01" : "00");
    }
    wire.now = 0x10; // the tick may wrap between two writes
    WriteRegister(wire, 'r', "00");
    EXPECT_THAT(wire.unit.RelayViolations(),
                ElementsAre("register 'r': bits 0x01 toggled back after 32 ms, at tick 16"));
}

TEST(Relays, RecordsAreJudgedToo) {
    Wire wire;
    WriteGenerator(wire, "20 00 00 00 01 00");
    wire.now += 60;
    WriteGenerator(wire, "20 00 00 00 00 00");
    EXPECT_THAT(wire.unit.RelayViolations(), ElementsAre(HasSubstr("'v'")));
    WriteGenerator(wire, "10 00 01 00 00 00");
    WriteGenerator(wire, "00 00 00 00 00 00"); // a record without 't' is still its latest write
    WriteGenerator(wire, "10 00 00 00 00 00");
    EXPECT_THAT(wire.unit.RelayViolations(), SizeIs(1));
    WriteAutoRange(wire, "01000080");
    WriteAutoRange(wire, "00000000"); // bit 0 of 'p' is spared in direct writes only; 's' always
    EXPECT_THAT(wire.unit.RelayViolations(), ElementsAre(HasSubstr("'v'"), HasSubstr("'p': bits 0x01")));
}

TEST(Threads, RequestsAndLooksFromOutsideMayMeet) {
    Wire wire;
    const auto switcher = wire.unit.Plug<IoSwitcher>(std::uint8_t{3});
    std::thread observer([&wire, &switcher] {
        for (int i = 0; i < 300; ++i) {
            wire.unit.AddFault({.kind = FaultKind::SlowAnswer, .value = 0});
            wire.unit.SetDeviceUnderTest({.gain = 2.0});
            EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
            EXPECT_LE(wire.unit.Exchanges().size(), 300U);
            EXPECT_LE(switcher->Events().size(), switcher->Operations());
        }
    });
    for (int i = 0; i < 300; ++i) {
        wire.Bus(i % 2 == 0 ? "55030184 00CDAA" : "55030186 00CBAA", 9);
    }
    observer.join();
    EXPECT_THAT(wire.unit.Exchanges(), SizeIs(300));
    EXPECT_EQ(switcher->Operations(0, 0, 0), 300U);
}

} // namespace
} // namespace kalvio::simulator
