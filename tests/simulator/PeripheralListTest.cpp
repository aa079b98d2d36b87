// Peripherals from text, and the broken ones by name.

#include "simulator/peripherals/PeripheralList.h"
#include "simulator/Wire.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "simulator/peripherals/Misbehaving.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST(PeripheralList, MakesWhatTheTextNames) {
    struct Case {
        const char* text;
        std::size_t count;
        std::vector<BusLine> lines;
    };
    const Case cases[] = {
        {"none", 0, {{"55010000 54AA", "status FFFD"}}},
        {kDefaultPeripherals,
         3,
         {{"55010000 54AA", "55010300 1121011E AA"},
          {"55020000 53AA", "55020300 1121011D AA"},
          {"55080000 4DAA", "55080300 213001F8 AA"}}},
        {"switcher@0:hw=C:fw=P,switcher@63",
         2,
         {{"55000000 55AA", "55000300 11F2014E AA"}, {"553F0000 16AA", "553F0300 112101E0 AA"}}},
        {"loader@9:class=31:hw=A", 1, {{"55090000 4CAA", "55090300 31000117 AA"}}},
        {"loader@9:class=0", 1, {{"55090000 4CAA", "55090300 00000148 AA"}}},
        {"loader@9", 1, {{"55090000 4CAA", "55090300 22000126 AA"}}},
        {"keda@8:hw=P:rate=96000",
         1,
         {{"55080000 4DAA", "55080300 213F01E9 AA"}, {"550800CD 80AA", "550801CD 552AAA"}}},
        {"keda@8:device=44100", 1, {{"550800CD 80AA", "550801CD 235CAA"}}},
        {"keda@8:spi=1:i2c=2B", // phase alone
         1,
         {{"550801C9 0281AA", "550800C9 84AA"},
          {"550802CA 01552BAA", "550802CA 000081AA"},
          {"550802CA 810000AA", "550802CA 00552CAA"},
          {"550801C9 0182AA", "550800C9 84AA"},
          {"550803CB 56000128 AA", "550800CB 82AA"},
          {"550803CB 3400014A AA", "status FFFD"}}},
        {"switcher@3:fault=twin", 2, {{"55030000 52AA", "status FFFA"}}},
        {"keda@8:fault=other-address", 1, {{"55080000 4DAA", "status FFFC"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const PeripheralList list = ParsePeripherals(c.text);
        EXPECT_EQ(list.error, "");
        EXPECT_THAT(list.peripherals, SizeIs(c.count));
        Wire wire;
        for (const auto& peripheral : list.peripherals) {
            wire.unit.Attach(peripheral);
        }
        wire.Play(c.lines);
    }
}

TEST(PeripheralList, SaysWhatIsWrong) {
    struct Case {
        const char* text;
        const char* error;
    };
    const char* const kinds = "the kinds are switcher, loader and keda, as in switcher@3; or none at all";
    const Case cases[] = {
        {"", kinds},
        {"mixer@3", "peripheral 'mixer@3': the kinds are"},
        {"switcher@3,", kinds},
        {"none,switcher@3", kinds},
        {"Switcher@3", kinds},
        {"switcher", "the address is a number 0 to 63"},
        {"switcher@64", "the address is a number 0 to 63"},
        {"switcher@-1", "the address is a number 0 to 63"},
        {"switcher@3x", "the address is a number 0 to 63"},
        {"switcher@3,keda@3", "peripheral 'keda@3': the address is taken already"},
        {"switcher@3:hw=Q", "hw takes a letter A to P"},
        {"switcher@3:fw=", "fw takes a letter A to P"},
        {"switcher@3:rate=48000", "a switcher has no option 'rate'; it has hw fw fault "},
        {"keda@8:class=11", "a keda has no option 'class'; it has hw fw fault rate device spi i2c "},
        {"loader@9:class=111", "class takes two hex digits"},
        {"keda@8:rate=7999", "rate takes a frame rate of 8000 to 768000 Hz"},
        {"keda@8:rate=768001", "rate takes"},
        {"keda@8:device=x", "device takes"},
        {"keda@8:spi=4", "spi takes a mode 0 to 3"},
        {"keda@8:i2c=80", "i2c takes an address of two hex digits up to 7F"},
        {"keda@8:fault=shy", "fault takes twin or a fault (silent, other-address, wrong-checksum, "
                             "wrong-length, wrong-echo, slow, resets-itself, goes-to-standby)"},
    };
    for (const Case& c : cases) {
        const PeripheralList list = ParsePeripherals(c.text);
        EXPECT_THAT(list.error, HasSubstr(c.error)) << c.text;
        EXPECT_THAT(list.peripherals, IsEmpty()) << c.text;
    }
}

TEST(Misbehaving, EachInItsOwnWay) {
    struct Case {
        Misbehaviour kind;
        const char* answer;  // to the second of three closings of relay 0 to 2
        int closed;          // mask after the third
        const char* without; // data: to C1 from an adapter that is always so
    };
    const Case cases[] = {
        {Misbehaviour::Silent, "status FFFD", 0x05, "status FFFD"},
        {Misbehaviour::OtherAddress, "status FFFC", 0x07, "status FFFC"},
        {Misbehaviour::WrongChecksum, "status FFFA", 0x07, "status FFFA"},
        {Misbehaviour::WrongLength, "status FFFB", 0x07, "status FFFB"},
        {Misbehaviour::WrongEcho, "55030384 FC0000CF AA", 0x07, "5509003E 0EAA"},
        {Misbehaviour::Slow, "status FFFD", 0x07, "status FFFD"},
        {Misbehaviour::ResetsItself, "55030384 020000C9 AA", 0x06, "550900C1 8BAA"},
        {Misbehaviour::GoesToStandby, "status FFFD", 0x00, "status FFFD"},
    };
    for (const Case& c : cases) {
        Wire wire;
        const auto switcher = std::make_shared<IoSwitcher>(std::uint8_t{3});
        const auto broken = wire.unit.Plug<Misbehaving>(switcher, c.kind, Spell{2, 1});
        wire.unit.Attach(std::make_shared<Misbehaving>(ParsePeripherals("keda@9").peripherals[0], c.kind));
        SCOPED_TRACE(c.answer);
        wire.Play({{"55030184 00CDAA", "55030384 010000CA AA"}, {"55030184 01CCAA", c.answer}});
        wire.Bus("55030184 02CBAA", 9);
        EXPECT_EQ(switcher->Mask(0, 0), c.closed);
        EXPECT_EQ(broken->Shown(), 1U);
        EXPECT_EQ(wire.Bus("550901C1 0684AA", 6), c.without);
    }
    EXPECT_EQ(FindMisbehaviour("wrong-echo"), Misbehaviour::WrongEcho);
    Wire wire; // spells: for good, and with frames for others not counted
    const auto lasting = wire.unit.Plug<Misbehaving>(std::make_shared<IoSwitcher>(std::uint8_t{63}),
                                                     Misbehaviour::OtherAddress, Spell{3, 0});
    wire.Play({{"553F0000 16AA", "553F0300 112101E0 AA"},
               {"55050000 50AA", "status FFFD"},
               {"553F0000 16AA", "553F0300 112101E0 AA"},
               {"553F0000 16AA", "status FFFC"},
               {"553F0000 16AA", "status FFFC"}});
    EXPECT_EQ(lasting->Shown(), 2U);
}

} // namespace
} // namespace kalvio::simulator
