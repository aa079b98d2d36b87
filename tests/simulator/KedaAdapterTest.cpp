// The KEDA adapter beyond what docs/wire.md plays; its place in the way of the signals is in MeasurementTest.

#include "simulator/peripherals/KedaAdapter.h"
#include "simulator/Wire.h"

#include <gmock/gmock.h>

namespace kalvio::simulator {
namespace {

TEST(KedaAdapter, RefusesOtherLengthsAndForgetsWithAReset) {
    Wire wire;
    KedaAdapterOptions options;
    options.identity.hardware = 15;
    const auto adapter = wire.unit.Plug<KedaAdapter>(std::uint8_t{8}, options);
    for (const char* frame :
         {"550800C1 8CAA", "550802C1 00008AAA", "550803C3 00000087 AA", "550801C0 008CAA", "550801CD 007FAA",
          "550800CC 81AA", "550800CF 7EAA", "55080BCA 00010203 04050607 08090A41 AA", "550802CB 34004CAA",
          "55080184 00C8AA"}) {
        wire.Play({{frame, "status FFFD"}});
    }
    EXPECT_EQ(adapter->Faults().size(), 10U);
    EXPECT_EQ(adapter->Registers(), kKedaPowerUp);
    wire.Play({{"550802C5 FFFF88AA", "550800C5 88AA"}});
    EXPECT_EQ(adapter->Registers()[kKedaGenClocks + 1], 0xFF);
    wire.Play({{"550801FF 014CAA", "550803FF 213F01EA AA"},
               {"550800C0 8DAA", "550814C0 000000FF 00AA3000 08800300 01300008 80830621 B2AA"},
               {"550801FF 004DAA", "550803FF 213F00EB AA"},
               {"550800C0 8DAA", "status FFFD"}});
}

TEST(KedaAdapter, ClocksFollowTheirDirections) {
    struct Case {
        const char* what;
        const char* generator; // C5 frame
        const char* analyser;  // C8 frame
        double digitalRateHz;
        double deviceRateHz;
        const char* codes; // answer to CD
    };
    const char* const out = "550802C5 800006AA";
    const char* const in = "550802C8 808083AA";
    const Case cases[] = {
        {"out and back", out, in, 48000, 0, "550801CD 334CAA"},
        {"another rate", out, in, 96000, 0, "550801CD 552AAA"},
        {"the device has its own", out, in, 48000, 44100, "550801CD 235CAA"},
        {"both in, nobody drives", "550802C5 808086AA", in, 48000, 0, "550801CD 007FAA"},
        {"both in from the device", "550802C5 808086AA", in, 48000, 96000, "550801CD 552AAA"},
        {"in from the analyser's side", "550802C5 808086AA", "550802C8 800003AA", 48000, 0,
         "550801CD 334CAA"},
        {"serial before master", "550802C5 C68040AA", in, 48000, 96000, "550801CD 552AAA"},
        {"master in, 256", "550802C5 C400C2AA", in, 48000, 96000, "550801CD 552AAA"},
        {"master in, 512", "550802C5 C600C0AA", in, 48000, 96000, "550801CD 532CAA"},
        {"master in, 384", "550802C5 C500C1AA", in, 32000, 48000, "550801CD 314EAA"},
        {"master in, 128", "550802C5 C200C4AA", in, 48000, 44100, "550801CD 245BAA"},
        {"master in, a rate without a code", "550802C5 C000C6AA", in, 48000, 96000, "550801CD 502FAA"},
        {"master in, none", "550802C5 C400C2AA", in, 48000, 0, "550801CD 007FAA"},
        {"within a per cent", out, in, 32300, 0, "550801CD 116EAA"},
        {"not within", out, in, 50000, 0, "550801CD 007FAA"},
        {"fast", out, in, 176400, 192000, "550801CD 7609AA"},
        {"88.2 kHz", out, in, 88200, 0, "550801CD 443BAA"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Wire wire;
        const auto adapter = wire.unit.Plug<KedaAdapter>(std::uint8_t{8});
        adapter->SetClockSource({c.digitalRateHz, c.deviceRateHz});
        wire.Play(
            {{c.generator, "550800C5 88AA"}, {c.analyser, "550800C8 85AA"}, {"550800CD 80AA", c.codes}});
    }
}

TEST(KedaAdapter, TheControlPortReachesItsDevices) {
    Wire wire;
    const auto adapter = wire.unit.Plug<KedaAdapter>(std::uint8_t{8});
    wire.Play({{"550800CA 83AA", "550800CA 83AA"},
               {"550803CA 0F11223E AA", "550803CA 00000080 AA"}, // over the end
               {"550803CA 8F0000F1 AA", "550803CA 0011224D AA"},
               {"550801C9 0281AA", "550800C9 84AA"}, // the polarity does not match: one bit late
               {"550803CA 025AC361 AA", "550803CA 00000080 AA"},
               {"550801C9 047FAA", "550800C9 84AA"},       // nor does the phase
               {"550802CA 8200FFAA", "550802CA 000081AA"}, // a write of 0 to register 1
               {"550801C9 067DAA", "550800C9 84AA"},
               {"550804CA 80000000 FFAA", "550804CA 00220061 FCAA"},
               {"550803CB 3400014A AA", "status FFFD"},
               {"550801C9 077CAA", "550800C9 84AA"},
               {"550801CA 0082AA", "status FFFD"},
               {"550801CB 344DAA", "550800CB 82AA"},
               {"550805CB 340E0102 0335AA", "550800CB 82AA"},
               {"550803CB 350E013B AA", "status FFFD"}, // a read
               {"550803CB 320E0936 AA", "status FFFD"}, // nobody there
               {"550803CB 34100932 AA", "status FFFD"}, // no such register
               {"55080BCB 34010203 04050607 08090A0C AA", "550800CB 82AA"},
               {"55080CCB 34010203 04050607 08090A0B 00AA", "status FFFD"}});
    EXPECT_EQ(ToHex(adapter->I2cRegisters()), "03020304 05060708 090A0000 00000102");
    EXPECT_EQ(adapter->SpiRegisters()[15], 0x11);
}

} // namespace
} // namespace kalvio::simulator
