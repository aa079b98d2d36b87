#include "host/ProgressWnd.h"
#include "platform/ControlState.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

TEST(ProgressWnd, ShowsAPositionWithinItsRangeUntilItIsCancelled) {
    const TestHost host;
    CDialog owner;
    static constexpr DialogTemplate kOwner{7, "Owner", {0, 0, 100, 50}, {}};
    ASSERT_TRUE(owner.Create(kOwner, nullptr));
    {
        CProgressWnd window(&owner, "Caption");
        window.SetText("before it shows");
        window.GoModal("Title");
        EXPECT_FALSE(owner.IsWindowEnabled());
        EXPECT_EQ(window.Title() + "|" + window.GetText() + "|" +
                      window.GetDlgItem(kCtrlProgressText)->GetText(),
                  "Title|Caption|before it shows");
        const auto shown = [&] {
            const ControlState bar = DescribeWindow(*window.GetDlgItem(kCtrlProgressBar));
            return Format("%d..%d: %d", bar.low, bar.high, bar.position);
        };
        window.SetRange(10, 30, 8);
        EXPECT_EQ(shown(), "10..30: 10");
        window.StepIt();
        EXPECT_EQ(shown(), "10..30: 18");
        window.SetPos(-1);
        EXPECT_EQ(shown(), "10..30: 10");
        window.SetRange(5, 1, 1);
        EXPECT_EQ(shown(), "5..5: 5");
        window.PeekAndPump(false);
        PerformAct(window, {ActKind::Click, IDCANCEL, {}, 0});
        EXPECT_FALSE(window.Cancelled());
        window.PeekAndPump(true);
        PerformAct(window, {ActKind::Click, IDCANCEL, {}, 0});
        EXPECT_TRUE(window.Cancelled());
    }
    EXPECT_TRUE(owner.IsWindowEnabled());
}

} // namespace
} // namespace kalvio::test
