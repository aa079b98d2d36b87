// The peripheral bus: frames that a device would take, answers that the unit would.

#include "simulator/Wire.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// The reply to one exchange: status, padding and the first nine bytes of the answer.
std::string Exchange(Wire& wire, std::string_view frameAndLengths) {
    std::string block(frameAndLengths);
    block += Repeat("00", 44 - Hex(block).size());
    const std::string all = wire.Ask("0000ABCD 00000016 0000002C 0000002C 0C000000", block, 12, 44);
    return ToHex(std::span(wire.got).first(13));
}

constexpr const char* kGetStatus5 = "06 09 0000 55 05 00 00 50 AA";
constexpr const char* kGoodAnswer = "55 05 03 00 21 30 01 FB AA";

TEST(PeripheralBus, ChecksTheAnswerOfADevice) {
    struct Case {
        const char* answer;
        const char* reply;
    };
    const Case cases[] = {
        {kGoodAnswer, "00000000 55050300 213001FB AA"},
        {"", "FFFD0000 00000000 00000000 00"},
        {"55 06 03 00 21 30 01 FA AA", "FFFC0000 00000000 00000000 00"}, // another address
        {"55 05 02 00 21 30 2D AA", "FFFB0000 00000000 00000000 00"},    // a byte short
        {"55 05 02 00 21 30 01 FC AA", "FFFB0000 00000000 00000000 00"}, // length byte does not fit
        {"54 05 03 00 21 30 01 FB AA", "FFFA0000 00000000 00000000 00"}, // start byte
        {"55 05 03 00 21 30 01 FC AA", "FFFA0000 00000000 00000000 00"}, // checksum
        {"55 05 03 CF 21 30 01 2C AA", "00000000 550503CF 2130012C AA"}, // the command is the host's to check
    };
    for (const Case& c : cases) {
        Wire wire;
        wire.unit.AttachPeripheral(5, [&c](std::span<const std::uint8_t> frame) {
            EXPECT_EQ(ToHex(frame), "55050000 50AA");
            return Hex(c.answer);
        });
        EXPECT_EQ(Exchange(wire, kGetStatus5), c.reply) << c.answer;
        EXPECT_EQ(wire.unit.PeripheralAttempts(5), 1U);
        EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
    }
}

TEST(PeripheralBus, NoDeviceTakesAMalformedFrame) {
    struct Case {
        const char* block;
        const char* complaint;
    };
    const Case cases[] = {
        {"06 09 0000 54 05 00 00 50 AA", "start"},
        {"06 09 0000 55 05 00 00 51 AA", "checksum"},
        {"06 09 0000 55 05 01 00 4F AA", "length"},
        {"06 09 0000 55 05 00 00 50 A4", "terminator"},
        {"06 09 0000 55 40 00 00 15 AA", "address"},
        {"07 09 0000 55 FF 00 00 56 AA", "length"},
        {"07 09 0000 55 FF 01 FF 01 55 AA", "terminator"}, // a broadcast may not ask for answers
        {"29 09 0000 55 05 00 00 50 AA", "longer than its block"},
        {"06 29 0000 55 05 00 00 50 AA", "longer than its block"},
    };
    for (const Case& c : cases) {
        Wire wire;
        wire.unit.AttachPeripheral(5, [](std::span<const std::uint8_t>) {
            ADD_FAILURE() << "the frame got through";
            return Hex(kGoodAnswer);
        });
        EXPECT_NE(Exchange(wire, c.block).substr(0, 4), "0000") << c.block;
        EXPECT_THAT(wire.unit.ProtocolErrors(), ElementsAre(HasSubstr(c.complaint))) << c.block;
        EXPECT_EQ(wire.unit.PeripheralAttempts(5), 0U);
    }
}

TEST(PeripheralBus, FramesThatWantNoAnswerAreDeliveredAndDone) {
    Wire wire;
    int delivered = 0;
    for (const std::uint8_t address : {std::uint8_t{5}, std::uint8_t{63}})
        wire.unit.AttachPeripheral(address, [&delivered](std::span<const std::uint8_t>) {
            ++delivered;
            return Hex(kGoodAnswer);
        });
    const char* const silence = "00000000 00000000 00000000 00";
    EXPECT_EQ(Exchange(wire, "06 09 0000 55 05 00 00 50 A5"), silence);
    EXPECT_EQ(delivered, 1);
    EXPECT_EQ(Exchange(wire, "07 09 0000 55 FF 01 FF 00 56 A5"), silence); // everyone to standby
    EXPECT_EQ(delivered, 3);
    EXPECT_EQ(wire.unit.PeripheralAttempts(255), 1U);
    EXPECT_EQ(Exchange(wire, "06 09 0000 55 07 00 00 4E A5"), silence); // nobody there, nobody asked
    wire.unit.AttachPeripheral(5, {});
    EXPECT_EQ(Exchange(wire, kGetStatus5), "FFFD0000 00000000 00000000 00");
    EXPECT_EQ(wire.unit.PeripheralAttempts(5), 2U);
}

} // namespace
} // namespace kalvio::simulator
