// From generator records to result words.

#include "simulator/Wire.h"
#include "simulator/peripherals/KedaAdapter.h"

#include <gmock/gmock.h>

#include <cmath>

namespace kalvio::simulator {
namespace {

// Channel A 1000 Hz, 2 V, +0.5 V DC, on; channel B 1000 Hz, 1 V, off; jitter 500 Hz of 0.25 UI.
constexpr const char* kChannelA = "000F4240 001E8480 0007A120 0007A120 01000000 00000000";
constexpr const char* kChannelB = "000F4240 000F4240 00000000 0003D090 00000000 00000000";
constexpr const char* kChannelBOn = "000F4240 000F4240 00000000 0003D090 01000000 00000000";

void Generate(Wire& wire, const std::string& channels) {
    EXPECT_EQ(wire.Ask("0000ABCD 00000016 00000038 00000000 0D000000", channels + "00 00 00 00 00 00 00 00"),
              "0000600D 00000016 00000000");
}

// The result block of a DSP, through the wire, as words.
std::vector<std::uint32_t> Words(Wire& wire, const char* dsp, const char* address = "00000100") {
    wire.Ask(std::string("0000ABCD 0000000C 00000000 0000002D ") + address + dsp + "580000", {}, 12, 45);
    std::vector<std::uint32_t> words;
    for (std::size_t i = 0; i < wire.got.size(); i += 3) {
        words.push_back((wire.got[i] * 256U + wire.got[i + 1]) * 256U + wire.got[i + 2]);
    }
    return words;
}

double Split(const std::vector<std::uint32_t>& words, std::size_t index) {
    return words[index] + words[index + 1] / 16777216.0;
}

bool TakeHf2(Wire& wire) { // DSP A
    const bool ready = wire.Ask("0000ABCD 00000011 00000000 00000000 00B02208 00015801", {}, 16)[27] == '0' &&
                       wire.got[12] == 1;
    wire.Ask("0000ABCD 00000017 00000000 00000000 003C0000");
    return ready;
}

TEST(Measurement, RecordsIn) {
    Wire wire;
    Generate(wire, std::string(kChannelA) + kChannelB);
    const Stimulus a = wire.unit.GetStimulus(0);
    EXPECT_TRUE(a.on);
    EXPECT_DOUBLE_EQ(a.frequencyHz, 1000.0);
    EXPECT_DOUBLE_EQ(a.amplitudeVolts, 2.0);
    EXPECT_DOUBLE_EQ(a.dcOffsetVolts, 0.5);
    EXPECT_DOUBLE_EQ(a.jitterFrequencyHz, 500.0);
    EXPECT_DOUBLE_EQ(a.jitterAmplitudeUi, 0.25);
    const Stimulus b = wire.unit.GetStimulus(1);
    EXPECT_FALSE(b.on);
    EXPECT_DOUBLE_EQ(b.amplitudeVolts, 1.0);
    Generate(wire, "000F4240 00000000 FFF85EE0 00000000 01000000 00000000" + std::string(kChannelB));
    EXPECT_DOUBLE_EQ(wire.unit.GetStimulus(0).dcOffsetVolts, -0.5);
}

TEST(Measurement, WordsOut) {
    Wire wire;
    Generate(wire, std::string(kChannelA) + kChannelB);
    wire.now += 20;
    const auto a = Words(wire, "00");
    const std::vector<std::uint32_t> expected{2, 0, 1000, 0, 0, 2, 0, 2, 0, 0, 0, 0, 0, 500 * 64, 0x000101};
    EXPECT_EQ(a, expected);
    EXPECT_EQ(Split(Words(wire, "01"), 0), 0.0); // B is off: valid, and nothing there
    EXPECT_EQ(Words(wire, "01")[14], 0x000101U);
    const auto digital = Words(wire, "00", "00000120");
    EXPECT_EQ(Split(digital, 0), 5.0);
    EXPECT_EQ(Split(digital, 2), 0.25);
    EXPECT_EQ(Split(digital, 5), 48000.0);
    EXPECT_EQ(digital[7], 0U);
    // Peaks: 0.5 V DC and 2 V RMS around it, in microvolts; B was not asked for.
    EXPECT_EQ(wire.Ask("0000ABCD 00000016 00000002 00000012 05000000", "0100", 12, 18),
              "0000600D 00000016 00000000 | 0032C9AB FFDC7895 00000000 00000000 0000");
}

TEST(Measurement, BlocksComeWithTheCadenceAndRaiseHf2) {
    Wire wire;
    EXPECT_FALSE(TakeHf2(wire));
    wire.now += 19;
    EXPECT_FALSE(TakeHf2(wire));
    wire.now += 1;
    EXPECT_TRUE(TakeHf2(wire));
    EXPECT_FALSE(TakeHf2(wire));
    wire.now += 65; // three more blocks, of which the last stands
    EXPECT_TRUE(TakeHf2(wire));
    EXPECT_EQ(Words(wire, "00")[14], 0x000401U);
    wire.unit.SetDeviceUnderTest({.silent = true});
    wire.now += 1000;
    EXPECT_FALSE(TakeHf2(wire));
    EXPECT_EQ(Words(wire, "00")[14], 0x000401U);
    wire.unit.SetDeviceUnderTest({});
    wire.unit.SetResultCadence(5);
    wire.now += 5;
    EXPECT_TRUE(TakeHf2(wire));
    for (const std::uint32_t tick : {0x7FFFFFFFU, 0xFFFFFFFEU, 3U}) { // the tick wraps
        wire.now = tick;
        EXPECT_TRUE(TakeHf2(wire)) << tick;
    }
    wire.now = 2; // a caller who was overtaken after reading the clock
    EXPECT_FALSE(TakeHf2(wire));
}

TEST(Measurement, TheDeviceDecidesWhatComesBack) {
    const auto doubled = [](const Stimulus& stimulus, int channel) {
        return stimulus.amplitudeVolts * (channel == 1 ? 4.0 : 2.0);
    };
    struct Case {
        const char* what;
        DeviceUnderTest device;
        double a;
        double b;
        double phaseDegrees;
        double tolerance;
    };
    const Case cases[] = {
        {"gain and offset", {.gain = 3.0, .offsetVolts = 0.25, .channelBGain = 2.0}, 6.25, 6.25, 0.0, 1e-6},
        {"at resonance", {.resonanceHz = 1000.0, .resonanceQ = 5.0}, 2.0, 1.0, 0.0, 1e-6},
        {"off resonance", {.resonanceHz = 500.0, .resonanceQ = 1.0}, 1.1094, 0.5547, 0.0, 1e-4},
        {"saturated", {.saturationVolts = 1.0}, std::tanh(2.0), std::tanh(1.0), 0.0, 1e-6},
        {"custom", {.custom = doubled}, 4.0, 4.0, 0.0, 1e-6},
    };
    for (const Case& c : cases) {
        Wire wire;
        wire.unit.SetDeviceUnderTest(c.device);
        Generate(wire, std::string(kChannelA) + kChannelBOn);
        wire.now += 20;
        EXPECT_NEAR(Split(Words(wire, "00"), 0), c.a, c.tolerance) << c.what;
        EXPECT_NEAR(Split(Words(wire, "01"), 0), c.b, c.tolerance) << c.what;
        EXPECT_EQ(Words(wire, "00")[4], 0U) << c.what; // both channels are turned alike
    }
}

TEST(Measurement, AnAdapterStandsInTheWay) {
    struct Case {
        const char* what;
        std::vector<std::string> frames;
        double a;
        double b;
    };
    const std::string through = "550801C1 0685AA";
    const Case cases[] = {
        {"bypassed", {"550804C3 00000000 86AA", "550802C6 05057BAA"}, 2.0, 1.0},
        {"through, as after power-up", {through}, 2.0, 1.0},
        {"generators swapped", {through, "550804C3 00030001 82AA"}, 1.0, 2.0},
        {"analysers swapped", {through, "550802C6 010084AA"}, 1.0, 2.0},
        {"nothing in slot 1", {through, "550804C3 00010000 85AA"}, 2.0, 0.0},
        {"A in slot 1", {through, "550804C3 00030000 83AA"}, 2.0, 2.0},
        {"generator path alone",
         {"550801C1 0487AA", "550804C3 00000000 86AA", "550802C6 070777AA"},
         0.0,
         0.0},
        {"analyser path alone", {"550801C1 0289AA", "550802C6 010282AA"}, 1.0, 0.0},
        {"wire 4 slot 2 of 2", {through, "550802C6 0D0474AA"}, 1.0, 2.0},
        {"wire 5 does not exist", {through, "550802C6 100075AA"}, 0.0, 2.0},
        {"slot 9 of 2 x 4 does not exist", {through, "550804C3 FF00FF00 88AA"}, 0.0, 0.0},
        {"slot 16 of 16",
         {through, "550803C4 3300084B AA", "550803C7 33000848 AA", "550804C3 80018000 85AA",
          "550802C6 0F0076AA"},
         1.0,
         2.0},
        {"wire 2 slot 8 of 8",
         {through, "550803C4 3200084C AA", "550803C7 32000849 AA", "550804C3 80000000 06AA",
          "550802C6 0F0E68AA"},
         2.0,
         0.0},
        {"wire 4 slot 4 of 4",
         {through, "550803C4 3100084D AA", "550803C7 3100084A AA", "550804C3 80018000 85AA",
          "550802C6 0F0076AA"},
         1.0,
         2.0},
        {"in standby", {through, "550804C3 00000000 86AA", "550801FF 004DA5"}, 2.0, 1.0},
    };
    for (const Case& c : cases) {
        Wire wire;
        wire.unit.Plug<KedaAdapter>(std::uint8_t{8});
        Generate(wire, std::string(kChannelA) + kChannelBOn);
        for (const std::string& frame : c.frames) {
            wire.Bus(frame, 6);
        }
        wire.now += 20;
        EXPECT_EQ(Split(Words(wire, "00"), 0), c.a) << c.what;
        EXPECT_EQ(Split(Words(wire, "01"), 0), c.b) << c.what;
    }
    Wire wire; // odd slots are the device's channel B, and an adapter taken away leaves the way as it was
    wire.unit.SetDeviceUnderTest({.channelBGain = 3.0});
    const auto adapter = wire.unit.Plug<KedaAdapter>(std::uint8_t{8});
    Generate(wire, std::string(kChannelA) + kChannelBOn);
    wire.Play({{through, "550800C1 8CAA"}, {"550802C6 030280AA", "550800C6 87AA"}});
    wire.now += 20;
    EXPECT_EQ(Split(Words(wire, "00"), 0), 0.0); // slot 3 of a wire with 2
    wire.Play({{"550802C6 05047CAA", "550800C6 87AA"}});
    wire.now += 20;
    EXPECT_EQ(Split(Words(wire, "00"), 0), 3.0);
    EXPECT_EQ(Split(Words(wire, "01"), 0), 2.0);
    wire.unit.Detach(*adapter);
    wire.now += 20;
    EXPECT_EQ(Split(Words(wire, "00"), 0), 2.0);
    EXPECT_EQ(wire.Bus("55080000 4DAA", 9), "status FFFD");
}

TEST(Measurement, PhaseAndHarmonicsFollowTheDevice) {
    Wire wire;
    wire.unit.SetDeviceUnderTest({.resonanceHz = 500.0, .resonanceQ = 2.0 / 3.0});
    // A alone at twice the resonance: Q (2 - 1/2) = 1, so A lags by 45 degrees and B leads A by as much.
    Generate(wire, std::string(kChannelA) + kChannelB);
    wire.now += 20;
    EXPECT_EQ(Words(wire, "00")[4], 45U * 32768U);
    Generate(wire, std::string(kChannelB) + kChannelA);
    wire.now += 20;
    EXPECT_EQ(Words(wire, "00")[4], 0x1000000U - 45U * 32768U);

    wire.unit.SetDeviceUnderTest({.saturationVolts = 1.0});
    Generate(wire, std::string(kChannelA) + kChannelB);
    wire.now += 20;
    const auto words = Words(wire, "00");
    EXPECT_GT(Split(words, 11), 0.2);
    EXPECT_EQ(Split(words, 9), 0.0);
    EXPECT_NEAR(std::hypot(Split(words, 7), Split(words, 11)), Split(words, 0), 1e-6);
}

TEST(Measurement, TimeConstantBendsEveryChange) {
    Wire wire;
    wire.unit.SetDeviceUnderTest({.timeConstantMs = 100.0});
    Generate(wire, std::string(kChannelA) + kChannelB);
    wire.now += 100;
    EXPECT_NEAR(Split(Words(wire, "00"), 0), 2.0 * (1.0 - std::exp(-1.0)), 1e-6);
    Generate(wire, std::string(kChannelB) + kChannelB); // off again, from where it was
    wire.now += 100;
    EXPECT_NEAR(Split(Words(wire, "00"), 0), 2.0 * (1.0 - std::exp(-1.0)) * std::exp(-1.0), 1e-6);
    wire.now += 3000;
    EXPECT_NEAR(Split(Words(wire, "00"), 0), 0.0, 1e-6);
}

TEST(Measurement, NoiseIsGaussianAndRepeatsWithItsSeed) {
    const auto readings = [](std::uint32_t seed) {
        Wire wire;
        wire.unit.SetDeviceUnderTest({.noiseVolts = 0.01, .seed = seed});
        Generate(wire, std::string(kChannelA) + kChannelB);
        std::vector<double> values;
        for (int i = 0; i < 500; ++i) {
            wire.now += 20;
            values.push_back(Split(Words(wire, "00"), 0) - 2.0);
        }
        return values;
    };
    const auto values = readings(7);
    EXPECT_EQ(values, readings(7));
    EXPECT_NE(values, readings(8));
    double sum = 0.0;
    double squares = 0.0;
    for (const double value : values) {
        sum += value;
        squares += value * value;
    }
    EXPECT_NEAR(sum / 500.0, 0.0, 0.0015);
    EXPECT_NEAR(std::sqrt(squares / 500.0), 0.01, 0.001);
}

} // namespace
} // namespace kalvio::simulator
