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

TEST(GeneratorSettings, SourceWritesAreCheckedStoredAndSent) {
    struct Row {
        int ctrlID;
        double value;
        int unit;
        bool taken;
        double storage;
    };
    const Row rows[] = {
        {kCtrlGeneratorFrequencyA, 2.0, kUnitHertz, true, 2000.0},
        {kCtrlGeneratorFrequencyA, 80.0, kUnitKilohertz, true, 80e6},
        {kCtrlGeneratorFrequencyA, 1999.0, kUnitStorage, false, 1e6},
        {kCtrlGeneratorFrequencyB, 80001.0, kUnitHertz, false, 1e6},
        {kCtrlGeneratorAmplitudeA, 20.0, kUnitVolt, true, 20.0 * kVolt},
        {kCtrlGeneratorAmplitudeA, 28.239087409443188, kUnitDbu, true,
         20.0 * kVolt}, // 20 V, give or take rounding
        {kCtrlGeneratorAmplitudeA, 20.1, kUnitNone, false, kVolt},
        {kCtrlGeneratorAmplitudeB, -0.1, kUnitVolt, false, kVolt},
        {kCtrlDcOffset, -10.0, kUnitVolt, true, -10.0 * kVolt},
        {kCtrlDcOffset, std::nan(""), kUnitStorage, false, 0.0},
        {kCtrlJitterFrequency, 200.0, kUnitKilohertz, true, 200e6},
        {kCtrlJitterAmplitude, 10.0, kUnitUi, true, 10e6},
        {kCtrlJitterAmplitude, 10.1, kUnitUi, false, 0.0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.value << " to " << row.ctrlID);
        TestHost host;
        const CPhyValueMessenger messenger = Write(host.generator, row.ctrlID, row.value, row.unit);
        EXPECT_EQ(messenger.refused, !row.taken);
        EXPECT_EQ(messenger.changed, row.taken);
        EXPECT_NEAR(host.generator.GetSource(row.ctrlID), row.storage, 1e-6);
        EXPECT_EQ(host.output.States().size(), row.taken ? 1U : 0U);
        ASSERT_EQ(host.hints.size(), row.taken ? 1U : 0U);
        if (row.taken) {
            EXPECT_EQ(host.hints[0].hint, row.ctrlID);
            EXPECT_EQ(host.hints[0].flag, 1);
        }
    }
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

TEST(GeneratorSettings, ReadsGiveTheReferencesOfTheSource) {
    TestHost host;
    SReferences references{kUnitVolt, 2.0 * kVolt, 50.0, 27516.0};
    host.generator.SetReferences(references);
    CPhyValueMessenger get;
    get.ctrlID = kCtrlGeneratorAmplitudeA;
    get.get = true;
    get.unit = kUnitPercent;
    EXPECT_TRUE(host.generator.OnMessenger(&get));
    EXPECT_NEAR(get.value, 50.0, 1e-9);
    EXPECT_TRUE(get.hasReferences);
    EXPECT_EQ(get.references, references);
    get.ctrlID = kResultSyncFrameRate;
    EXPECT_TRUE(host.generator.OnMessenger(&get));
    EXPECT_TRUE(Write(host.generator, kResultSyncFrameRate, 1.0).refused);
    get.ctrlID = 4311;
    EXPECT_FALSE(host.generator.OnMessenger(&get));
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
