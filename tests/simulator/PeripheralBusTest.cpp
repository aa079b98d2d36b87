// The peripheral bus: what the unit thinks of answers, and who hears which frame.

#include "simulator/Wire.h"
#include "simulator/peripherals/IoSwitcher.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kStatusOf5 = "55050000 50AA";
constexpr const char* kStatusAnswer = "55050300 213001FB AA";

class Parrot final : public Peripheral {
public:
    Parrot(const char* hex, std::uint32_t delayMs) : m_reply{Hex(hex), delayMs} {}
    PeripheralReply Answer(ByteView, std::uint32_t) override { return m_reply; }
    [[nodiscard]] std::uint8_t Address() const override { return 5; }

private:
    PeripheralReply m_reply;
};

TEST(PeripheralBus, TheUnitJudgesEveryAnswer) {
    struct Case {
        const char* what;
        const char* answer;
        std::uint32_t delayMs;
        unsigned timeoutMs;
        const char* result;
        std::uint32_t tookMs;
        std::size_t length = 9;
    };
    const Case cases[] = {
        {"sound", kStatusAnswer, 0, 0, kStatusAnswer, 0},
        {"just in time", kStatusAnswer, 20, 0, kStatusAnswer, 20},
        {"too late", kStatusAnswer, 21, 0, "status FFFD", 20},
        {"in a longer time-out", kStatusAnswer, 2000, 2000, kStatusAnswer, 2000},
        {"beyond it", kStatusAnswer, 2001, 2000, "status FFFD", 2000},
        {"silence", "", 0, 5, "status FFFD", 5},
        {"wrong start byte", "54050300 213001FB AA", 7, 0, "status FFFA", 7},
        {"wrong checksum", "55050300 213001FC AA", 0, 0, "status FFFA", 0},
        {"wrong terminator", "55050300 213001FB AB", 0, 0, "status FFFA", 0},
        {"the other terminator", "55050300 213001FB A5", 0, 0, "55050300 213001FB A5", 0},
        {"another address", "55060300 213001FA AA", 3, 0, "status FFFC", 3},
        {"a byte short", "55050200 21301DAA", 0, 0, "status FFFB", 0},
        {"its length byte lies", "55050200 213001FC AA", 0, 0, "status FFFB", 0},
        {"another length asked for", kStatusAnswer, 0, 0, "status FFFB", 0, 10},
        {"less than a frame asked for", "55050300 21", 0, 0, "status FFFB", 0, 5},
    };
    for (const Case& c : cases) {
        Wire wire;
        wire.unit.Plug<Parrot>(c.answer, c.delayMs);
        EXPECT_EQ(wire.Bus(kStatusOf5, c.length, c.timeoutMs), c.result) << c.what;
        EXPECT_EQ(wire.now - 1000, c.tookMs) << c.what;
        EXPECT_EQ(wire.unit.PeripheralAttempts(5), 1U);
        EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
    }
}

TEST(PeripheralBus, BadFramesAreNotedByUnitAndDevice) {
    struct Case {
        const char* frame;
        const char* fault;
        bool noticed = true; // by the device at 3
    };
    const Case cases[] = {
        {"55030280 00D0AA", "wrong length"},
        {"55030000 AA", "wrong length"},
        {"54030000 52AA", "wrong start byte"},
        {"55030000 53AA", "wrong checksum"},
        {"55030000 52AB", "wrong terminator"},
        {"55FF01FF 0155AA", "wrong terminator"},
        {"55400000 15AA", "impossible address", false},
        {"55FE0000 57AA", "impossible address", false},
        {"55040000 52AA", "wrong checksum", false},
    };
    for (const Case& c : cases) {
        Wire wire;
        const auto switcher = wire.unit.Plug<IoSwitcher>(std::uint8_t{3});
        EXPECT_EQ(wire.Bus(c.frame, 9), "status FFFD") << c.frame;
        EXPECT_EQ(wire.now, 1020U);
        EXPECT_THAT(wire.unit.ProtocolErrors(), ElementsAre("peripheral frame: " + std::string(c.fault)));
        EXPECT_EQ(switcher->Faults(), std::vector<std::string>(c.noticed ? 1 : 0, c.fault)) << c.frame;
        EXPECT_EQ(wire.unit.PeripheralAttempts(3), 0U);
    }
    Wire wire; // blocks that cannot be
    for (const char* block : {"2906", "0629"}) {
        EXPECT_EQ(wire.Ask("0000ABCD 00000016 0000002C 0000002C 0C000000", block + Repeat("00", 42), 12, 44)
                      .substr(29, 8),
                  "FFFB0000");
    }
    EXPECT_THAT(wire.unit.ProtocolErrors(), testing::SizeIs(2));
}

TEST(PeripheralBus, FramesReachWhomTheyAreFor) {
    Wire wire;
    const auto one = wire.unit.Plug<IoSwitcher>(std::uint8_t{3});
    const auto other = wire.unit.Plug<IoSwitcher>(std::uint8_t{4});
    wire.Play({{"55030184 02CBA5", "no answer"}, {"55040185 03C8AA", "55040385 080000C1 AA"}});
    EXPECT_EQ(one->Mask(0, 0), 0x04);
    EXPECT_EQ(other->Mask(1, 0), 0x08);
    wire.Play({{"55FF01FF 0056A5", "no answer"}});
    EXPECT_FALSE(one->IsOn() || other->IsOn());
    EXPECT_EQ(one->FramesObeyed(), 2U);
    EXPECT_EQ(wire.unit.PeripheralAttempts(255), 1U);
    EXPECT_EQ(wire.now, 1000U);
    wire.Play({{"55FF0080 D6A5", "no answer"}}); // nothing but a reset is for all
    EXPECT_THAT(one->Faults(), ElementsAre("0x80: not for all"));

    const auto twin = wire.unit.Plug<IoSwitcher>(std::uint8_t{4});
    wire.Play({{"55040000 51AA", "status FFFA"},
               {"550401FF 0150A5", "no answer"},
               {"55030000 52AA", "55030300 1121001D AA"}});
    EXPECT_EQ(wire.unit.PeripheralCollisions(), 1U);
    twin->SetAnswerDelay(30); // too late to disturb
    wire.Play({{"55040000 51AA", "55040300 1121011B AA"}});
    wire.unit.AttachPeripheral(4, {}); // clears the place
    wire.Play({{"55040000 51AA", "status FFFD"}, {"55030000 52AA", "55030300 1121001D AA"}});
}

} // namespace
} // namespace kalvio::simulator
