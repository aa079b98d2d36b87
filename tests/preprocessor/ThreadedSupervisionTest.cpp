#include "preprocessor/Supervision.h"

#include <thread>

namespace kalvio::test {

namespace {

using namespace NPreProcessor;

// The real thread under the manual clock: nothing here waits in real time.
class ThreadedSupervisionTest : public Supervision {
protected:
    ThreadedSupervisionTest() {
        settling.defaults = {0, 2, 0.0, 1, false};
        preprocessor::SetThreaded(true);
    }
    ~ThreadedSupervisionTest() override {
        preprocessor::SetThreaded(false); // ends the thread before its clock and its host
    }

    void LetTimePass(std::uint32_t milliseconds) {
        host.clock.Advance(milliseconds);
        std::this_thread::yield();
    }

    // Brings equal values until the event is set.
    void FeedUntil(CEvent& done, int resultID) {
        while (!done.TryTake()) {
            Bring(resultID, 5.0);
            LetTimePass(1);
        }
    }

    void ExpectAFreshWatchToSettle() {
        CEvent done;
        CSettlingWatcher watcher(nullptr, &done, nullptr);
        watcher.AddSignal(kSingle, kNoDetector);
        watcher.StartAndRequestNotification();
        FeedUntil(done, kSingle);
        EXPECT_EQ(StateOf(watcher), Settled);
    }
};

} // namespace

TEST_F(ThreadedSupervisionTest, AWatchReportsByMessageEventAndStatus) {
    for (const int result : {kSingle, kBlock}) {
        CEvent done;
        int status = -1;
        CSettlingWatcher watcher(&host.mainWindow, &done, &status);
        watcher.AddSignal(result, kNoDetector);
        watcher.StartAndRequestNotification();
        FeedUntil(done, result);
        while (std::atomic_ref(status).load() != Settled) {
            std::this_thread::yield();
        }
        host.mainWindow.messages.clear();
        EXPECT_EQ(PumpMessages(), 1); // queued before the event was set
        ASSERT_EQ(host.mainWindow.messages.size(), 1U);
        EXPECT_EQ(host.mainWindow.messages[0].wParam, static_cast<WPARAM>(Settled));
    }
}

TEST_F(ThreadedSupervisionTest, WakesWithoutDataAndJudgesThenWithoutData) {
    struct Watch final : CSettlingWatch {
        using CSettlingWatch::CSettlingWatch;
        bool Evaluate(bool newData) override {
            EXPECT_FALSE(newData);
            evaluated.SetEvent();
            return true;
        }
        CEvent evaluated;
    };
    auto watch = std::make_unique<Watch>(nullptr, nullptr, nullptr);
    {
        const std::scoped_lock guard(preprocessor::Lock());
        watch->Start(1);
    }
    while (!watch->evaluated.TryTake()) {
        LetTimePass(100);
    }
    preprocessor::SetThreaded(false); // the thread must not meet a watch half destroyed
}

TEST_F(ThreadedSupervisionTest, NotifiersAddsRemovesRestartsAndHaltsAtOnce) {
    constexpr int kDetectors = 8;
    for (int i = 0; i < kDetectors; ++i) {
        host.fftDetectors.Add("detector");
    }
    std::atomic<bool> running{true};
    std::vector<std::jthread> notifiers;
    for (int n = 0; n < 3; ++n) {
        notifiers.emplace_back([&running, n] {
            for (int i = 0; running.load(); ++i) {
                Bring(kSingle, i);
                Bring(kBlock, i);
                WriteResult(*GetResultFieldFromID(kResultFftDetectorB, 1 + n), i);
                NotifyNewFFTData(kResultFftDetectorA + i % 2, 1 + i % kDetectors);
            }
        });
    }
    {
        std::vector<std::jthread> others;
        for (int n = 0; n < 2; ++n) {
            others.emplace_back([n] {
                for (int i = 0; i < 150; ++i) {
                    CSettlingWatcher watcher(nullptr, nullptr, nullptr);
                    watcher.AddSignal(n == 0 ? kSingle : kBlock, kNoDetector);
                    watcher.StartAndRequestNotification();
                    for (int d = 1; d <= kDetectors; ++d) {
                        watcher.AddSignal(kResultFftDetectorA + d % 2, (d + i) % kDetectors + 1);
                    }
                    watcher.Start(1);
                    StateOf(watcher);
                    if (i % 3 == 0) {
                        watcher.RemoveAllSignals();
                        watcher.Start(1);
                    }
                }
            });
        }
        others.emplace_back([] {
            for (int i = 0; i < 150; ++i) {
                Halt();
                NotifyNewSettlingParams();
                Resume();
            }
        });
    }
    running = false;
    notifiers.clear();
    ExpectAFreshWatchToSettle();
}

TEST_F(ThreadedSupervisionTest, DestructionWhileTheHostClosesStopsTheThreadAtOnce) {
    auto watcher = std::make_unique<CSettlingWatcher>(nullptr, nullptr, nullptr);
    watcher->Start(1);
    EXPECT_TRUE(preprocessor::IsThreadRunning());
    const std::uint32_t before = GetTickCount();
    host.application.closing = true;
    watcher.reset();
    EXPECT_FALSE(preprocessor::IsThreadRunning());
    EXPECT_EQ(GetTickCount(), before);
    host.application.closing = false;
    ExpectAFreshWatchToSettle(); // and the next start makes a new one
}

namespace {

// Holds up the first thread that names itself.
class HoldingApplication final : public TestApplication {
public:
    CEvent entered;
    CEvent release;
    CEvent ended; // the held thread is gone

    void SetThreadName(const CString& name) override {
        struct AtThreadEnd {
            CEvent* told = nullptr;
            ~AtThreadEnd() {
                if (told != nullptr) {
                    told->SetEvent();
                }
            }
        };
        thread_local AtThreadEnd atEnd;
        EXPECT_EQ(name, "Preproc");
        if (m_hold.exchange(false)) {
            atEnd.told = &ended;
            entered.SetEvent();
            release.Wait();
        }
    }

private:
    std::atomic<bool> m_hold{true};
};

} // namespace

TEST_F(ThreadedSupervisionTest, AHungThreadIsAbandonedAfterTwoSecondsAndLeavesWhenItWakes) {
    HoldingApplication application;
    application.settling = &settling;
    InstallHostApplication(&application);
    auto watcher = std::make_unique<CSettlingWatcher>(nullptr, nullptr, nullptr);
    watcher->Start(1);
    application.entered.Wait();

    const std::uint32_t before = GetTickCount();
    application.closing = true;
    {
        const std::jthread time([this](const std::stop_token& stopped) {
            while (!stopped.stop_requested()) {
                LetTimePass(10);
            }
        });
        watcher.reset();
    }
    EXPECT_GE(GetTickCount() - before, 2000U);
    EXPECT_FALSE(preprocessor::IsThreadRunning());

    application.closing = false;
    ExpectAFreshWatchToSettle(); // on another thread
    application.release.SetEvent();
    application.ended.Wait();
    ExpectAFreshWatchToSettle(); // which the old one left alone
    preprocessor::SetThreaded(false);
    InstallHostApplication(&host.application);
}

} // namespace kalvio::test
