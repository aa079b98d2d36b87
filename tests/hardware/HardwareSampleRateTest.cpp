#include "hardware/RateCoefficients.h"
#include "platform/Registry.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gmock/gmock.h>

namespace kalvio::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kPutMem = 7;
constexpr std::uint32_t kPutBit = 8;
constexpr std::uint32_t kPutDspBlock = 14;

struct RateRig {
    explicit RateRig(std::uint8_t linkFit = 0x11) : rig(MakeOptions(linkFit)) { // AC coupled, no 192 kHz
        EXPECT_EQ(rig.BringUp(), 1);
        rig.host.clock.Advance(5000);
        rig.host.hints.clear();
        Begin();
    }

    static simulator::UnitOptions MakeOptions(std::uint8_t linkFit) {
        simulator::UnitOptions options;
        options.linkFit = linkFit;
        return options;
    }

    void Begin() {
        rig.unit.ClearLogs();
        start = rig.host.clock.TickCount();
    }

    // What was written since Begin: "+MS REGISTER=VALUE", "+MS bit=VALUE", "+MS coefficients DSP".
    [[nodiscard]] std::vector<CString> Written() const {
        std::vector<CString> lines;
        for (const auto& e : rig.unit.Exchanges()) {
            const auto& p = e.parameters;
            CString what = "?";
            if (e.command == kPutMem && p[2] == '2') {
                what = Format("%c=%02X", p[1], p[3]);
            } else if (e.command == kPutBit && ToHex(p).substr(0, 10) == "00A0000853") {
                what = Format("bit=%d", p[5]);
            } else if (e.command == kPutDspBlock && ToHex(p).substr(0, 8) == "00000190" && p[5] == 'Y') {
                what = Format("coefficients %d", p[4]);
            }
            lines.push_back(Format("+%u ", e.tick - start) + what);
        }
        return lines;
    }

    UnitRig rig;
    std::uint32_t start = 0;
};

struct Rates : testing::Test, RateRig {};

TEST_F(Rates, ResettingTheConvertersTakesItsTime) {
    EXPECT_EQ(rig.hardware.SetAnalogueSampleRate(SampleRate::k48kHz, 1, 0), 0);
    EXPECT_THAT(Written(), ElementsAre("+0 w=00", "+0 bit=0", "+0 v=77", "+100 v=F7", "+100 s=40",
                                       "+100 s=C0", "+500 coefficients 0", "+500 coefficients 1"));
    EXPECT_EQ(rig.host.clock.TickCount() - start, 500U);
    ASSERT_EQ(rig.host.hints.size(), 1U);
    EXPECT_EQ(rig.host.hints[0].hint, 4300);
    EXPECT_EQ(rig.hardware.GetAnalogueSamplingFreq(), 48000.0);

    Begin(); // 400 ms after the converters were last set: the rest of their second is waited for
    EXPECT_EQ(rig.hardware.SetAnalogueSampleRate(SampleRate::k192kHz, 1, 0), 0);
    EXPECT_THAT(Written(), ElementsAre("+0 w=01", "+0 bit=0", "+0 v=77", "+100 v=F7", "+600 s=60",
                                       "+600 s=E0", "+700 coefficients 0", "+700 coefficients 1"));
    Begin();
    CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", "ConverterResetWaitTime", 50);
    EXPECT_EQ(rig.hardware.SetAnalogueSampleRate(SampleRate::k96kHz, 1, 0), 0);
    EXPECT_THAT(Written(), ElementsAre("+0 w=02", "+0 bit=1", "+0 v=77", "+100 v=F7", "+100 s=50",
                                       "+100 s=D0", "+300 coefficients 0", "+300 coefficients 1"));
}

TEST_F(Rates, WithoutAResetEachRegisterIsWrittenOnce) {
    EXPECT_EQ(rig.hardware.SetAnalogueSampleRate(SampleRate::k96kHz, 0, 0), 0); // the rate in force
    EXPECT_THAT(Written(), IsEmpty());
    EXPECT_EQ(rig.hardware.SetAnalogueSampleRate(SampleRate::k96kHz, 0, 1), 0);
    EXPECT_THAT(Written(),
                ElementsAre("+0 w=02", "+0 bit=1", "+0 s=D0", "+0 coefficients 0", "+0 coefficients 1"));
    RateRig coupled(0x13);
    EXPECT_EQ(coupled.rig.hardware.SetAnalogueSampleRate(SampleRate::k192kHz, 0, 0), 0);
    EXPECT_EQ(coupled.Written().at(2), "+0 s=A0");
}

TEST_F(Rates, AFailedRegisterWriteEndsTheChange) {
    const char* expected[] = {"w=00", "v=77", "v=F7", "s=40", "s=C0"};
    for (std::uint32_t k = 1; k <= 5; ++k) {
        Begin();
        rig.host.hints.clear();
        rig.unit.AddFault({simulator::FaultKind::Refuse, k, 1, 0x0123, kPutMem});
        EXPECT_EQ(rig.hardware.SetAnalogueSampleRate(SampleRate::k48kHz, 1, 1), 0x0123) << k;
        EXPECT_THAT(Written().back(), testing::EndsWith(expected[k - 1]));
        EXPECT_THAT(rig.host.hints, IsEmpty());
        rig.unit.ClearFaults();
    }
    EXPECT_EQ(rig.hardware.GetAnalogueSampleRate(), SampleRate::k48kHz);
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

TEST_F(Rates, CoefficientsGoToBothDspsUntilOneFails) {
    rig.host.generator.digitalSampleRate = 50000.0;
    EXPECT_EQ(rig.hardware.WriteCoefficientsOnSampleRateChange(), 0);
    EXPECT_THAT(Written(), IsEmpty());
    rig.host.generator.digitalSampleRate = 48000.0;
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 1, 0x0123, kPutDspBlock});
    EXPECT_EQ(rig.hardware.WriteCoefficientsOnSampleRateChange(), 0x0123);
    EXPECT_THAT(Written(), ElementsAre("+0 coefficients 0"));
    EXPECT_EQ(ToHex(rig.unit.Exchanges().at(0).outData), "40009700038AFFFDA47FF92C01AAAB0001BF0006D4");
}

TEST_F(Rates, TheRateInForceAndTheBufferLengthFollowTheWindow) {
    struct Case {
        int window;
        double input;
        double output;
        int points;
        double rate;
        std::uint32_t length;
        bool reset;
    };
    const Case cases[] = {
        {1, 48000.0, 192000.0, 4096, 48000.0, 4096, false},
        {12, 48000.0, 48000.0, 4096, 48000.0, 4096, false},
        {12, 96000.0, 48000.0, 4096, 48000.0, 8192, false},
        {13, 96000.0, 44100.0, 4096, 44100.0, 4096 * 4, false},
        {13, -1.0, 44100.0, 4096, -1.0, 4096, false},
        {12, 192000.0, 48000.0, 65536, 48000.0, 262144, false},
        {12, 192000.0, 44100.0, 65536, 44100.0, 65536, true},
        {12, 1.0, 1e300, 16, 1.0, 16, true},
    };
    auto& analyser = rig.host.analyser;
    analyser.inputType = 1;
    for (const Case& c : cases) {
        analyser.windowFunction = c.window;
        analyser.inputSampleRate = c.input;
        analyser.outputSampleRate = c.output;
        rig.host.fftParameters.fftLength = c.points;
        rig.host.hints.clear();
        EXPECT_EQ(rig.hardware.GetSampleRate(), c.rate);
        EXPECT_EQ(rig.hardware.GetSampleBufferLength(0), c.length);
        EXPECT_EQ(analyser.windowFunction, c.reset ? 0 : c.window);
        EXPECT_EQ(rig.host.hints.size(), c.reset ? 1U : 0U);
    }
    EXPECT_EQ(rig.host.hints.at(0).hint, 3305);
    EXPECT_THAT(rig.host.user.Texts(), IsEmpty());
    analyser.windowFunction = 12;
    static_cast<void>(rig.hardware.GetSampleBufferLength(1));
    EXPECT_THAT(
        rig.host.user.Texts(),
        ElementsAre("The Kalvio cannot read enough sample data to perform frequency correction for the "
                    "current input and output sample rates.\n\nThe Window function has been reset to "
                    "Rectangular; please reduce the number of FFT points before resetting the Window "
                    "function."));
    analyser.inputType = 0;
    EXPECT_EQ(rig.hardware.GetSampleRate(), 96000.0);
}

} // namespace
} // namespace kalvio::test
