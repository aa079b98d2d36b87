// What the host and the unit do together, on a clock that moves only when told.

#include "reference_host/application/ReferenceHost.h"

#include "host/HostTexts.h"
#include "host/ResultIds.h"
#include "platform/Registry.h"
#include "preprocessor/SettlingWatcher.h"
#include "testing/ManualClock.h"
#include "testing/ScriptedUserInterface.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace kalvio::reference_host {
namespace {

class ReferenceHostTest : public testing::Test {
protected:
    void SetUp() override {
        const BringUpResult result = m_host.BringUp();
        ASSERT_TRUE(result.Ok()) << result.text;
    }

    test::ManualClock m_clock;
    ReferenceHost m_host{{.threaded = false}};
};

TEST_F(ReferenceHostTest, WhatTheGeneratorIsToldComesBackAsResults) {
    m_host.SetGenerator(0.75, 440.0);
    const simulator::Stimulus stimulus = m_host.Unit().GetStimulus(0);
    EXPECT_NEAR(stimulus.amplitudeVolts, 0.75, 1e-6);
    EXPECT_NEAR(stimulus.frequencyHz, 440.0, 1e-3);
    int blocks = 0;
    m_host.Engine().onResults = [&blocks] { ++blocks; };
    m_host.TurnUntil([] { return false; }, 100);
    EXPECT_GE(blocks, 4);
    EXPECT_LE(blocks, 6) << "one block a cadence of 20 ms";
    EXPECT_NEAR(m_host.analyserResults.rmsA, 0.75 * kStepsPerVolt, 0.05);
    EXPECT_NEAR(m_host.analyserResults.frequencyB, 440000.0, 0.01);
    EXPECT_EQ(m_host.Hardware().IsResultReady(kResultRmsA, kNoDetector), 1);
    EXPECT_EQ(m_host.Hardware().IsResultReady(kResultFftDetectorB, 2), 1);
    EXPECT_EQ(m_host.Hardware().IsResultReady(kResultFftDetectorB, 4), 0) << "no such detector";
    EXPECT_TRUE(m_host.Unit().ProtocolErrors().empty());
    EXPECT_TRUE(m_host.Unit().RelayViolations().empty());
}

TEST(ReferenceHostImages, LieInAFolderThatGoesWithTheHost) {
    test::ManualClock clock;
    auto host = std::make_unique<ReferenceHost>(ReferenceHostOptions{.threaded = false});
    ASSERT_TRUE(host->BringUp().Ok());
    const std::filesystem::path image(std::string(
        CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware", "DSPAFile", CString())));
    EXPECT_TRUE(std::filesystem::exists(image));
    host.reset();
    EXPECT_FALSE(std::filesystem::exists(image.parent_path()));
}

TEST_F(ReferenceHostTest, TheMainWindowTellsOfFailures) {
    test::ScriptedUserInterface user;
    CWnd& window = *m_host.mainWindow;
    window.Send(kMessageBringUpFailed, 0, reinterpret_cast<LPARAM>(new char[5]{"FPGA"}));
    for (const unsigned message : {kMessageOutOfMemory, static_cast<unsigned>(WM_APP)}) {
        EXPECT_EQ(window.Send(message, kTextOutOfMemory, 0), 0);
        EXPECT_EQ(window.Send(message, kTextOutOfMemory + 1, 0), 0);
    }
    const std::vector<CString> texts = user.Texts();
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_NE(texts[0].find("FPGA"), CString::npos) << texts[0];
    EXPECT_EQ(texts[1], LoadText(kTextOutOfMemory));
    EXPECT_EQ(texts[2], texts[1]);
}

// A device that jumps over the target at one frequency: no source value meets it, the steps only halve, and
// the error grows again with every change of side.
double JumpOverTarget(const simulator::Stimulus& stimulus, int) {
    const double beyond = stimulus.frequencyHz - 31337.0;
    return beyond < 0.0 ? 1.5 - 0.001 * beyond : 0.7 * std::exp(-0.001 * beyond);
}

// Every outcome that a regulation can have, through the unit and back.
TEST_F(ReferenceHostTest, EveryOutcomeOfARegulationIsReached) {
    using simulator::DeviceUnderTest;
    enum class Meanwhile { Nothing, CarrierIsWatched, Stop, NobodyProvidesDetails };
    const struct {
        const char* text;
        NPreProcessor::EResult outcome;
        DeviceUnderTest device;
        double target;
        double maximum;
        double tolerance;
        Meanwhile meanwhile;
    } rows[] = {
        {"in the window", NPreProcessor::Succeeded, {.gain = 2.0}, 1.0, 5.0, 0.01, {}},
        {"saturated below the target",
         NPreProcessor::SourceLimit,
         {.saturationVolts = 1.5},
         3.0,
         5.0,
         0.01,
         {}},
        {"steeper than the finest step",
         NPreProcessor::StepTooSmall,
         {.gain = 10000.0, .offsetVolts = 0.5},
         1.003,
         0.01,
         0.0001,
         {}},
        {"flat", NPreProcessor::MonotonicFailed, {.gain = 0.0, .offsetVolts = 0.5}, 1.0, 5.0, 0.01, {}},
        {"jumping over the target",
         NPreProcessor::NotConverged,
         {.custom = JumpOverTarget},
         1.0,
         80000.0,
         0.01,
         {}},
        {"overloaded",
         NPreProcessor::NoData,
         {.overloadVolts = 1.2},
         2.0,
         5.0,
         0.01,
         Meanwhile::CarrierIsWatched},
        {"silent", NPreProcessor::TimedOut, {.silent = true}, 1.0, 5.0, 0.01, {}},
        {"stopped", NPreProcessor::Aborted, {.silent = true}, 1.0, 5.0, 0.01, Meanwhile::Stop},
        {"without a task", NPreProcessor::Failed, {}, 1.0, 5.0, 0.01, Meanwhile::NobodyProvidesDetails},
    };
    CRegulationSettings& regulation = m_host.Regulation();
    auto* const provider = m_host.regulationDetails;
    for (const auto& row : rows) {
        m_host.Unit().SetDeviceUnderTest(row.device);
        m_host.SetGenerator(0.5, 1000.0);
        regulation.SetResult(kResultRmsA);
        regulation.SetRegulateTo(row.target);
        regulation.SetTolerance(row.tolerance);
        const bool byFrequency = row.device.custom != nullptr;
        regulation.SetSource(byFrequency ? 0 : 1);
        regulation.SetTrend(byFrequency ? 1 : 0);
        regulation.SetSourceMinLimit(byFrequency ? 2.0 : 0.0);
        regulation.SetSourceMaxLimit(row.maximum);
        CSettlingWatcher carrier(nullptr, nullptr, nullptr);
        if (row.meanwhile == Meanwhile::CarrierIsWatched) {
            carrier.AddSignal(kResultCarrierAmplitude, kNoDetector);
            carrier.Start(1);
        }
        m_host.regulationDetails = row.meanwhile == Meanwhile::NobodyProvidesDetails ? nullptr : provider;
        ASSERT_EQ(regulation.StartRegulation(1), 1) << row.text;
        if (row.meanwhile == Meanwhile::Stop) {
            regulation.StopRegulation();
        }
        m_host.TurnUntil([&] { return regulation.IsRegulationRunning() == 0; }, 60000);
        EXPECT_EQ(regulation.GetStatus(), row.outcome) << row.text;
    }
    m_host.regulationDetails = provider;
    EXPECT_TRUE(m_host.Unit().ProtocolErrors().empty());
    EXPECT_TRUE(m_host.Unit().RelayViolations().empty());
}

TEST_F(ReferenceHostTest, ABlockOfTheFormerSourceValueIsNotTaken) {
    m_host.SetGenerator(0.5, 1000.0);
    m_clock.Advance(25); // a block of the old level is ready
    m_host.SetGenerator(1.5, 1000.0);
    EXPECT_FALSE(m_host.Engine().Poll());
    m_clock.Advance(20);
    ASSERT_TRUE(m_host.Engine().Poll());
    EXPECT_NEAR(m_host.analyserResults.rmsA, 1.5 * kStepsPerVolt, 0.1);
}

} // namespace
} // namespace kalvio::reference_host
