#include "platform/Registry.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

// Two writes of a register whose shadow is 0; the tick at which the second is done.
struct RelayCase {
    char reg;
    std::uint8_t first;
    std::uint8_t second;
    std::uint32_t between; // milliseconds from the first write to the second
    std::uint32_t done;    // milliseconds from the first write until the second goes out
};

const RelayCase kRelayCases[] = {
    {'r', 0x01, 0x00, 0, 120},   {'r', 0x01, 0x03, 0, 0},     {'r', 0x41, 0x02, 50, 120},
    {'r', 0x41, 0x02, 119, 120}, {'r', 0x41, 0x02, 130, 130}, {'p', 0x01, 0x00, 0, 0},
    {'p', 0x03, 0x02, 0, 0},     {'p', 0x03, 0x00, 0, 120},   {'q', 0x80, 0x00, 10, 120},
    {'t', 0x02, 0x00, 0, 120},   {'u', 0x02, 0x00, 0, 120},   {'t', 0x01, 0x00, 0, 0},
    {'s', 0xFF, 0x00, 0, 0},     {'v', 0xFF, 0x00, 0, 0},     {'w', 0xFF, 0x00, 0, 0},
    {'u', 0x02, 0x02, 0, 0},
};

TEST(AnalogueRegisters, ARelayBitIsNotToggledBackWithin120Ms) {
    for (const std::uint32_t start : {1000u, 0xFFFFFFC0u}) { // the tick may wrap meanwhile
        for (const RelayCase& row : kRelayCases) {
            SCOPED_TRACE(testing::Message()
                         << row.reg << int{row.first} << " " << int{row.second} << " " << row.between);
            UnitRig rig({}, start);
            const auto reg = static_cast<std::uint8_t>(row.reg);
            EXPECT_EQ(rig.hardware.AnaloguePutMem(reg, row.first), 0);
            rig.host.clock.Advance(row.between);
            EXPECT_EQ(rig.hardware.AnaloguePutMem(reg, row.second), 0);
            EXPECT_EQ(rig.host.clock.TickCount() - start, row.done);
        }
    }
}

TEST(AnalogueRegisters, TheHoldCountsFromBeforeTheWriteWentOut) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    rig.host.clock.Advance(500);
    const std::uint32_t start = rig.host.clock.TickCount();
    rig.unit.AddFault({simulator::FaultKind::SlowAnswer, 1, 1, 30});
    EXPECT_EQ(rig.hardware.AnaloguePutBits('r', 0, 0x04), 0);
    EXPECT_EQ(rig.host.clock.TickCount() - start, 30u);
    EXPECT_EQ(rig.hardware.AnaloguePutBits('r', 0x04, 0), 0);
    EXPECT_EQ(rig.host.clock.TickCount() - start, 120u);
    EXPECT_EQ(rig.unit.PeekRegister('r'), 0x20);
    EXPECT_EQ(rig.unit.RelayViolations(), std::vector<std::string>{});
}

TEST(AnalogueRegisters, TheShadowFollowsAFailedWrite) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0205});
    EXPECT_EQ(rig.hardware.AnaloguePutBits('s', 0, 0x01), 0x0205);
    EXPECT_EQ(rig.hardware.AnaloguePutBits('s', 0, 0x02), 0);
    EXPECT_EQ(rig.unit.PeekRegister('s'), 0x83);
}

TEST(ControlRegisters, ReadsAndBitWritesGoByTheUnitsShadow) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    std::uint8_t value = 0;
    const struct {
        std::uint16_t reg;
        std::uint16_t shadow;
    } registers[] = {{0x8000, 0x7AFC}, {0x8080, 0x7AFD}, {0x8800, 0x7AFE}, {0x8880, 0x7AFF}};
    for (const auto& row : registers) {
        rig.unit.PokeMicro('X', row.shadow, 0xF0);
        EXPECT_EQ(rig.hardware.MicroReadCtrlRegister(row.reg, value), 0);
        EXPECT_EQ(value, 0xF0);
        EXPECT_EQ(rig.hardware.MicroWriteCtrlRegisterBits(row.reg, 0x31, 0x05), 0);
        EXPECT_EQ(rig.unit.PeekMicro('S', row.reg), 0xC5);
    }
    rig.unit.ClearLogs();
    EXPECT_EQ(rig.hardware.MicroReadCtrlRegister(0x8001, value), 272);
    EXPECT_EQ(rig.hardware.MicroWriteCtrlRegisterBits(0x9000, 1, 1), 274);
    EXPECT_TRUE(rig.unit.Exchanges().empty());
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0205});
    EXPECT_EQ(rig.hardware.MicroWriteCtrlRegisterBits(0x8000, 1, 1), 0x0205);
    EXPECT_EQ(rig.unit.Exchanges().size(), 1u) << "no write after a failed read";
    EXPECT_EQ(rig.hardware.MicroReadStatusRegister(0x8001, value), 0);
    EXPECT_EQ(value, 0x05);
}

TEST(ControlWords, BitsGoByTheLastWordWritten) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(rig.hardware.DSPPutControlWord(1, 0x123), 0);
    EXPECT_EQ(rig.hardware.DSPPutControlBits(1, 0x021, 0x400), 0);
    EXPECT_EQ(rig.unit.PeekDsp(1, 'X', 24), 0x502u);
    rig.unit.PokeDsp(1, 'X', 24, 0);
    rig.unit.ClearLogs();
    std::uint32_t word = 0;
    EXPECT_EQ(rig.hardware.DSPGetControlWord(1, word), 0);
    EXPECT_EQ(word, 0x502u);
    EXPECT_TRUE(rig.unit.Exchanges().empty());
    EXPECT_EQ(rig.hardware.DSPGetControlWord(0, word), 0);
    EXPECT_EQ(word, 0x100u) << "the other DSP's word is its own";
}

TEST(HardwareAccess, FailuresInsideTheLockAreShownAfterIt) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 2, 0x0118});
    EXPECT_EQ(rig.hardware.LockHWAccess(), 1);
    EXPECT_EQ(rig.hardware.LockHWAccess(), 1);
    EXPECT_EQ(rig.hardware.AnaloguePutMem('s', 1), 0x0118);
    EXPECT_EQ(rig.hardware.UnlockHWAccess(), 1);
    EXPECT_EQ(rig.hardware.MicroPutMem('S', 0x9000, 1, 0), 0x0118);
    EXPECT_TRUE(rig.host.user.Texts().empty());
    EXPECT_EQ(rig.hardware.UnlockHWAccess(), 1);
    EXPECT_EQ(rig.host.user.Texts().size(), 2u);
}

} // namespace
} // namespace kalvio::test
