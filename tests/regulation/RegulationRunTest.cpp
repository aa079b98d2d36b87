#include "regulation/Document.h"
#include "regulation/RegulationStatusText.h"

namespace kalvio::test {
namespace {

using namespace NPreProcessor;

constexpr double kVolt = kStepsPerVolt;

// Regulates the RMS amplitude by the generator's amplitude through two channels of a device under test.
class RegulationRunTest : public DocumentTest {
protected:
    RegulationRunTest() {
        Set("REG_Result", 3208);
        Set("REG_Source", kSourceGeneratorAmplitude);
        Set("REG_SourceMaxLimit", 10.0);
        Set("REG_RegulateTo", 2.0);
        Set("REG_Tolerance", 0.01);
        measure = [this] {
            const GeneratorState state = host.generator.GetState();
            Put(kResultRmsA, state.on[0] ? gains[0] * state.amplitude[0] : 0.0);
            Put(kResultRmsB, state.on[1] ? gains[1] * state.amplitude[1] : 0.0);
        };
    }

    EResult Run() {
        EXPECT_EQ(document.StartRegulation(1), 1);
        return Finish();
    }

    // Measures until the report has come; the wake-ups run in the window's thread, which is told at once.
    EResult Finish() {
        for (int i = 0; i < 200 && document.IsRegulationRunning() != 0; ++i) {
            MeasureOnce();
            PumpMessages();
        }
        return document.GetStatus();
    }

    double AmplitudeOf(int ctrlID) { return host.generator.GetSource(ctrlID) / kVolt; }

    RegulationDetails Details() {
        RegulationDetails details;
        EXPECT_EQ(document.GetRegulationDetails(details), 1);
        return details;
    }

    double gains[2] = {0.5, 0.25};
};

} // namespace

TEST_F(RegulationRunTest, BringsTheResultToItsTarget) {
    EXPECT_EQ(document.OLEGetStatus(), kStatusNone);
    EXPECT_TRUE(document.Invoke("REG_Start", {}).Ok());
    EXPECT_EQ(document.OLEGetStatus(), kStatusInProgress);
    EXPECT_EQ(document.StartRegulation(1), 0); // refused silently while one runs
    EXPECT_EQ(Finish(), Succeeded);
    EXPECT_EQ(document.OLEGetStatus(), kStatusOk);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeA), 4.0, 0.02);
    EXPECT_TRUE(WasHinted(kCtrlStatus));
    EXPECT_TRUE(host.user.Texts().empty());
}

TEST_F(RegulationRunTest, RefusesWhatCannotRun) {
    Set("REG_SourceMinLimit", 10.0);
    EXPECT_EQ(document.StartRegulation(1), 0);
    Set("REG_SourceMinLimit", 4.0);
    Set("REG_StepSize", 6.0);                  // the whole range
    EXPECT_EQ(document.StartRegulation(1), 1); // while it is automatic nobody asks
    document.StopRegulation();
    Set("REG_StepSizeAuto", 0);
    EXPECT_EQ(document.StartRegulation(1), 0);
    EXPECT_EQ(document.StartRegulation(0), 0);
    EXPECT_EQ(
        host.user.Texts(),
        (std::vector<CString>{"The Regulation Source parameters are invalid. The minimum value must be less "
                              "than the maximum value.",
                              "The Source step size must be less than the range."}));
    Set("REG_StepSize", 5.99);
    EXPECT_EQ(document.StartRegulation(1), 1);
}

TEST_F(RegulationRunTest, PreparesAnalyserAndGenerator) {
    struct Row {
        int channel;
        int opposite;
        int independent; // before
        int expected[3]; // 4300, 4302, 4333
    };
    constexpr Row kRows[] = {
        {0, 0, 0, {0, 1, 0}}, {0, 1, 1, {1, 1, 1}}, {1, 0, 0, {0, 0, 0}}, {1, 0, 1, {1, 0, 1}},
        {1, 1, 0, {0, 1, 0}}, {4, 0, 0, {1, 1, 1}}, {5, 0, 0, {0, 1, 0}}, {5, 0, 1, {1, 1, 1}},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.channel * 100 + row.opposite * 10 + row.independent);
        host.generator.SetSwitch(kCtrlGeneratorIndependent, row.independent);
        host.generator.SetSwitch(kCtrlGeneratorOnA, 0);
        host.generator.SetSwitch(kCtrlGeneratorOnB, 0);
        Set("REG_Channel", row.channel);
        Set("REG_SourceOppChannel", row.opposite);
        EXPECT_EQ(document.StartRegulation(1), 1);
        document.StopRegulation();
        EXPECT_EQ(host.generator.GetSwitch(kCtrlGeneratorIndependent), row.expected[0]);
        EXPECT_EQ(host.generator.GetSwitch(kCtrlGeneratorOnA), row.expected[1]);
        EXPECT_EQ(host.generator.GetSwitch(kCtrlGeneratorOnB), row.expected[2]);
    }
    EXPECT_TRUE(WasHinted(kCtrlGeneratorIndependent));

    host.analyser.firstChannel = 1;
    host.analyser.secondChannel = 1;
    Set("REG_Channel", 0);
    Set("REG_SourceMinLimit", 5.0); // the source stands at 1 V
    EXPECT_EQ(document.StartRegulation(1), 1);
    EXPECT_EQ(host.analyser.firstChannel.Get(), 0); // both channels now
    EXPECT_DOUBLE_EQ(AmplitudeOf(kCtrlGeneratorAmplitudeA), 5.0);
    EXPECT_EQ(host.application.triggerToggles.load(), 0);
}

TEST_F(RegulationRunTest, DetailsSayWhatToDo) {
    Set("REG_Channel", kBothTied);
    Set("REG_SourceOppChannel", 1);
    RegulationDetails d = Details();
    EXPECT_EQ(std::tuple(d.resultA, d.resultB, d.detector, d.channelMode), std::tuple(3208, 3210, 65535, 2));
    EXPECT_EQ(std::tuple(d.sourceCtrlID, d.secondSourceCtrlID, d.sourceDetector, d.sourceAccessMode),
              std::tuple(4339, 4306, 65535, 2));
    EXPECT_EQ(d.sourceSettings, &host.generator);
    EXPECT_EQ(d.resultSettings, &host.analyser);
    EXPECT_NEAR(d.lower, 1.99 * kVolt, 1e-6);
    EXPECT_NEAR(d.target, 2.0 * kVolt, 1e-6);
    EXPECT_NEAR(d.upper, 2.01 * kVolt, 1e-6);
    EXPECT_DOUBLE_EQ(d.sourceMaximum, 10.0 * kVolt);
    EXPECT_EQ(std::tuple(d.algorithm, d.trend, d.initialStep, d.timeout),
              std::tuple(0, 0, kAutomaticStep, 10));

    Set("REG_ResultUnit", kUnitDbu); // the tolerance is in dB now
    Set("REG_RegulateTo", 0.0);
    Set("REG_Tolerance", 6.0);
    d = Details();
    EXPECT_NEAR(d.upper / d.target, std::pow(10.0, 0.3), 1e-9);
    EXPECT_NEAR(d.lower / d.target, std::pow(10.0, -0.3), 1e-9);
    Set("REG_ToleranceType", kRatio);
    Set("REG_Tolerance", 25.0);
    d = Details();
    EXPECT_NEAR(d.upper / d.target, 1.25, 1e-9);
    EXPECT_NEAR(d.lower / d.target, 0.75, 1e-9);

    Set("REG_Trend", 3);
    EXPECT_EQ(Details().algorithm, kNonMonotonic);
    EXPECT_EQ(Details().trend, kTrendUnknown);
    Set("REG_StepSizeAuto", 0);
    Set("REG_StepSize", 0.5);
    Set("REG_Direction", kDown);
    host.generator.SetSource(kCtrlGeneratorAmplitudeB, 3.0 * kVolt);
    EXPECT_NEAR(Details().initialStep, 0.5 * kVolt, 1e-6);
    EXPECT_EQ(Details().direction, kDown);
    Set("REG_SourceUnit", kUnitDbv); // steps of levels depend on where they start
    Set("REG_StepSize", 6.0);
    EXPECT_NEAR(Details().initialStep, 3.0 * kVolt * (1.0 - std::pow(10.0, -0.3)), 1e-6);

    Set("REG_SourceUnit", kUnitVolt);
    Set("REG_SourceMinLimit", 0.5);
    Set("REG_Direction", kDirectionUnknown);
    EXPECT_EQ(Details().direction, kUp); // from the lower limit
    EXPECT_DOUBLE_EQ(AmplitudeOf(kCtrlGeneratorAmplitudeB), 0.5);

    Set("REG_RegulationType", kMinimum);
    d = Details();
    EXPECT_EQ(std::tuple(d.algorithm, d.target, d.upper, d.resultReferences), std::tuple(2, 0.0, 0.0, -1));
    EXPECT_DOUBLE_EQ(d.lower, 0.25);
    EXPECT_DOUBLE_EQ(d.sensitivity, 0.1);
    Set("REG_RegulationType", kMaximum);
    EXPECT_EQ(Details().algorithm, 3);
}

TEST_F(RegulationRunTest, ChannelsNameResultsAndSources) {
    struct Row {
        int result;
        int channel;
        int mode;
        int resultB;
        int source;
        int second;
    };
    host.analyser.firstChannel = 1; // the selected channel is B
    for (const Row& row : {Row{3208, 1, 1, 3210, 4343, -1}, Row{3209, 2, 1, 3211, 4343, -1},
                           Row{3251, 3, 0, 3253, 4310, -1}, Row{3208, 5, 2, 3210, 4310, 4343},
                           Row{3208, 6, 5, 3210, 4310, -1}, Row{3216, 5, 0, -1, 4310, 4343}}) {
        Set("REG_Source", kSourceGeneratorFrequency);
        Set("REG_Result", row.result);
        Set("REG_Channel", row.channel);
        const RegulationDetails d = Details();
        EXPECT_EQ(std::tuple(d.resultA, d.resultB, d.channelMode, d.sourceCtrlID, d.secondSourceCtrlID),
                  std::tuple(row.result, row.resultB, row.mode, row.source, row.second))
            << row.result << ' ' << row.channel;
    }
    for (const auto& [source, ctrlID] : {std::pair(2, 4021), std::pair(3, 4117), std::pair(4, 4118)}) {
        Set("REG_Source", source);
        EXPECT_EQ(Details().sourceCtrlID, ctrlID);
        EXPECT_EQ(Details().secondSourceCtrlID, -1);
    }
}

TEST_F(RegulationRunTest, TwoPassesForBothChannels) {
    Set("REG_Channel", kBothSeparately);
    EXPECT_EQ(Run(), Succeeded);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeA), 4.0, 0.03);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeB), 8.0, 0.05);

    gains[0] = 0.01; // channel A cannot get there, B still can
    EXPECT_EQ(Run(), SourceLimit);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeB), 8.0, 0.05);
    gains[0] = 0.5;
    Set("REG_Channel", 0);
    EXPECT_EQ(Run(), Succeeded); // the earlier failure does not poison it

    Set("REG_Channel", kBothSeparately);
    gains[1] = 0.01;
    EXPECT_EQ(Run(), SourceLimit);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeA), 4.0, 0.03);
}

TEST_F(RegulationRunTest, AResultWithoutChannelsTakesOnePass) {
    Set("REG_Result", 3216);
    Set("REG_Channel", kBothSeparately);
    Set("REG_RegulateTo", 90.0);
    Set("REG_Tolerance", 1.0);
    measure = [this] { Put(kResultPhase, 15.0 * AmplitudeOf(kCtrlGeneratorAmplitudeA)); };
    EXPECT_EQ(Run(), Succeeded);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeA), 6.0, 0.1);
    EXPECT_EQ(host.mainWindow.messages.size(), 1U);
}

TEST_F(RegulationRunTest, AReportAfterAStopChangesNothing) {
    EXPECT_EQ(document.StartRegulation(1), 1);
    EXPECT_EQ(document.StopRegulation(), 1);
    document.OnRegulationResult(Succeeded, 0);
    EXPECT_EQ(document.GetStatus(), Aborted);
    EXPECT_EQ(document.OLEGetStatus(), kStatusFailed);

    // The regulator ends, but before its message is read the run is stopped and the next begins.
    host.mainWindow.onMessage = nullptr;
    EXPECT_EQ(document.StartRegulation(1), 1);
    for (int i = 0; i < 20; ++i) {
        MeasureOnce();
    }
    ASSERT_EQ(host.mainWindow.messages.size(), 1U);
    document.StopRegulation();
    Set("REG_RegulateTo", 3.0);
    EXPECT_EQ(document.StartRegulation(1), 1);
    document.OnRegulationResult(Succeeded, 0); // the old message, read late
    EXPECT_EQ(document.GetStatus(), Working);
    document.OnRegulationResult(TimedOut, 0); // the new run's
    EXPECT_EQ(document.GetStatus(), TimedOut);
}

TEST_F(RegulationRunTest, TheFftIsUsedOncePerStart) {
    const int id = host.fftDetectors.Add("peak")->Id();
    Set("REG_ResultFFTDetector", id);
    Set("REG_Result", 3351);
    EXPECT_EQ(document.StartRegulation(1), 1);
    EXPECT_EQ(host.application.fftUsageCount.load(), 1);
    EXPECT_EQ(host.application.triggerToggles.load(), 1);
    Set("REG_Result", 3208); // a script changes its mind meanwhile
    document.StopRegulation();
    document.StopRegulation();
    EXPECT_EQ(host.application.fftUsageCount.load(), 0);
    EXPECT_EQ(document.StartRegulation(1), 1);
    Set("REG_Result", 3351);
    document.OnRegulationResult(SourceLimit, 0);
    EXPECT_EQ(host.application.fftUsageCount.load(), 0);
}

// An archive may name a result that this version does not know.
TEST_F(RegulationRunTest, AnUnknownResultFailsAtOnce) {
    CArchive archive;
    document.Serialize(archive);
    std::vector<std::uint8_t> bytes = archive.Bytes();
    bytes[1] ^= 0xFF; // the low byte of the result
    CString error;
    ASSERT_TRUE(document.Load(bytes, error)) << error;
    RegulationDetails details;
    EXPECT_EQ(document.GetRegulationDetails(details), 0);
    EXPECT_EQ(Run(), Failed);
}

// A detector that the host does not have: an earlier success must not show again.
TEST_F(RegulationRunTest, AResultThatTheHostLacksFailsAndSaysWhy) {
    ASSERT_EQ(Run(), Succeeded);
    host.fftDetectors.Add("one");
    Set("REG_ResultFFTDetector", 1);
    Set("REG_Result", 3351);
    host.application.fftDetectors = nullptr;
    EXPECT_EQ(document.StartRegulation(1), 0);
    EXPECT_EQ(document.GetStatus(), Failed);
    EXPECT_EQ(host.application.fftUsageCount.load(), 0);
    EXPECT_EQ(host.user.Texts().back(),
              "The Result cannot be regulated, because the analyser does not provide it.");
}

TEST_F(RegulationRunTest, EveryStatusHasItsWords) {
    struct Row {
        EResult status;
        const char* text;
        std::uint32_t color;
    };
    constexpr Row kRows[] = {
        {None, "", 0x000000},
        {Working, "Regulation in progress...", 0x000000},
        {Succeeded, "Regulation successful!", 0x008000},
        {Failed, "Regulation failed:\nGeneral failure!", 0xFF0000},
        {Settled, "Regulation failed:\nGeneral failure!", 0xFF0000},
        {SourceLimit, "Regulation failed:\nReached source limit", 0xFF0000},
        {StepTooSmall, "Regulation failed:\nStep size became too small", 0xFF0000},
        {MonotonicFailed, "Regulation failed:\nMonotonic algorithm failed", 0xFF0000},
        {NotConverged, "Regulation failed:\nDid not converge", 0xFF0000},
        {NotSettled, "Regulation failed:\nResult did not settle", 0xFF0000},
        {NoData, "Regulation failed:\nTimed out waiting for data", 0xFF0000},
        {TimedOut, "Regulation failed:\nRegulation timed out", 0xFF0000},
        {Aborted, "Regulation failed:\nAborted by user", 0xFF0000},
    };
    for (const Row& row : kRows) {
        const StatusText status = DescribeStatus(row.status);
        EXPECT_EQ(status.text, row.text);
        EXPECT_EQ(status.color, row.color) << row.text;
    }
}

namespace {

class RegulationThreadedTest : public RegulationRunTest {
protected:
    BackgroundMeasurement measurement{host.clock, measure};
};

} // namespace

// Start, stop and restart from this thread while the real one regulates.
TEST_F(RegulationThreadedTest, StopsAndRestartsWhileTheThreadWorks) {
    Set("REG_Timeout", 3600);
    Set("REG_Channel", kBothSeparately);
    for (int run = 0; run < 100; ++run) {
        ASSERT_EQ(document.StartRegulation(1), 1);
        for (int i = 0; i < run % 9; ++i) {
            std::this_thread::yield();
            PumpMessages();
        }
        document.StopRegulation();
        ASSERT_TRUE(document.GetStatus() == Aborted || document.GetStatus() == Succeeded);
    }
    ASSERT_EQ(document.StartRegulation(1), 1);
    while (document.IsRegulationRunning() != 0) {
        WaitAndPumpMessages(kInfinite);
    }
    EXPECT_EQ(document.GetStatus(), Succeeded);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeA), 4.0, 0.03);
    EXPECT_NEAR(AmplitudeOf(kCtrlGeneratorAmplitudeB), 8.0, 0.05);
}

} // namespace kalvio::test
