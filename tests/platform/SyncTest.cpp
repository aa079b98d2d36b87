#include "platform/Sync.h"

#include "platform/Thread.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

#include <ctime>
#include <memory>
#include <vector>

namespace kalvio {
namespace {

using test::ManualClock;

// Lets another thread run until the condition holds.
template<typename Condition>
void AwaitTrue(Condition condition) {
    while (!condition()) {
        SystemClock().Sleep(0);
    }
}

TEST(MultiLock, TakesTheLowestEventAndOnlyThatOne) {
    CEvent a;
    CEvent b;
    CEvent c;
    CMultiLock lock({&a, &b, &c});
    c.SetEvent();
    b.SetEvent();
    b.SetEvent(); // no count
    EXPECT_EQ(lock.Wait(), 1);
    EXPECT_EQ(lock.Wait(), 2);
    EXPECT_EQ(lock.Wait(0), CMultiLock::kTimedOut);
}

TEST(MultiLock, TimesOutByTheClockInForceEvenWhenItWraps) {
    ManualClock clock(0xFFFFFFF0);
    CEvent event;
    EXPECT_FALSE(event.Wait(0));
    std::atomic<bool> returned{false};
    const auto thread = Thread::Start([&] {
        const std::uint32_t start = GetTickCount();
        EXPECT_FALSE(event.Wait(100));
        EXPECT_GE(GetTickCount() - start, 100U);
        returned = true;
    });
    AwaitTrue([&] {
        clock.Advance(1);
        return returned.load();
    });
    EXPECT_TRUE(thread->WaitForEnd(kInfinite));
}

TEST(Event, NoWakeUpIsLostBetweenManySettersAndTakers) {
    constexpr int kRounds = 2000;
    constexpr std::size_t kSetters = 3;
    std::vector<std::unique_ptr<CEvent>> requests;
    std::vector<std::unique_ptr<CEvent>> answers;
    std::vector<CEvent*> waited;
    for (std::size_t i = 0; i < kSetters; ++i) {
        requests.push_back(std::make_unique<CEvent>());
        answers.push_back(std::make_unique<CEvent>());
        waited.push_back(requests.back().get());
    }
    std::vector<std::unique_ptr<Thread>> setters;
    for (std::size_t i = 0; i < kSetters; ++i) {
        setters.push_back(Thread::Start([&, i] {
            for (int round = 0; round < kRounds; ++round) {
                requests[i]->SetEvent();
                answers[i]->Wait(); // hangs when either wake-up is lost
            }
        }));
    }
    std::vector<int> taken(kSetters);
    CMultiLock lock(waited);
    for (std::size_t i = 0; i < kSetters * kRounds; ++i) {
        const int index = lock.Wait();
        ++taken[static_cast<std::size_t>(index)];
        answers[static_cast<std::size_t>(index)]->SetEvent();
    }
    for (std::size_t i = 0; i < kSetters; ++i) {
        EXPECT_TRUE(setters[i]->WaitForEnd(kInfinite));
        EXPECT_EQ(taken[i], kRounds);
    }
}

TEST(CriticalSection, ItsOwnerMayTakeItAgain) {
    CMutex mutex;
    const std::scoped_lock outer(mutex);
    const std::scoped_lock inner(mutex);
    std::atomic<bool> taken{true};
    Thread::Start([&] { taken = mutex.try_lock(); })->WaitForEnd(kInfinite);
    EXPECT_FALSE(taken.load());
}

TEST(Thread, IsWaitedForAndKnowsItself) {
    std::atomic<bool> inside{false};
    std::atomic<Thread*> self{nullptr};
    const auto thread = Thread::Start([&] {
        SetCurrentThreadName("a name longer than fifteen");
        AwaitTrue([&] { return self.load() != nullptr; });
        inside = self.load()->IsCurrent() && !self.load()->WaitForEnd(0);
    });
    self = thread.get();
    EXPECT_TRUE(thread->WaitForEnd(kInfinite));
    EXPECT_TRUE(thread->WaitForEnd(0));
    EXPECT_TRUE(inside.load());
    EXPECT_FALSE(thread->IsCurrent());
}

TEST(Thread, IsAbandonedButNeverKilled) {
    struct Held {
        CEvent goOn;
        std::atomic<bool> ended{false};
    };
    const auto held = std::make_shared<Held>();
    auto thread = Thread::Start([held] {
        held->goOn.Wait();
        held->ended = true;
    });
    EXPECT_FALSE(thread->WaitForEnd(1));
    thread.reset();
    EXPECT_FALSE(held->ended.load());
    held->goOn.SetEvent();
    AwaitTrue([&] { return held->ended.load() && held.use_count() == 1; });
}

TEST(Clock, TheManualClockMovesOnlyWhenTold) {
    ManualClock clock(5000);
    EXPECT_EQ(GetTickCount(), 5000U);
    Sleep(0);
    EXPECT_EQ(GetTickCount(), 5000U);
    Sleep(30);
    BusyWaitSince(5010, 100);
    EXPECT_EQ(GetTickCount(), 5110U);
    BusyWaitSince(5010, 100); // long past
    EXPECT_EQ(GetTickCount(), 5110U);
    EXPECT_EQ(clock.SleptMs(), 30U);
    clock.SetTick(0x10);
    BusyWaitSince(0xFFFFFFF0, 0x30); // across the wrap
    EXPECT_EQ(GetTickCount(), 0x20U);
    EXPECT_EQ(GetLocalTime().year, 2026);
}

TEST(Clock, TheSystemClockSleepsAndTimesOut) {
    const std::uint32_t start = GetTickCount();
    Sleep(15);
    EXPECT_GE(GetTickCount() - start, 15U);
    CEvent never;
    EXPECT_FALSE(never.Wait(15));
    EXPECT_GE(GetTickCount() - start, 30U);
    tm parts{};
    const std::time_t before = std::time(nullptr);
    const LocalTime local = GetLocalTime();
    parts.tm_year = local.year - 1900;
    parts.tm_mon = local.month - 1;
    parts.tm_mday = local.day;
    parts.tm_hour = local.hour;
    parts.tm_min = local.minute;
    parts.tm_sec = local.second;
    parts.tm_isdst = -1;
    EXPECT_LE(std::difftime(std::mktime(&parts), before), 5.0);
    EXPECT_GE(std::difftime(std::mktime(&parts), before), 0.0);
}

} // namespace
} // namespace kalvio
