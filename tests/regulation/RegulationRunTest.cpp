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
