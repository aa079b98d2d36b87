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
