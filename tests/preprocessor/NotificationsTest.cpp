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

class NotificationsTest : public Supervision {
protected:
    NotificationsTest() {
        for (const int result : {kSingle, kBlock}) {
            EXPECT_EQ(watcher.AddSignal(result, kNoDetector), 1);
        }
        watcher.Start(1);
    }

    CSettlingWatcher watcher{nullptr, nullptr, nullptr};
};

} // namespace

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
    for (int detector = 1; detector <= kMany; ++detector) {
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
        for (int other = 0; other < kMany; ++other) {
            const int detector = 1 + other * 7 % kMany;
            EXPECT_EQ(reached(detector), other > step ? std::vector{detector} : std::vector<int>{});
        }
    }
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
