// The I/O switcher beyond what docs/wire.md plays.

#include "simulator/Wire.h"
#include "simulator/peripherals/IoSwitcher.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

using testing::ElementsAre;

TEST(Switcher, RefusesWhatItDoesNotHave) {
    Wire wire;
    const auto switcher = wire.unit.Plug<IoSwitcher>(std::uint8_t{3});
    for (const char* frame :
         {"55030184 10BDAA", "55030187 408AAA", "55030681 01000400 0000C6AA", "55030681 01000000 0008C2AA",
          "55030382 0100804C AA", "5503018A 04C3AA", "55030084 CEAA", "55030180 00D1AA", "55030100 0051AA",
          "550301FF 0250AA", "550300FF 53AA", "55030090 C2AA", "550301C1 0090AA"}) {
        wire.Play({{frame, "status FFFD"}});
    }
    EXPECT_THAT(switcher->Faults(),
                ElementsAre("a relay that does not exist", "a relay that does not exist",
                            "flags that do not exist", "flags that do not exist", "flags that do not exist",
                            "flags that do not exist", "0x84: wrong number of data bytes",
                            "0x80: wrong number of data bytes", "0x00: wrong number of data bytes",
                            "0xFF: neither on nor standby", "0xFF: neither on nor standby", "0x90: unknown",
                            "0xC1: unknown"));
    EXPECT_EQ(switcher->Operations() + switcher->FramesObeyed(), 0U);
    wire.Play({{"55030184 0FBEAA", "55030384 0080004B AA"},
               {"550301FF 0052AA", "550303FF 1121001E AA"},
               {"55030080 D2AA", "status FFFD"},
               {"55030000 52AA", "55030300 1121001D AA"}});
    EXPECT_EQ(switcher->Faults().back(), "0x80: in standby");
}

TEST(Switcher, EveryMovementOfARelayIsOnRecord) {
    Wire wire;
    const auto switcher = wire.unit.Plug<IoSwitcher>(std::uint8_t{3});
    wire.Play({{"55030184 0BC2AA", "55030384 000800C3 AA"}});
    wire.now = 1500;
    wire.Play({{"55030681 01000200 800345AA", "55030681 01000200 800345AA"}, // what opens opens first
               {"55030184 00CDAA", "55030384 010002C8 AA"},                  // stands there already
               {"55030186 05C6AA", "55030386 010002C6 AA"}});
    EXPECT_EQ(switcher->Flags(0) * 16 + switcher->Flags(1), 0x23);
    wire.now = 2000;
    wire.Play({{"550301FF 0151AA", "550303FF 1121011D AA"}, {"55030080 D2AA", "55030680 00000000 0000CCAA"}});
    EXPECT_THAT(switcher->Events(),
                ElementsAre(RelayEvent{0, 1, 3, true, 1000}, RelayEvent{0, 1, 3, false, 1500},
                            RelayEvent{0, 0, 0, true, 1500}, RelayEvent{1, 1, 7, true, 1500},
                            RelayEvent{0, 0, 0, false, 2000}, RelayEvent{1, 1, 7, false, 2000}));
    EXPECT_EQ(switcher->Operations(0, 1, 3), 2U);
    EXPECT_EQ(switcher->Operations(1, 0, 3), 0U);
    EXPECT_EQ(switcher->Operations(), 6U);
}

TEST(Switcher, VoltagesFollowRelaysLoadAndBalance) {
    struct Case {
        const char* set; // both buses
        const char* measured;
    };
    const Case cases[] = {
        {"55030681 FF000000 FF01CCAA", "55030492 2400DC24 98AA"}, // 36 and -36, the latter balanced
        {"55030681 80010304 8002C1AA", "55030492 03FDFE00 BEAA"}, // (8 - 1) / 2 balanced; (3 - 8) / 2
        {"55030681 00000301 0100C6AA", "55030492 00000000 BCAA"},
    };
    for (const Case& c : cases) {
        Wire wire;
        wire.unit.Plug<IoSwitcher>(std::uint8_t{3});
        wire.Bus(c.set, 12);
        wire.Play({{"55030092 C0AA", c.measured}});
    }
}

} // namespace
} // namespace kalvio::simulator
