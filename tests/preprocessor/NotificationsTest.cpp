#include "hardware/Hardware.h"
#include "preprocessor/Supervision.h"
#include "support/CountedAllocations.h"
#include "support/ScriptedDriver.h"

namespace kalvio::test {

namespace {

using NPreProcessor::NotifyNewData;
using NPreProcessor::NotifyNewFFTData;
using preprocessor::ListIndex;
using preprocessor::RunPendingWakeUp;
using preprocessor::WakeUp;

// One watched result of every kind: single list, block list, with and without a detector.
class NotificationsTest : public Supervision {
protected:
    NotificationsTest() {
        const int detector = host.fftDetectors.Add("noise")->Id();
        EXPECT_EQ(detector, 1);
        for (const auto& [result, number] : kWatched) {
            EXPECT_EQ(watcher.AddSignal(result, number), 1);
        }
        watcher.Start(1);
        for (const auto& [result, number] : kWatched) {
            WriteResult(*GetResultFieldFromID(result, number), 1.0);
        }
    }

    // The result ids whose filters took a value, after every pending wake-up.
    std::vector<int> Reached() {
        std::vector<int> reached;
        while (RunPendingWakeUp()) {
        }
        for (std::size_t i = 0; i < kWatched.size(); ++i) {
            if (!Held(watcher, static_cast<int>(i)).empty()) {
                reached.push_back(kWatched[i].first);
            }
        }
        watcher.Start(1); // resets the filters
        return reached;
    }

    static constexpr std::array<std::pair<int, int>, 5> kWatched{{{kSingle, kNoDetector},
                                                                  {kResultFftDetectorA, 1},
                                                                  {kResultSyncFrameRate, kNoDetector},
                                                                  {kBlock, kNoDetector},
                                                                  {kResultPhase, kNoDetector}}};
    CSettlingWatcher watcher{nullptr, nullptr, nullptr};
};

} // namespace

TEST_F(NotificationsTest, ReachTheFiltersOfTheirListAndKey) {
    using Ids = std::vector<int>;
    EXPECT_EQ((NotifyNewData(kSingle, 0), Reached()), Ids{kSingle});
    EXPECT_EQ((NotifyNewData(kBlock, 0), Reached()), Ids{});
    EXPECT_EQ((NotifyNewData(0, 1), Reached()), (Ids{kBlock, kResultPhase}));
    EXPECT_EQ((NotifyNewData(kSingle, 1), Reached()), (Ids{kBlock, kResultPhase}));
    EXPECT_EQ((NotifyNewData(kResultFftDetectorA, 0), Reached()), Ids{});
    EXPECT_EQ((NotifyNewFFTData(kResultFftDetectorA, 1), Reached()), Ids{kResultFftDetectorA});
    EXPECT_EQ((NotifyNewFFTData(kResultFftDetectorA, 2), Reached()), Ids{});
    EXPECT_EQ((NotifyNewFFTData(kSingle, kNoDetector), Reached()), Ids{kSingle});
    EXPECT_EQ((NotifyNewData(4321, 0), Reached()), Ids{});
}

TEST_F(NotificationsTest, StartRemovalAndDestructionEndAHalt) {
    ScriptedDriver driver;
    CHardware hardware(driver);
    host.application.hardware = &hardware;
    auto other = std::make_unique<CSettlingWatcher>(nullptr, nullptr, nullptr);
    const std::function<void()> endings[] = {[] { NPreProcessor::Resume(); }, [&] { watcher.Start(1); },
                                             [&] { other->RemoveAllSignals(); }, [&] { other.reset(); }};
    for (const auto& ending : endings) {
        NPreProcessor::Halt();
        EXPECT_FALSE(hardware.IsPreprocessorEnabled());
        ending();
        EXPECT_TRUE(hardware.IsPreprocessorEnabled());
        hardware.SetResultReady(kSingle, kResInputFrameRate, 0);
        EXPECT_TRUE(RunPendingWakeUp());
    }
    host.application.hardware = nullptr;
}

// Filters come and go among many others; each is found by its key, in every size of the table.
TEST_F(NotificationsTest, EachOfManyResultsIsReachedAlone) {
    constexpr int kMany = static_cast<int>(kFftDetectorSlots);
    CSettlingWatcher others(nullptr, nullptr, nullptr); // results that have no field; they fill the table
    for (int result = 0; result < 300; ++result) {
        others.AddSignal(5000 + result, kNoDetector);
    }
    for (int detector = 2; detector <= kMany; ++detector) {
        host.fftDetectors.Add("many");
    }
    std::vector<std::unique_ptr<CSettlingWatcher>> watchers;
    for (int detector = 1; detector <= kMany; ++detector) {
        watchers.push_back(std::make_unique<CSettlingWatcher>(nullptr, nullptr, nullptr));
        watchers.back()->AddSignal(kResultFftDetectorA, detector);
        watchers.back()->Start(1);
        WriteResult(*GetResultFieldFromID(kResultFftDetectorA, detector), detector);
    }
    watcher.RemoveAllSignals();
    const auto reached = [&](int detector) {
        NotifyNewFFTData(kResultFftDetectorA, detector);
        RunPendingWakeUp();
        std::vector<int> indices;
        for (std::size_t i = 0; i < watchers.size(); ++i) {
            if (watchers[i] != nullptr && !Held(*watchers[i]).empty()) {
                indices.push_back(static_cast<int>(i) + 1);
                watchers[i]->Start(1);
            }
        }
        return indices;
    };
    for (int step = 0; step < kMany; ++step) {
        const int going = 1 + step * 7 % kMany; // every one once
        EXPECT_EQ(reached(going), std::vector{going});
        watchers[static_cast<std::size_t>(going) - 1].reset();
        EXPECT_EQ(reached(going), std::vector<int>{});
        const int staying = 1 + (step + 1) * 7 % kMany;
        EXPECT_EQ(reached(staying), step + 1 < kMany ? std::vector{staying} : std::vector<int>{});
    }
}

TEST_F(NotificationsTest, FiltersThatStayAreReachedWhenManyWent) {
    using Ids = std::vector<int>;
    CSettlingWatcher late(nullptr, nullptr, nullptr);
    {
        CSettlingWatcher many(nullptr, nullptr, nullptr); // results that have no field
        for (int result = 0; result < 40; ++result) {
            many.AddSignal(5000 + result, kNoDetector);
        }
        late.AddSignal(kResultCarrierJitter, kNoDetector);
    }
    NotifyNewData(kResultSyncFrameRate, 0);
    EXPECT_EQ((NotifyNewData(kSingle, 0), Reached()), (Ids{kSingle, kResultSyncFrameRate}));
    late.Start(1);
    host.application.carrierResults.jitter = 1.0;
    NotifyNewData(kResultCarrierJitter, 0);
    RunPendingWakeUp();
    EXPECT_EQ(Held(late), std::vector{1.0});
    for (int result = 0; result < 40; ++result) { // there is room again behind those that stayed
        late.AddSignal(6000 + result, kNoDetector);
    }
    EXPECT_EQ((NotifyNewData(kSingle, 0), Reached()), Ids{kSingle});
}

TEST_F(NotificationsTest, AllocateNothing) {
    const std::size_t before = allocationCount;
    for (int i = 0; i < 100; ++i) {
        NotifyNewData(kSingle, 0);
        NotifyNewData(kBlock, 1);
        NotifyNewFFTData(kResultFftDetectorA, 1);
        NotifyNewData(4321, 0);
    }
    EXPECT_EQ(allocationCount, before);
    EXPECT_TRUE(RunPendingWakeUp()); // they did arrive
}

} // namespace kalvio::test
