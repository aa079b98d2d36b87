#include "platform/Window.h"

#include "platform/Sync.h"
#include "platform/Thread.h"
#include "testing/ManualClock.h"

#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace kalvio {
namespace {

using test::ManualClock;

// Notes its messages; the answer is wParam + 1.
class Recorder : public CWnd {
public:
    using CWnd::CWnd;
    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM) override {
        seen.push_back(message);
        if (onMessage) {
            onMessage();
        }
        return static_cast<LRESULT>(wParam) + 1;
    }
    std::vector<unsigned> seen;
    std::function<void()> onMessage;
};

void RunInThread(const std::function<void()>& body) {
    const auto thread = Thread::Start(body);
    while (!thread->WaitForEnd(0)) {
        PumpMessages();
    }
}

TEST(Messages, AreDispatchedInOrderByTheThreadOfTheWindow) {
    Recorder window;
    window.Post(1, 0, 0);
    RunInThread([&] { window.Post(2, 0, 0); });
    window.Post(3, 0, 0);
    RunInThread([] { EXPECT_EQ(PumpMessages(), 0); }); // not that thread's
    PumpMessages();
    EXPECT_EQ(window.seen, (std::vector<unsigned>{1, 2, 3}));
    EXPECT_EQ(PumpMessages(), 0);
}

TEST(Messages, APumpLeavesWhatItsHandlersPost) {
    Recorder window;
    window.onMessage = [&] { window.Post(9, 0, 0); };
    window.Post(1, 0, 0);
    EXPECT_EQ(PumpMessages(), 1);
    EXPECT_EQ(PumpMessages(), 1);
    EXPECT_EQ(window.seen, (std::vector<unsigned>{1, 9}));
}

TEST(Messages, ANestedPumpGoesOnWhereTheOuterOneStands) {
    Recorder window;
    window.onMessage = [&] { PumpMessages(); };
    window.Post(1, 0, 0);
    window.Post(2, 0, 0);
    EXPECT_EQ(PumpMessages(), 1);
    EXPECT_EQ(window.seen, (std::vector<unsigned>{1, 2}));
}

TEST(Messages, SendGivesTheAnswerFromEitherSide) {
    Recorder window;
    EXPECT_EQ(window.Send(5, 41, 0), 42);
    LRESULT answer = 0;
    RunInThread([&] { answer = window.Send(6, 6, 0); });
    EXPECT_EQ(answer, 7);
    EXPECT_EQ(window.seen, (std::vector<unsigned>{5, 6}));
}

TEST(Messages, TwoThreadsMaySendToEachOther) {
    Recorder mine;
    WindowHandle theirs = WindowHandle::None;
    CEvent ready;
    LRESULT fromMine = 0;
    const auto thread = Thread::Start([&] {
        Recorder window;
        theirs = window.Handle();
        ready.SetEvent();
        fromMine = mine.Send(1, 1, 0);
        WaitAndPumpMessages(kInfinite); // only when the other's message was not answered while sending
    });
    ready.Wait();
    EXPECT_EQ(SendToWindow(theirs, 2, 2, 0), 3);
    PostToWindow(theirs, 3, 0, 0);
    while (!thread->WaitForEnd(0)) {
        PumpMessages();
    }
    EXPECT_EQ(fromMine, 2);
}

TEST(Messages, NotifyIsDirectInItsOwnThreadAndWaitsForNobodyElse) {
    Recorder window;
    EXPECT_TRUE(NotifyWindow(window.Handle(), 1, 0, 0));
    EXPECT_EQ(window.seen.size(), 1U);
    const auto thread = Thread::Start([&] { EXPECT_TRUE(NotifyWindow(window.Handle(), 2, 0, 0)); });
    EXPECT_TRUE(thread->WaitForEnd(kInfinite)); // although nobody pumps
    EXPECT_EQ(window.seen.size(), 1U);
    EXPECT_EQ(PumpMessages(), 1);
}

TEST(Messages, ToAWindowThatIsGoneGoNowhere) {
    auto window = std::make_unique<Recorder>();
    const WindowHandle handle = window->Handle();
    window->Post(1, 0, 0);
    SetTimer(handle, 1, 1);
    window.reset();
    EXPECT_FALSE(PostToWindow(handle, 1, 0, 0));
    EXPECT_FALSE(NotifyWindow(handle, 1, 0, 0));
    EXPECT_EQ(SendToWindow(handle, 1, 1, 0), 0);
    EXPECT_EQ(PumpMessages(), 0);
    Recorder next;
    EXPECT_NE(next.Handle(), handle);
}

TEST(Messages, ASenderIsFreedWhenTheWindowOrItsThreadGoes) {
    for (const bool threadEnds : {false, true}) {
        std::unique_ptr<Recorder> window;
        CEvent made;
        CEvent mayGo;
        const auto owner = Thread::Start([&] {
            window = std::make_unique<Recorder>();
            made.SetEvent();
            mayGo.Wait();
            if (!threadEnds) {
                window.reset();
            }
        });
        made.Wait();
        const WindowHandle handle = window->Handle();
        const auto sender = Thread::Start([=] { EXPECT_EQ(SendToWindow(handle, 1, 1, 0), 0); });
        EXPECT_FALSE(sender->WaitForEnd(1));
        mayGo.SetEvent();
        EXPECT_TRUE(sender->WaitForEnd(kInfinite));
        EXPECT_TRUE(owner->WaitForEnd(kInfinite));
        EXPECT_FALSE(PostToWindow(handle, 1, 0, 0));
    }
}

TEST(Timers, FireByTheClockInForceAndDoNotCatchUp) {
    ManualClock clock(0xFFFFFE00); // wraps on the way
    Recorder window;
    SetTimer(window.Handle(), 1, 1000);
    clock.Advance(999);
    EXPECT_EQ(PumpMessages(), 0);
    clock.Advance(1);
    EXPECT_EQ(PumpMessages(), 1);
    clock.Advance(3500);
    EXPECT_EQ(PumpMessages(), 1);
    EXPECT_EQ(PumpMessages(), 0);
    EXPECT_EQ(window.seen, (std::vector<unsigned>{WM_TIMER, WM_TIMER}));
    KillTimer(window.Handle(), 1);
    clock.Advance(5000);
    EXPECT_EQ(PumpMessages(), 0);
}

TEST(Timers, OneHandlerMayKillTheOther) {
    ManualClock clock;
    Recorder window;
    SetTimer(window.Handle(), 1, 10);
    SetTimer(window.Handle(), 2, 10);
    window.onMessage = [&] { KillTimer(window.Handle(), 2); };
    clock.Advance(10);
    EXPECT_EQ(PumpMessages(), 1);
}

TEST(Timers, AreWaitedForLikeMessages) {
    Recorder window;
    SetTimer(window.Handle(), 1, 10);
    const std::uint32_t start = GetTickCount();
    EXPECT_EQ(WaitAndPumpMessages(kInfinite), 1); // the timer ends the wait
    EXPECT_GE(GetTickCount() - start, 10U);
    KillTimer(window.Handle(), 1);
    EXPECT_EQ(WaitAndPumpMessages(5), 0);
    const auto thread = Thread::Start([&] { window.Post(7, 0, 0); });
    EXPECT_EQ(WaitAndPumpMessages(kInfinite), 1);
    EXPECT_EQ(window.seen.back(), 7U);
    EXPECT_TRUE(thread->WaitForEnd(kInfinite));
}

TEST(Windows, KnowParentChildrenAndFocus) {
    auto parent = std::make_unique<CWnd>(1);
    CWnd child(7, parent.get());
    EXPECT_EQ(parent->GetDlgItem(7), &child);
    EXPECT_EQ(parent->GetDlgItem(8), nullptr);
    child.SetFocus();
    EXPECT_TRUE(child.HasFocus());
    parent->SetFocus();
    EXPECT_FALSE(child.HasFocus());
    RunInThread([&] {
        CWnd other;
        other.SetFocus();
        EXPECT_TRUE(other.HasFocus());
    });
    EXPECT_TRUE(parent->HasFocus());
    parent.reset();
    EXPECT_EQ(child.GetParent(), nullptr);
}

} // namespace
} // namespace kalvio
