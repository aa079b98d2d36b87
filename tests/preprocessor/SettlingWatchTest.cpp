#include "preprocessor/SettlingWatch.h"

#include "preprocessor/Supervision.h"

namespace kalvio::test {

namespace {

using namespace NPreProcessor;
using preprocessor::ListIndex;
using preprocessor::WakeUp;

class SettlingWatchTest : public Supervision {
protected:
    SettlingWatchTest() { settling.defaults = {0, 2, 0.0, 1, false}; }

    void Watch(std::initializer_list<int> results) {
        for (const int result : results) {
            ASSERT_EQ(watcher.AddSignal(result, kNoDetector), 1);
        }
        watcher.Start(1);
    }

    CSettlingWatcher watcher{nullptr, nullptr, nullptr};
};

} // namespace

// Three watches finish in one wake-up; the first owner that is told drops its own, the second the third's.
TEST_F(SettlingWatchTest, OwnersThatDropWatchesCostNobodyElseAReport) {
    settling.defaults.numResults = 1;
    std::vector<std::unique_ptr<CSettlingWatcher>> watchers;
    int reports = 0;
    for (int i = 0; i < 4; ++i) {
        watchers.push_back(std::make_unique<CSettlingWatcher>(&host.mainWindow, nullptr, nullptr));
        watchers.back()->AddSignal(kBlock, kNoDetector);
        watchers.back()->StartAndRequestNotification();
    }
    host.mainWindow.onMessage = [&](const RecordingWindow::Message&) {
        ++reports;
        watchers[reports == 1 ? 0 : 2].reset();
    };
    Deliver(kBlock, {5, 5, 5});
    EXPECT_EQ(reports, 3); // of the first, the second and the fourth
}

TEST_F(SettlingWatchTest, GetStatusFillsWhatThereIsAndMarksTheRest) {
    settling.defaults.numResults = 1;
    Watch({kBlock});
    Deliver(kBlock, {5, 6});
    std::array<CSettlingWatcher::Status, 3> status{{{7, 7, 7, 7}, {7, 7, 7, 7}, {7, 7, 7, 7}}};
    EXPECT_EQ(watcher.GetStatus(status.data(), 3), Settled);
    EXPECT_EQ(status[0].resultID, kBlock);
    EXPECT_EQ(status[0].detector, kNoDetector);
    EXPECT_EQ(status[0].value, 6.0);
    EXPECT_EQ(status[1].resultID, 0);
    EXPECT_EQ(status[2].resultID, 0);
    EXPECT_EQ(status[2].value, 7.0);
    SettlingVerdict verdict;
    EXPECT_FALSE(watcher.GetVerdict(1, verdict));
    EXPECT_FALSE(watcher.GetVerdict(-1, verdict));
}

TEST_F(SettlingWatchTest, ReportsWindowThenEventThenStatusInTheFormOfTheOccasion) {
    CEvent done;
    int status = -1;
    std::vector<std::tuple<bool, int>> atMessage;
    host.mainWindow.onMessage = [&](const auto&) { atMessage.emplace_back(done.IsSet(), status); };
    const auto messages = [&] { return host.mainWindow.messages.size(); };
    settling.defaults.numResults = 1;
    CSettlingWatcher told(&host.mainWindow, &done, &status);
    told.AddSignal(kBlock, kNoDetector);

    told.StartAndRequestNotification();
    EXPECT_EQ(messages(), 0U);
    Deliver(kBlock, {5, 5, 5, 5});
    ASSERT_EQ(messages(), 1U); // sent, and once
    EXPECT_EQ(host.mainWindow.messages[0].id, 0x8038U);
    EXPECT_EQ(host.mainWindow.messages[0].wParam, 2U);
    EXPECT_EQ(host.mainWindow.messages[0].lParam, 0);
    EXPECT_EQ(atMessage[0], std::tuple(false, -1));
    EXPECT_TRUE(done.TryTake());
    EXPECT_EQ(status, Settled);

    status = -1;
    told.RequestNotification(); // has finished: posted at once
    EXPECT_EQ(messages(), 1U);
    EXPECT_TRUE(done.TryTake());
    EXPECT_EQ(status, Settled);
    PumpMessages();
    EXPECT_EQ(messages(), 2U);

    told.StartAndRequestNotification();
    told.Start(1); // forgets the request
    Deliver(kBlock, {5, 5});
    EXPECT_EQ(StateOf(told), Settled);
    told.StartAndRequestNotification();
    told.Start(0); // no report
    Deliver(kBlock, {5, 5});
    PumpMessages();
    EXPECT_EQ(StateOf(told), Aborted);
    EXPECT_EQ(messages(), 2U);
    EXPECT_FALSE(done.IsSet());
}

// An owner in the driving thread hears of the end while the wake-up still runs.
TEST_F(SettlingWatchTest, AnOwnerMayStartAgainOrDestroyItsWatchOnBeingTold) {
    settling.defaults.numResults = 1;
    auto told = std::make_unique<CSettlingWatcher>(&host.mainWindow, nullptr, nullptr);
    told->AddSignal(kBlock, kNoDetector);
    host.mainWindow.onMessage = [&](const auto&) {
        if (host.mainWindow.messages.size() == 1) {
            told->StartAndRequestNotification();
        } else {
            told.reset();
        }
    };
    told->StartAndRequestNotification();
    Watch({kBlock});
    Deliver(kBlock, {5, 5});
    EXPECT_EQ(StateOf(*told), Working);
    Deliver(kBlock, {5, 5});
    EXPECT_EQ(told, nullptr);
    Deliver(kBlock, {5});
    EXPECT_EQ(StateOf(watcher), Settled);
}

namespace {

// Notes what the wake-ups call.
class NotingWatch final : public CSettlingWatch {
public:
    explicit NotingWatch(CString& calls) : CSettlingWatch(nullptr, nullptr, nullptr), m_calls(calls) {}
    bool Evaluate(bool newData) override {
        m_calls += newData ? "E" : "e";
        if (onEvaluate) {
            onEvaluate();
        }
        return CSettlingWatch::Evaluate(newData);
    }
    void ResetTicks() override {
        m_calls += "R";
        CSettlingWatch::ResetTicks();
    }
    std::function<void()> onEvaluate;

private:
    CString& m_calls;
};

} // namespace

TEST_F(SettlingWatchTest, AWrapResetsTicksOncePerWatchBeforeAnyEvaluation) {
    CString calls;
    NotingWatch first(calls);
    NotingWatch second(calls);
    host.clock.SetTick(0xFFFFFFF0);
    WakeUp(ListIndex::TimedOut);
    Watch({kBlock, kSingle});
    Deliver(kBlock, {5}); // at 0xFFFFFFFA
    calls.clear();
    host.clock.SetTick(1990);
    Deliver(kSingle, {5}); // at 2000; the wrap put start and arrivals to 0
    EXPECT_EQ(calls, "RREE");
    EXPECT_EQ(StateOf(watcher), Working);
    Deliver(kSingle, {5}); // 2010 ms without the block result
    EXPECT_EQ(calls, "RREEEE");
    EXPECT_EQ(StateOf(watcher), NoData);
}

TEST_F(SettlingWatchTest, WatchesAddedDuringAWakeUpWaitForTheNext) {
    CString calls;
    std::unique_ptr<NotingWatch> added;
    NotingWatch first(calls);
    first.onEvaluate = [&] {
        if (!added) {
            added = std::make_unique<NotingWatch>(calls);
        }
    };
    WakeUp(ListIndex::TimedOut);
    EXPECT_EQ(calls, "e");
    WakeUp(ListIndex::Block);
    EXPECT_EQ(calls, "eEE");
}

} // namespace kalvio::test
