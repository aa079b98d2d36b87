// The generator document: sources, limits, output, and writes from another thread.

#include "platform/Thread.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace kalvio;
using kalvio::test::TestHost;

constexpr double kVolt = 27516.337208519708;
constexpr std::uint32_t kPatience = 10000;

CPhyValueMessenger Write(CGeneratorSettings& generator, int ctrlID, double value, int unit = kUnitStorage) {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = value;
    messenger.unit = unit;
    generator.OnMessenger(&messenger);
    return messenger;
}

TEST(GeneratorSettings, SwitchesDecideWhatChannelBDoes) {
    TestHost host;
    Write(host.generator, kCtrlGeneratorFrequencyB, 5e6);
    Write(host.generator, kCtrlGeneratorAmplitudeB, 3.0 * kVolt);
    EXPECT_TRUE(host.generator.OLESetIntValue(1, kCtrlGeneratorOnA));
    GeneratorState state = host.output.States().back();
    EXPECT_EQ(state.frequency[1], 1e6); // B follows A
    EXPECT_EQ(state.amplitude[1], kVolt);
    EXPECT_TRUE(state.on[1]);
    EXPECT_TRUE(host.generator.OLESetIntValue(1, kCtrlGeneratorIndependent));
    state = host.output.States().back();
    EXPECT_EQ(state.frequency[1], 5e6);
    EXPECT_EQ(state.amplitude[1], 3.0 * kVolt);
    EXPECT_TRUE(state.on[0]);
    EXPECT_FALSE(state.on[1]);
    const std::size_t sent = host.output.States().size();
    EXPECT_FALSE(host.generator.OLESetIntValue(2, kCtrlGeneratorOnB));
    EXPECT_FALSE(host.generator.OLESetIntValue(1, 4301));
    EXPECT_EQ(host.output.States().size(), sent);
    host.generator.SetSwitch(kCtrlGeneratorOnB, 1);
    EXPECT_EQ(host.output.States().size(), sent);
    host.generator.UpdateHardware(kCtrlGeneratorOnB);
    EXPECT_TRUE(host.output.States().back().on[1]);
}

TEST(GeneratorSettings, LimitsAndUnitsFollowTheSetting) {
    TestHost host;
    const FieldDetails* frequency =
        host.generator.GetDefaultFieldDetails(kCtrlGeneratorFrequencyA, kUnitKilohertz);
    EXPECT_DOUBLE_EQ(frequency->minimum, 0.002);
    EXPECT_DOUBLE_EQ(frequency->maximum, 80.0);
    host.generator.SetLimits(kCtrlGeneratorAmplitudeA, kVolt, 2.0 * kVolt);
    host.generator.SetLimits(kCtrlGeneratorAmplitudeA, 3.0, 2.0);
    const FieldDetails* amplitude = host.generator.GetDefaultFieldDetails(kCtrlGeneratorAmplitudeA, kUnitDbv);
    EXPECT_NEAR(amplitude->minimum, 0.0, 1e-9);
    EXPECT_NEAR(amplitude->maximum, 6.0205999132796239, 1e-9);
    EXPECT_TRUE(Write(host.generator, kCtrlGeneratorAmplitudeA, 0.5, kUnitVolt).refused);
    host.generator.SetUnit(kCtrlGeneratorAmplitudeA, kUnitMillivolt);
    host.generator.SetUnit(kCtrlGeneratorAmplitudeA, kUnitUi); // not a unit of it
    EXPECT_EQ(host.generator.GetUnit(kCtrlGeneratorAmplitudeA), kUnitMillivolt);
    EXPECT_TRUE(host.generator.OLESetPhyValue(1500.0, kCtrlGeneratorAmplitudeA));
    EXPECT_NEAR(host.generator.GetSource(kCtrlGeneratorAmplitudeA), 1.5 * kVolt, 1e-6);
    EXPECT_FALSE(host.generator.OLESetPhyValue(2500.0, kCtrlGeneratorAmplitudeA));
    EXPECT_EQ(host.user.Texts().back(),
              "Generator amplitude, channel A is out of range.\nThe valid range is 1000 mV to 2000 mV.");
}

TEST(GeneratorSettings, AFailedOutputIsReportedAndTheValueKept) {
    TestHost host;
    host.output.status = 0x4024;
    EXPECT_FALSE(Write(host.generator, kCtrlGeneratorFrequencyA, 5e6).refused);
    EXPECT_EQ(host.generator.LastStatus(), 0x4024);
    EXPECT_EQ(host.generator.GetSource(kCtrlGeneratorFrequencyA), 5e6);
    host.output.status = 0;
    host.generator.UpdateHardware(kCtrlGeneratorFrequencyA);
    EXPECT_EQ(host.generator.LastStatus(), 0);
}

// A regulation writes from its thread while the user interface writes too: the output sees every write, the
// last one it saw is what the document holds, and views hear of the other thread's writes only when the
// user-interface thread pumps.
TEST(GeneratorSettings, WritesFromTwoThreads) {
    TestHost host;
    constexpr int kWrites = 200;
    const auto worker = Thread::Start([&host] {
        for (int i = 0; i < kWrites; ++i) {
            Write(host.generator, kCtrlGeneratorFrequencyA, 2000.0 + i);
        }
    });
    for (int i = 0; i < kWrites; ++i) {
        Write(host.generator, kCtrlGeneratorAmplitudeA, 100.0 + i);
    }
    ASSERT_TRUE(worker->WaitForEnd(kPatience));
    const auto states = host.output.States();
    ASSERT_EQ(states.size(), 2U * kWrites);
    for (std::size_t i = 1; i < states.size(); ++i) {
        const bool frequencyMoved = states[i].frequency[0] != states[i - 1].frequency[0];
        const bool amplitudeMoved = states[i].amplitude[0] != states[i - 1].amplitude[0];
        ASSERT_NE(frequencyMoved, amplitudeMoved) << i;
    }
    EXPECT_EQ(states.back().frequency[0], host.generator.GetSource(kCtrlGeneratorFrequencyA));
    EXPECT_EQ(states.back().amplitude[0], host.generator.GetSource(kCtrlGeneratorAmplitudeA));
    ASSERT_EQ(host.hints.size(), static_cast<std::size_t>(kWrites));
    host.application.DoMessageLoop();
    ASSERT_EQ(host.hints.size(), static_cast<std::size_t>(kWrites) + 1);
    EXPECT_EQ(host.hints.back().hint, kCtrlGeneratorFrequencyA);
}

} // namespace
