#include "preprocessor/RegulatorWatcher.h"
#include "preprocessor/SettlingWatcher.h"
#include "support/RegulationRig.h"
#include "support/Scenarios.h"

namespace kalvio::test {
namespace {

using namespace NPreProcessor;

constexpr int kMostMeasurements = 400;

class RegulatorTest : public RegulationRig {
protected:
    RegulatorTest() {
        host.application.regulationDetails = &provider;
        provider.details = AmplitudeDetails(source);
        source.Set(kControl, 100.0);
        measure = [this] { MeasureBoth(); };
    }

    // Both channels follow their sources through `transfer`.
    void MeasureBoth() {
        Put(kResultRmsA, transfer(source.Get(kControl)));
        Put(kResultRmsB, transferB(source.Get(kControl)));
    }

    EResult RunToTheEnd(CRegulatorWatcher& watcher) {
        watcher.Start(1);
        for (int i = 0; i < kMostMeasurements && watcher.GetStatus() == Working; ++i) {
            MeasureOnce();
        }
        return watcher.GetStatus();
    }

    std::vector<double> SourcesWritten() {
        std::vector<double> values;
        for (const auto& [ctrlID, value] : source.Written()) {
            values.push_back(value);
        }
        return values;
    }

    // The codes of the reports that the main window got, once.
    std::vector<int> TakeReports() {
        PumpMessages();
        std::vector<int> codes;
        for (const RecordingWindow::Message& message : host.mainWindow.messages) {
            EXPECT_EQ(message.id, kMessageWatchFinished);
            codes.push_back(static_cast<int>(message.wParam));
        }
        host.mainWindow.messages.clear();
        return codes;
    }

    FixedDetails provider;
    FakeSource source;
    std::function<double(double)> transfer = [](double s) { return 2.0 * s; };
    std::function<double(double)> transferB = transfer;
};

} // namespace

// Worked out by hand.
TEST_F(RegulatorTest, WritesTheseSources) {
    const std::map<std::string, std::function<double(double)>> transfers{
        {"same", [](double s) { return s; }},
        {"twice", [](double s) { return 2.0 * s; }},
        {"five", [](double) { return 5.0; }},
        {"falling", [](double s) { return 1000.0 - s; }},
    };
    for (const ScenarioLine& line : ReadLines(__FILE__, "paths.txt")) {
        SCOPED_TRACE(line.words[0]);
        const auto number = [&line](std::size_t at) { return std::stod(line.words.at(at)); };
        const auto integer = [&](std::size_t at) { return static_cast<int>(number(at)); };
        RegulationDetails& d = provider.details;
        d.algorithm = integer(1);
        d.target = number(2);
        d.lower = d.target - number(3);
        d.upper = d.target + number(3);
        d.trend = integer(4);
        d.direction = integer(5);
        d.initialStep = line.words[6] == "auto" ? kAutomaticStep : number(6);
        d.sensitivity = 0.5;
        source.Set(kControl, number(7));
        transfer = transfers.at(line.words[8]);
        std::vector<double> sources;
        for (std::size_t at = 10; at < line.words.size(); ++at) {
            sources.push_back(number(at));
        }
        CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
        EXPECT_EQ(RunToTheEnd(watcher), integer(9));
        EXPECT_EQ(SourcesWritten(), sources);
    }
}

TEST_F(RegulatorTest, OneOfTwoChannelsDrives) {
    struct Mode {
        int mode;
        double gainB;
        EResult outcome;
        double drivenBy; // gain of the channel that drives the first step
    };
    // Channel A gives 200 at first, the window is 499 to 501.
    const Mode kModes[] = {
        {kChannelEither, 5.0, Succeeded, 0.0}, // B is inside already
        {kChannelEither, 4.0, Working, 4.0},   // the nearer
        {kChannelBoth, 4.0, Working, 2.0},     // the farther
        {kChannelBoth, 5.0, Working, 2.0},     // B inside must not stand in for A
        {kChannelBoth, 20.0, Working, 20.0},   {kChannelB, 4.0, Working, 4.0},
    };
    for (const Mode& mode : kModes) {
        SCOPED_TRACE(mode.gainB);
        provider.details.channelMode = mode.mode;
        provider.details.secondSourceCtrlID = kSecondControl;
        transferB = [&mode](double s) { return mode.gainB * s; };
        source.Set(kControl, 100.0);
        CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
        watcher.Start(1);
        MeasureOnce();
        MeasureOnce();
        EXPECT_EQ(watcher.GetStatus(), mode.outcome);
        if (mode.outcome == Working) {
            EXPECT_DOUBLE_EQ(source.Get(kControl), 500.0 / mode.drivenBy);
            EXPECT_EQ(source.Get(kSecondControl), source.Get(kControl)); // tied
        }
    }
}

TEST_F(RegulatorTest, TimesOutAcrossCyclesAndWithoutData) {
    provider.details.timeout = 1;
    provider.details.algorithm = kMaximum; // marches for longer than that
    provider.details.initialStep = 1.5;
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    watcher.Start(1);
    for (int i = 0; i < 100; ++i) { // 10 ms each
        MeasureOnce();
    }
    EXPECT_EQ(watcher.GetStatus(), Working);
    EXPECT_EQ(SourcesWritten().size(), 50U);
    MeasureOnce();
    EXPECT_EQ(watcher.GetStatus(), TimedOut);

    watcher.Start(1);
    host.clock.Advance(1001);
    preprocessor::WakeUp(preprocessor::ListIndex::TimedOut);
    EXPECT_EQ(watcher.GetStatus(), TimedOut);
}

TEST_F(RegulatorTest, ASilentResultEndsTheRun) {
    provider.details.resultA = kResultInputFrameRate; // nothing brings one
    CSettlingWatcher other(nullptr, nullptr, nullptr);
    other.AddSignal(kResultRmsA, kNoDetector); // its values wake the thread
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    watcher.Start(1);
    host.clock.Advance(7900);
    MeasureOnce();
    EXPECT_EQ(watcher.GetStatus(), Working);
    host.clock.Advance(100);
    MeasureOnce();
    EXPECT_EQ(watcher.GetStatus(), NoData);
}

TEST_F(RegulatorTest, AnUnsettledResultCountsWithItsAverage) {
    settling.defaults = {.settlingTime = 0, .numResults = 2, .tolerance = 0.0, .toleranceType = 1};
    int turn = 0;
    transfer = [&turn](double s) { return 2.0 * s + (turn++ % 2 == 0 ? 10.0 : -10.0); };
    StepRecord record;
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    watcher.Start(1);
    for (int i = 0; i < 8; ++i) {
        MeasureOnce();
    }
    ASSERT_EQ(record.steps.size(), 1U);
    EXPECT_EQ(record.steps[0].settling, NotSettled);
    EXPECT_EQ(record.steps[0].result, 200.0);
    EXPECT_EQ(record.steps[0].rule, RegulationRule::Proportional);
}

TEST_F(RegulatorTest, StepsAreTold) {
    StepRecord record;
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    EXPECT_EQ(RunToTheEnd(watcher), Succeeded);
    ASSERT_EQ(record.steps.size(), 2U);
    const RegulationStep& first = record.steps[0];
    EXPECT_EQ(std::tuple(first.iteration, first.phase, first.source, first.result, first.settling),
              std::tuple(1, 1, 100.0, 200.0, Settled));
    EXPECT_EQ(std::tuple(first.nextSource, first.outcome), std::tuple(250.0, Working));
    const RegulationStep& last = record.steps[1];
    EXPECT_EQ(std::tuple(last.iteration, last.source, last.result, last.nextSource),
              std::tuple(2, 250.0, 500.0, 250.0));
    EXPECT_EQ(std::tuple(last.rule, last.outcome), std::tuple(RegulationRule::InsideWindow, Succeeded));
}

TEST_F(RegulatorTest, TheSourceIsReadAndWrittenInTheUnitOfTheDetails) {
    provider.details.sourceReferences = kUnitMillivolt;
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    watcher.Start(1);
    EXPECT_EQ(source.LastUnit(), kUnitMillivolt); // read
    provider.details.sourceReferences = kUnitVolt;
    watcher.Start(0);
    watcher.Start(1);
    EXPECT_EQ(source.LastUnit(), kUnitVolt);
    CPhyValueMessenger other;
    source.OnMessenger(&other);
    source.Set(kControl, 100.0);
    MeasureOnce();
    MeasureOnce();
    EXPECT_EQ(SourcesWritten().size(), 1U);
    EXPECT_EQ(source.LastUnit(), kUnitVolt); // written
}

TEST_F(RegulatorTest, AStartThatCannotBegin) {
    CRegulatorWatcher watcher(&host.mainWindow, nullptr, nullptr);
    provider.details.resultA = -1; // nothing to watch: the old state stands
    watcher.StartAndRequestNotification();
    EXPECT_EQ(watcher.GetStatus(), None);
    EXPECT_EQ(TakeReports(), std::vector<int>{None});
    provider.details.resultA = kResultFftDetectorA; // of a detector that is not there
    provider.details.detector = 7;
    watcher.Start(1);
    EXPECT_EQ(watcher.GetStatus(), None);

    provider.details.sourceSettings = nullptr; // details without a source are no details
    watcher.StartAndRequestNotification();
    EXPECT_EQ(TakeReports(), std::vector<int>{Failed});
    provider.details.sourceSettings = &source;
    provider.answer = 0;
    watcher.Start(1);
    EXPECT_EQ(watcher.GetStatus(), Failed);
    host.application.regulationDetails = nullptr;
    watcher.Start(1);
    EXPECT_EQ(watcher.GetStatus(), Failed);
}

TEST_F(RegulatorTest, AbortingReportsNothingAndLeavesTheSource) {
    CRegulatorWatcher watcher(&host.mainWindow, nullptr, nullptr);
    watcher.StartAndRequestNotification();
    watcher.Start(1); // ignored while it runs
    EXPECT_EQ(provider.asked, 1);
    watcher.Start(0);
    EXPECT_EQ(watcher.GetStatus(), Aborted);
    MeasureOnce();
    MeasureOnce();
    EXPECT_EQ(watcher.GetStatus(), Aborted);
    EXPECT_EQ(TakeReports(), std::vector<int>{});
    EXPECT_EQ(SourcesWritten(), std::vector<double>{});
    EXPECT_EQ(RunToTheEnd(watcher), Succeeded); // with fresh details
    EXPECT_EQ(provider.asked, 2);
}

TEST_F(RegulatorTest, ARequestStandsForLaterRuns) {
    CEvent done;
    int status = -1;
    CRegulatorWatcher asked(&host.mainWindow, &done, &status);
    CRegulatorWatcher silent(&host.mainWindow, nullptr, nullptr); // shares the regulator, asks for nothing
    for (int run = 0; run < 2; ++run) {
        source.Set(kControl, 100.0);
        if (run == 0) {
            asked.StartAndRequestNotification();
        }
        EXPECT_EQ(RunToTheEnd(silent), Succeeded);
        EXPECT_EQ(TakeReports(), std::vector<int>{Succeeded});
        EXPECT_TRUE(done.TryTake());
        EXPECT_EQ(std::exchange(status, -1), Succeeded);
    }
    silent.RequestNotification(); // after the end: at once
    EXPECT_EQ(TakeReports(), std::vector<int>{Succeeded});
}

TEST_F(RegulatorTest, TheLastUserTakesTheRegulatorAlong) {
    CEvent done;
    auto first = std::make_unique<CRegulatorWatcher>(nullptr, &done, nullptr);
    auto second = std::make_unique<CRegulatorWatcher>(nullptr, nullptr, nullptr);
    first->StartAndRequestNotification();
    first.reset();
    EXPECT_EQ(second->GetStatus(), Working); // one user is left
    for (int i = 0; i < 10; ++i) {
        MeasureOnce();
    }
    EXPECT_EQ(second->GetStatus(), Succeeded);
    EXPECT_FALSE(done.TryTake()); // the one that asked is gone
    second->Start(1);
    second.reset();
    source.Set(kControl, 100.0);
    MeasureOnce();
    MeasureOnce();
    EXPECT_EQ(SourcesWritten(), std::vector<double>{});
    EXPECT_EQ(CRegulatorWatcher(nullptr, nullptr, nullptr).GetStatus(), None); // a new one
}

TEST_F(RegulatorTest, OwnersThatDropTheirWatchersCostNobodyElseAReport) {
    std::vector<std::unique_ptr<CRegulatorWatcher>> watchers;
    for (int i = 0; i < 3; ++i) {
        watchers.push_back(std::make_unique<CRegulatorWatcher>(&host.mainWindow, nullptr, nullptr));
    }
    watchers[0]->StartAndRequestNotification();
    watchers[1]->RequestNotification();
    watchers[2]->RequestNotification();
    int reports = 0;
    host.mainWindow.onMessage = [&](const RecordingWindow::Message&) {
        watchers[static_cast<std::size_t>(reports++)].reset(); // the last takes the regulator along
    };
    for (int i = 0; i < 20; ++i) {
        MeasureOnce();
    }
    EXPECT_EQ(reports, 3);
    EXPECT_EQ(CRegulatorWatcher(nullptr, nullptr, nullptr).GetStatus(), None); // a new one
}

TEST_F(RegulatorTest, AbortingLeavesAHaltInForce) {
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    watcher.Start(1);
    NPreProcessor::Halt();
    watcher.Start(0);
    CSettlingWatcher other(nullptr, nullptr, nullptr);
    other.AddSignal(kResultRmsA, kNoDetector);
    MeasureOnce();
    SettlingVerdict verdict;
    ASSERT_TRUE(other.GetVerdict(0, verdict));
    EXPECT_EQ(verdict.count, 0);
    NPreProcessor::Resume();
    MeasureOnce();
    ASSERT_TRUE(other.GetVerdict(0, verdict));
    EXPECT_EQ(verdict.count, 1);
}

TEST_F(RegulatorTest, ASourceThatRefusesEndsTheRunWhereItStands) {
    StepRecord record;
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    source.RefuseAbove(150.0);
    EXPECT_EQ(RunToTheEnd(watcher), Failed);
    ASSERT_FALSE(record.steps.empty());
    EXPECT_EQ(record.steps.back().outcome, Failed);
    EXPECT_EQ(record.steps.back().nextSource, source.Get(kControl));
    EXPECT_LE(source.Get(kControl), 150.0);
}

// An owner in the thread of the wake-up may start the next run from within the report.
TEST_F(RegulatorTest, RestartsFromItsOwnReport) {
    CRegulatorWatcher watcher(&host.mainWindow, nullptr, nullptr);
    int reports = 0;
    host.mainWindow.onMessage = [&](const RecordingWindow::Message&) {
        source.Set(kControl, 100.0);
        if (++reports == 1) {
            watcher.Start(1);
        }
    };
    watcher.StartAndRequestNotification();
    for (int i = 0; i < 20; ++i) {
        MeasureOnce();
    }
    EXPECT_EQ(reports, 2);
    EXPECT_EQ(watcher.GetStatus(), Succeeded);
}

} // namespace kalvio::test
