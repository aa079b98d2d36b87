// Records that are computed from tables and formulas.

#include "hardware/generator/GeneratorRecord.h"
#include "hardware/measurement/RateCoefficients.h"
#include "platform/Text.h"
#include "support/ScriptedDriver.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

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

TEST(RateCoefficients, HaveTheirWords) {
    struct Case {
        double analogue;
        bool is192k;
        double digital;
        const char* bytes; // empty: none
    };
    const Case cases[] = {
        {48000.0, false, -1.0, "40012E000714FFFB48"},
        {96000.0, true, -1.0, "40005B000311FFFDA4"},
        {192000.0, false, 32000.0, "40004B0001C5FFFED27FF5C302800000029F000A3D"},
        {48000.0, true, 44100.9, "4000B5000622FFFB487FF89201D0660001E700076E"},
        {48000.0, false, 48000.0, "40012E000714FFFB487FF92C01AAAB0001BF0006D4"},
        {48000.0, false, 64000.0, "40012E000714FFFB487FFAE101400000014F00051F"},
        {96000.0, false, 88200.0, "40009700038AFFFDA47FFC4900E8330000F30003B7"},
        {96000.0, false, 96000.0, "40009700038AFFFDA47FFC9600D5550000DF00036A"},
        {96000.0, false, 176400.0, "40009700038AFFFDA47FFE2400741A0000790001DC"},
        {96000.0, false, 192000.0, "40009700038AFFFDA47FFE4B006AAB00006F0001B5"},
        {96000.0, false, 50000.0, ""},
        {96000.0, false, 0.0, ""},
    };
    for (const Case& c : cases) {
        const auto block = ComputeRateCoefficients(c.analogue, c.is192k, c.digital);
        const auto hex = block ? ToHex(std::span(block->bytes).first(block->length)) : "";
        EXPECT_EQ(hex, c.bytes) << c.analogue << " " << c.digital;
    }
}

} // namespace
} // namespace kalvio::test
