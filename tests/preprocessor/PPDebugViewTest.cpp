#include "preprocessor/PPDebugView.h"

#include "preprocessor/Supervision.h"
#include "support/Golden.h"
#include "support/LayoutChecks.h"
#include "support/WindowActs.h"

namespace kalvio::test {
namespace {

class PPDebugViewTest : public Supervision, protected WindowActs {
protected:
    PPDebugViewTest() {
        settling.defaults = {0, 2, 0.01, 1, false};
        host.mainWindow.MoveWindow({100, 100, 900, 700});
        CreatePPDebugWindow();
        frame = host.application.FindSettingsWindow(36, 0);
    }

    void Wait(std::uint32_t milliseconds) {
        host.clock.Advance(milliseconds);
        PumpMessages();
    }
    void Press(int id) { EXPECT_EQ(Act(ActKind::Click, id), ActFault::None); }
};

TEST_F(PPDebugViewTest, ShowsAWatchFromItsStartToItsEnd) {
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->GetWindowRect(), (CRect{350, 325, 650, 475}));
    ExpectSoundLayout(DescribeWindow(*frame));
    CString dumps = "before\n" + Dump();
    Press(4);
    Press(2505);
    Wait(199);
    EXPECT_EQ(TextOf(2508), "0");
    Wait(1); // a value of one DSP step until it is decided
    dumps += "started\n" + Dump();
    Deliver(kBlock, {2 * kStepsPerVolt, 2 * kStepsPerVolt, 2 * kStepsPerVolt});
    dumps += "decided\n" + Dump();
    Wait(200);
    dumps += "looked at\n" + Dump();
    Press(3);
    Wait(400);
    dumps += "stopped\n" + Dump();
    ExpectGolden(__FILE__, "windows/debug.txt", dumps);
}

TEST_F(PPDebugViewTest, EveryEndHasItsWordsAndSilenceIsTold) {
    const std::pair<WPARAM, const char*> ends[] = {
        {1, "Working..."}, {5, "Working..."}, {2, "Settled"}, {4, "Failure!"}, {9, "Did not settle"}};
    for (const auto& [state, words] : ends) {
        frame->Children()[0]->Send(0x8038, state, 0);
        EXPECT_EQ(TextOf(2659), words) << state;
    }
    Press(4);
    host.clock.Advance(2500);
    preprocessor::WakeUp(preprocessor::ListIndex::Block);
    PumpMessages();
    EXPECT_EQ(TextOf(2659), "Data not arriving!");
}

TEST_F(PPDebugViewTest, TwoWindowsRunApartAndCloseWhileTheyWatch) {
    CreatePPDebugWindow();
    CTypedFrameWnd* const second = OpenFrames().back();
    ASSERT_NE(second, frame);
    Press(4);
    PerformAct(*second, {ActKind::Click, 4, {}, 0});
    PerformAct(*second, {ActKind::Close, 0, {}, 0});
    Wait(200);
    EXPECT_EQ(OpenFrames(), std::vector{frame});
    Deliver(kBlock, {5, 5, 5});
    EXPECT_EQ(TextOf(2659), "Settled");
    host.application.analyser = nullptr; // its format was taken when the window was made
    Wait(200);
    EXPECT_EQ(TextOf(2508), "0.0002");
}

} // namespace
} // namespace kalvio::test
