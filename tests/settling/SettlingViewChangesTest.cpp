#include "platform/Controls.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettlingWatcher.h"
#include "settling/SettlingDetails.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

// The controls of one group as the settling window has them.
class GroupControls {
public:
    GroupControls(CView& view, int group)
        : type(2800 + group, &view),
          tolerance(2810 + group, &view),
          time(2820 + group, &view),
          count(2830 + group, &view),
          spin(2840 + group, &view),
          average(2850 + group, &view) {
        type.AddString("None", 0);
        type.AddString("Normal", 1);
        type.AddString("Exponential", 2);
        spin.SetBuddy(&count);
        spin.SetRange(-100, 100); // wider than the field, so that the document has to refuse
        tolerance.SetDecimalPlaces(5);
    }
    CComboBox type;
    CMultiBaseEdit tolerance;
    CMultiBaseEdit time;
    CMultiBaseEdit count;
    CSpinButtonCtrl spin;
    CButton average;
};

class SettlingViewChangesTest : public ::testing::Test {
protected:
    SettlingViewChangesTest() {
        host.application.settling = &details;
        host.application.settlingDetails = &details;
        preprocessor::SetThreaded(false);
    }
    ~SettlingViewChangesTest() override { preprocessor::SetThreaded(true); }

    TestHost host;
    CSettlingDetails details;
    CView view;
};

TEST_F(SettlingViewChangesTest, EachControlReachesItsField) {
    GroupControls controls(view, 9);
    controls.type.SetCurSelFromItemData(0);
    controls.tolerance.SetText("12.5");
    controls.time.SetText("250");
    controls.spin.SetPos(7);
    controls.average.SetCheck(1);
    for (const int id : {2809, 2819, 2829, 2849, 2859, 1234}) {
        EXPECT_EQ(details.OnViewChanged(&view, id), 1) << id;
    }
    EXPECT_EQ(details.GetSyncSourceToleranceType(), 0);
    EXPECT_EQ(details.GetSyncSourceTolerance(), 12.5);
    EXPECT_EQ(details.GetSyncSourceSettlingTime(), 250);
    EXPECT_EQ(details.GetSyncSourceNumResults(), 7);
    EXPECT_TRUE(details.GetSyncSourceAverage());
    EXPECT_EQ(details.GetInputFrameRateNumResults(), 3) << "another group changed";
}

TEST_F(SettlingViewChangesTest, RefusalsTellRestoreAndFocus) {
    GroupControls controls(view, 4);
    const struct {
        int id;
        CWnd* edit;
        const char* typed;
        const char* shown; // afterwards: a refused tolerance stays, a time and a count are restored
    } table[] = {
        {2814, &controls.tolerance, "100.5", "100.5"},
        {2814, &controls.tolerance, "-1", "-1"},
        {2814, &controls.tolerance, "abc", "abc"},
        {2824, &controls.time, "6000", "30"},
        {2824, &controls.time, "-5", "30"},
        {2844, &controls.count, "11", "3"},
        {2834, &controls.count, "0", "3"},
    };
    for (const auto& row : table) {
        host.user.Clear();
        controls.average.SetFocus();
        row.edit->SetText(row.typed);
        if (row.edit == &controls.count) {
            controls.spin.SetPos(ParseLeadingInt(row.typed));
        }
        EXPECT_EQ(details.OnViewChanged(&view, row.id), 0) << row.typed;
        EXPECT_EQ(row.edit->GetText(), row.shown);
        EXPECT_TRUE(row.edit->HasFocus()) << row.typed;
        EXPECT_EQ(host.user.Boxes().size(), 1U) << row.typed;
    }
    EXPECT_EQ(details.GetFFTDetectorTolerance(), 2.5);
    EXPECT_EQ(details.GetFFTDetectorSettlingTime(), 30);
    EXPECT_EQ(details.GetFFTDetectorNumResults(), 3);
}

// A running watch takes view changes at once; automation changes only at its next start.
TEST_F(SettlingViewChangesTest, ViewChangesReachRunningFiltersAndAutomationDoesNot) {
    GroupControls controls(view, 0);
    CSettlingWatcher watcher(nullptr, nullptr, nullptr);
    ASSERT_EQ(watcher.AddSignal(kResultRmsA, kNoDetector), 1);
    SettlingVerdict verdict;
    ASSERT_TRUE(watcher.GetVerdict(0, verdict));
    EXPECT_EQ(verdict.needed, 3);
    details.SetSignalAnalyserAmplitudeNumResults(5);
    ASSERT_TRUE(watcher.GetVerdict(0, verdict));
    EXPECT_EQ(verdict.needed, 3);
    controls.spin.SetPos(6);
    EXPECT_EQ(details.OnViewChanged(&view, 2840), 1);
    ASSERT_TRUE(watcher.GetVerdict(0, verdict));
    EXPECT_EQ(verdict.needed, 6);
}

} // namespace
} // namespace kalvio::test
