// The I2C bus: registers, sensors, calibration memories, the armed address check.

#include "simulator/Wire.h"

#include <gmock/gmock.h>

#include <numeric>

namespace kalvio::simulator {
namespace {

using testing::Each;
using testing::Ge;
using testing::Le;

constexpr const char* kDone = "0000600D 0000000D 00000000";
constexpr const char* kPutMainBlock34 = "0000ABCD 0000000D 00000022 00000000 00523200";
constexpr const char* kPutMainPointer = "0000ABCD 0000000D 00000002 00000000 00523200";

std::string ReadMain(Wire& wire, const char* pointer) {
    EXPECT_EQ(wire.Ask(kPutMainPointer, pointer), kDone);
    return wire.Ask("0000ABCD 0000000B 00000000 00000004 00523200", {}, 12, 4).substr(29);
}

TEST(I2c, RegistersAndSensorsAnswerAsTheirHardwareDoes) {
    struct Case {
        const char* header;
        const char* out;
        std::size_t responseLength;
        std::size_t inLength;
        const char* answer;
    };
    const Case cases[] = {
        {"0000ABCD 00000007 00000000 00000000 007032FE 00000000", "", 12, 0, "0000600D 00000007 00000000"},
        {"0000ABCD 00000007 00000000 00000000 007132FE 00000000", "", 12, 0, "0000600D 00000007 00000000"},
        {"0000ABCD 00000007 00000000 00000000 007732C3 00000000", "", 12, 0, "0000600D 00000007 00000000"},
        {"0000ABCD 00000003 00000000 00000000 00703200", "", 16, 0, "0000600D 00000003 00000000 12000000"},
        {"0000ABCD 00000003 00000000 00000000 00713200", "", 16, 0, "0000600D 00000003 00000000 13000000"},
        {"0000ABCD 00000003 00000000 00000000 00773200", "", 16, 0, "0000600D 00000003 00000000 C3000000"},
        {"0000ABCD 0000000D 00000002 00000000 00733200", "0102", 12, 0, "0000B00B 0000000D 011A0000"},
        // 72 holds 30.5 degrees, 73 holds -0.5; register 1 of a sensor is not its temperature
        {"0000ABCD 0000000B 00000000 00000002 00483200", "", 12, 2, "0000600D 0000000B 00000000 | 1E80"},
        {"0000ABCD 0000000B 00000000 00000002 00493200", "", 12, 2, "0000600D 0000000B 00000000 | FF80"},
        {"0000ABCD 00000007 00000000 00000000 00483201 00000000", "", 12, 0, "0000600D 00000007 00000000"},
        {"0000ABCD 0000000B 00000000 00000002 00483200", "", 12, 2, "0000600D 0000000B 00000000 | 0000"},
        {"0000ABCD 00000007 00000000 00000000 00483200 00000000", "", 12, 0, "0000600D 00000007 00000000"},
        {"0000ABCD 0000000B 00000000 00000002 00483200", "", 12, 2, "0000600D 0000000B 00000000 | 1E80"},
        // nobody there; no such form of access
        {"0000ABCD 00000003 00000000 00000000 00103200", "", 16, 0, "0000B00B 00000003 01190000 00000000"},
        {"0000ABCD 00000007 00000000 00000000 00F03201 00000000", "", 12, 0, "0000B00B 00000007 01190000"},
        {"0000ABCD 00000018 00000000 00000000 00000000 00703201 02000000", "", 12, 0,
         "0000B00B 00000018 01010000"},
    };
    UnitOptions options;
    options.analogueTemperatureHalfDegrees = -1;
    Wire wire(options);
    for (const Case& c : cases) {
        EXPECT_EQ(wire.Ask(c.header, c.out, c.responseLength, c.inLength), c.answer) << c.header;
    }
    EXPECT_EQ(wire.unit.PeekRegister('p'), 0xFE);
    EXPECT_EQ(wire.unit.PeekRegister('o') + wire.unit.PeekRegister('x'), 0);
    EXPECT_EQ(wire.unit.PeekMicro('X', 0x8001) * 256 + wire.unit.PeekMicro('X', 0x8002), 0x0500);
}

TEST(I2c, MemoriesWriteWithinAPageAndReadOn) {
    Wire wire;
    // 32 bytes from 0x003E on: two of them reach the page's end, thirty wrap to its start.
    EXPECT_EQ(wire.Ask(kPutMainBlock34, "003E A1A2" + Repeat("BB", 28) + "C1C2"), kDone);
    EXPECT_EQ(ReadMain(wire, "003C"), "C1C2A1A2");
    EXPECT_EQ(ReadMain(wire, "0020"), "BBBBBBBB");
    // Reads go over page borders and from the last byte to the first.
    const std::uint8_t ends[] = {0x01, 0x02};
    wire.unit.WriteCalibration(CalibrationMemory::MainBoard, 4094, ends);
    wire.unit.WriteCalibration(CalibrationMemory::MainBoard, 0, ends);
    wire.unit.WriteCalibration(CalibrationMemory::MainBoard, 4096, ends); // beyond the end: nothing
    EXPECT_EQ(ReadMain(wire, "0FFE"), "01020102");
    // The pointer stays where a read left it.
    EXPECT_EQ(wire.Ask("0000ABCD 00000003 00000000 00000000 00523200", {}, 16).substr(27, 8),
              ToHex(std::vector<std::uint8_t>{wire.unit.ReadCalibration(CalibrationMemory::MainBoard)[2], 0,
                                              0, 0}));
    // Half an address and more than a page are no transfers for such a memory.
    EXPECT_EQ(wire.Ask("0000ABCD 0000000D 00000001 00000000 00523200", "00"), "0000B00B 0000000D 011A0000");
    EXPECT_EQ(wire.Ask("0000ABCD 0000000D 00000023 00000000 00523200", Repeat("00", 35)),
              "0000B00B 0000000D 011A0000");
}

TEST(I2c, ACheckedWriteNeedsItsAddressArmedOnce) {
    Wire wire;
    const auto arm = [&wire](const char* address) {
        wire.Ask("0000ABCD 00000016 00000002 00000000 08000000", address);
    };
    const auto checkedWrite = [&wire] {
        return wire.Ask("0000ABCD 0000000D 00000003 00000000 00543201", "0000 77");
    };
    const char* const refused = "0000B00B 0000000D 01180000";
    EXPECT_EQ(checkedWrite(), refused);
    arm("0054");
    wire.Ask(kPutMainPointer, "0000"); // an unchecked write does not use it up
    EXPECT_EQ(checkedWrite(), kDone);
    EXPECT_EQ(checkedWrite(), refused);
    arm("0052");
    EXPECT_EQ(checkedWrite(), refused);
    arm("5400"); // little-endian by mistake
    EXPECT_EQ(checkedWrite(), refused);
    EXPECT_EQ(wire.unit.ReadCalibration(CalibrationMemory::AnalogueBoard)[0], 0x77);
    arm("1234");
    EXPECT_EQ(wire.Ask("0000ABCD 00000007 00000000 00000000 123458AA 01000000"),
              "0000600D 00000007 00000000");
    EXPECT_EQ(wire.Ask("0000ABCD 00000007 00000000 00000000 123458BB 01000000"),
              "0000B00B 00000007 01180000");
    EXPECT_EQ(wire.unit.PeekMicro('X', 0x1234), 0xAA);
}

TEST(I2c, FactoryCalibrationIsValidInBothCopies) {
    Wire wire;
    const std::uint8_t junk[] = {0xDE, 0xAD};
    wire.unit.WriteCalibration(CalibrationMemory::MainBoard, 130, junk);
    wire.unit.SetDefaultCalibration(CalibrationMemory::MainBoard);
    for (const CalibrationMemory memory : {CalibrationMemory::MainBoard, CalibrationMemory::AnalogueBoard}) {
        const auto bytes = wire.unit.ReadCalibration(memory);
        ASSERT_EQ(bytes.size(), 4096U);
        const std::vector<std::uint8_t> mirror(bytes.begin(), bytes.begin() + 640);
        EXPECT_EQ(mirror, std::vector<std::uint8_t>(bytes.begin() + 2048, bytes.begin() + 2688));
        const unsigned sum = std::accumulate(mirror.begin() + 2, mirror.end(), 0U) % 65535;
        EXPECT_EQ(mirror[0] + 256U * mirror[1], sum);
        EXPECT_EQ(ToHex({mirror.data() + 2, 9}), "D307030E 091A350B 01"); // 14 March 2003, 9:26:53, 1.11
        EXPECT_EQ(mirror[15], 'g');
        EXPECT_EQ(mirror[82] + 256 * mirror[83], 512);
        std::vector<int> gains;
        for (std::size_t i = 0; i < 24; ++i) {
            gains.push_back(mirror[128 + 2 * i] + 256 * mirror[129 + 2 * i]);
        }
        EXPECT_THAT(gains, Each(testing::AllOf(Ge(32718), Le(32818)))); // near 1.0, and not all the same
        EXPECT_NE(gains[0], gains[1]);
    }
}

} // namespace
} // namespace kalvio::simulator
