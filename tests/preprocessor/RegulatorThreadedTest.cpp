#include "preprocessor/RegulatorWatcher.h"
#include "support/RegulationRig.h"

#include <thread>

namespace kalvio::test {
namespace {

using namespace NPreProcessor;

class RegulatorThreadedTest : public RegulationRig {
protected:
    RegulatorThreadedTest() {
        host.application.regulationDetails = &provider;
        provider.details = AmplitudeDetails(source);
        source.Set(kControl, 100.0);
    }

    FixedDetails provider;
    FakeSource source;
    BackgroundMeasurement measurement{host.clock, [this] { Put(kResultRmsA, 2.0 * source.Get(kControl)); }};
};

} // namespace

TEST_F(RegulatorThreadedTest, RunsToTheTargetAndReportsOnce) {
    CEvent done;
    int status = -1;
    CRegulatorWatcher watcher(&host.mainWindow, &done, &status);
    watcher.StartAndRequestNotification();
    EXPECT_TRUE(done.Wait());
    while (std::atomic_ref(status).load() == -1) {
        std::this_thread::yield(); // stored after the event
    }
    EXPECT_EQ(std::atomic_ref(status).load(), Succeeded);
    EXPECT_EQ(watcher.GetStatus(), Succeeded);
    EXPECT_NEAR(source.Get(kControl), 250.0, 0.5);
    EXPECT_EQ(PumpMessages(), 1);
}

TEST_F(RegulatorThreadedTest, StartsStopsAndUsersComeAndGoWhileTheThreadWorks) {
    StepRecord record;
    for (int run = 0; run < 200; ++run) {
        auto watcher = std::make_unique<CRegulatorWatcher>(&host.mainWindow, nullptr, nullptr);
        CRegulatorWatcher other(nullptr, nullptr, nullptr);
        source.Set(kControl, 100.0 + run);
        watcher->StartAndRequestNotification();
        for (int i = 0; i < run % 7; ++i) {
            std::this_thread::yield();
            EXPECT_NE(watcher->GetStatus(), None);
        }
        other.Start(run % 2);
        if (run % 3 == 0) {
            watcher.reset();
        }
        PumpMessages();
    }
    CEvent done;
    CRegulatorWatcher last(nullptr, &done, nullptr);
    last.StartAndRequestNotification();
    EXPECT_TRUE(done.Wait());
    EXPECT_EQ(last.GetStatus(), Succeeded);
}

TEST_F(RegulatorThreadedTest, ClosingStopsTheThreadWithTheLastUser) {
    auto first = std::make_unique<CRegulatorWatcher>(nullptr, nullptr, nullptr);
    auto last = std::make_unique<CRegulatorWatcher>(nullptr, nullptr, nullptr);
    first->Start(1);
    host.application.closing = true;
    first.reset();
    EXPECT_TRUE(preprocessor::IsThreadRunning());
    last.reset();
    EXPECT_FALSE(preprocessor::IsThreadRunning());
    host.application.closing = false;
}

} // namespace kalvio::test
