// Framing: what the unit takes for a frame, and in which portions data moves.

#include "simulator/Wire.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(CommandFrame, RefusesAMalformedHeaderAndSaysWhy) {
    struct Case {
        const char* header;
        const char* complaint;
    };
    const Case cases[] = {
        {"0000ABCD 00000001 00000000", "only 12 bytes"},
        {"0000ABCE 00000001 00000000 00000000 00000000", "magic"},
        {"CDAB0000 01000000 00000000 00000000 00000000", "magic"},
        {"0000ABCD 00000000 00000000 00000000 00000000", "unknown command code 0"},
        {"0000ABCD 00000019 00000000 00000000 00000000", "unknown command code 25"},
        {"0000ABCD 00000001 00000000 00000000", "Initialise: header of 16 bytes"},
        {"0000ABCD 00000003 00000000 00000000 80005800 00000000", "MicroGetMem: header of 24 bytes"},
        {"0000ABCD 00000001 00000001 00000000 00000000", "Initialise: out data of 1 bytes"},
        {"0000ABCD 00000001 00000000 00000002 00000000", "Initialise: in data of 2 bytes"},
        {"0000ABCD 0000000B 00000001 00000002 80005800", "MicroGetMemBlock: out data of 1 bytes"},
        {"0000ABCD 0000000D 00000001 00000002 80005800", "MicroPutMemBlock: in data of 2 bytes"},
        {"0000ABCD 0000000C 00000000 00000004 00000000 00580000", "DSPGetMemBlock24: in data of 4 bytes"},
        {"0000ABCD 0000000E 00000004 00000000 00000000 00580000", "DSPPutMemBlock24: out data of 4 bytes"},
        {"0000ABCD 00000015 0000000A 00000000 00010000", "DSPLoad: out data of 10 bytes"},
    };
    for (const Case& c : cases) {
        Wire wire;
        EXPECT_FALSE(wire.Write(c.header).ok) << c.header;
        EXPECT_THAT(wire.unit.ProtocolErrors(), ElementsAre(HasSubstr(c.complaint))) << c.header;
        EXPECT_THAT(wire.unit.Exchanges(), IsEmpty()) << c.header;
        EXPECT_EQ(wire.Ask(kReadStatus, {}, 16), kStatusRead) << c.header; // and is ready for a good one
    }
}

TEST(CommandFrame, RefusesTransfersOutOfTurn) {
    Wire wire;
    wire.Write("0000ABCD 0000000D 00000004 00000000 01005800");
    EXPECT_FALSE(wire.Write("112233").ok);
    EXPECT_FALSE(wire.Write("1122334455").ok);
    EXPECT_EQ(wire.Read(12).error, kErrorSemaphoreTimeout);
    EXPECT_TRUE(wire.Write("11223344").ok);
    EXPECT_FALSE(wire.Write(kInitialise).ok);
    EXPECT_FALSE(wire.Read(16).ok);
    EXPECT_FALSE(wire.Read(11).ok);
    EXPECT_TRUE(wire.Read(12).ok);
    EXPECT_THAT(wire.unit.ProtocolErrors(),
                ElementsAre("MicroPutMemBlock: chunk of 3 bytes where 4 were due",
                            "MicroPutMemBlock: chunk of 5 bytes where 4 were due",
                            "MicroPutMemBlock: read before all out data had come",
                            "write of 20 bytes while MicroPutMemBlock still has output pending",
                            "MicroPutMemBlock: read of 16 bytes where 12 were due",
                            "MicroPutMemBlock: read of 11 bytes where 12 were due"));
    EXPECT_EQ(wire.unit.PeekMicro('X', 0x0103), 0x44);
}

TEST(CommandFrame, DataMovesInChunksOf65472Bytes) {
    Wire wire;
    // 65475 bytes to DSP A 'X' 0, and back: 65472 and 3.
    ASSERT_TRUE(wire.Write("0000ABCD 0000000E 0000FFC3 00000000 00000000 00580000").ok);
    EXPECT_FALSE(wire.Write(Repeat("11", 65475)).ok);
    EXPECT_TRUE(wire.Write(Repeat("11", 65472)).ok);
    EXPECT_TRUE(wire.Write("ABCDEF").ok);
    EXPECT_TRUE(wire.Read(12).ok);
    EXPECT_EQ(wire.unit.PeekDsp(0, 'X', 21823), 0x111111U);
    EXPECT_EQ(wire.unit.PeekDsp(0, 'X', 21824), 0xABCDEFU);

    ASSERT_TRUE(wire.Write("0000ABCD 0000000C 00000000 0000FFC3 00000000 00580000").ok);
    EXPECT_TRUE(wire.Read(12).ok);
    EXPECT_EQ(wire.Read(65472).bytesReturned, 65472U);
    EXPECT_TRUE(wire.Read(3).ok);
    EXPECT_EQ(ToHex(wire.got), "ABCDEF");
    EXPECT_EQ(wire.Drain().error, kErrorSemaphoreTimeout); // no empty chunk behind

    // Exactly one chunk needs no second one.
    ASSERT_TRUE(wire.Write("0000ABCD 0000000E 0000FFC0 00000000 00000000 00590000").ok);
    EXPECT_TRUE(wire.Write(Repeat("22", 65472)).ok);
    EXPECT_TRUE(wire.Read(12).ok);
}

TEST(CommandFrame, ARefusedCommandTakesItsOutDataAndSendsNoInData) {
    Wire wire;
    EXPECT_EQ(wire.Ask("0000ABCD 00000016 00000003 00000008 63000000", "ABCDEF"),
              "0000B00B 00000016 01200000"); // general command 99 does not exist
    EXPECT_EQ(wire.Drain().error, kErrorSemaphoreTimeout);
    EXPECT_EQ(wire.Ask("0000ABCD 0000000B 00000000 00000002 79005800", {}, 12, 2),
              "0000600D 0000000B 00000000 | ABCD"); // the command buffer kept the first two bytes
    EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
}

TEST(CommandFrame, ADrainTakesWhatIsPending) {
    Wire wire;
    wire.Write("0000ABCD 0000000B 00000000 00000002 80005800");
    EXPECT_EQ(wire.Drain().bytesReturned, 12U);
    EXPECT_EQ(wire.Drain().bytesReturned, 2U);
    EXPECT_EQ(wire.Drain().error, kErrorSemaphoreTimeout);
    EXPECT_THAT(wire.unit.ProtocolErrors(), IsEmpty());
}

TEST(CommandFrame, ExchangesAreRecordedWithTheirTime) {
    Wire wire;
    wire.now = 4711;
    wire.Ask("0000ABCD 0000000D 00000002 00000000 01005800", "BEEF");
    const auto exchanges = wire.unit.Exchanges();
    ASSERT_EQ(exchanges.size(), 1U);
    EXPECT_EQ(exchanges[0].command, 13U);
    EXPECT_EQ(ToHex(exchanges[0].parameters), "01005800");
    EXPECT_EQ(ToHex(exchanges[0].outData), "BEEF");
    EXPECT_FALSE(exchanges[0].refused);
    EXPECT_EQ(exchanges[0].tick, 4711U);
    wire.unit.ClearLogs();
    EXPECT_THAT(wire.unit.Exchanges(), IsEmpty());
    EXPECT_THAT(wire.unit.Requests(), IsEmpty());
}

} // namespace
} // namespace kalvio::simulator
