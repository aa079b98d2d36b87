#include "settling/SettlingView.h"

#include "host/HostTexts.h"
#include "settling/SettlingDetails.h"
#include "support/Golden.h"
#include "support/LayoutChecks.h"
#include "support/TestHost.h"
#include "support/WindowActs.h"

namespace kalvio::test {
namespace {

class SettlingViewTest : public ::testing::Test, protected WindowActs {
protected:
    SettlingViewTest() {
        host.application.settling = &details;
        host.application.settlingDetails = &details;
        frame = details.OpenSettlingDetails(1, nullptr);
    }

    std::vector<int> HintsOf(auto act) {
        host.hints.clear();
        act();
        std::vector<int> hints;
        for (const ViewHint& hint : std::exchange(host.hints, {})) {
            hints.push_back(hint.hint);
        }
        return hints;
    }

    TestHost host;
    CSettlingDetails details;
};

TEST_F(SettlingViewTest, ShowsTheDocumentInALegibleLayout) {
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->WindowType(), 26);
    EXPECT_EQ(frame->Panel(), -1);
    ExpectGolden(__FILE__, "windows/defaults.txt", Dump());
    ExpectSoundLayout(DescribeWindow(*frame));
}

TEST_F(SettlingViewTest, ActsReachTheDocumentOrAreRefused) {
    const struct {
        ActKind kind;
        int id;
        const char* text;
        int value;
        ActFault fault;
        std::vector<int> hints;
        int control; // and what it shows afterwards
        const char* shown;
    } acts[] = {
        {ActKind::Choose, 2803, "", 0, ActFault::None, {2803}, 2803, "None"},
        {ActKind::Type, 2813, "1", 0, ActFault::Disabled, {}, 2813, "2.50000"},
        {ActKind::Choose, 2803, "", 2, ActFault::None, {2803}, 2803, "Exponential"},
        {ActKind::Click, 2853, "", 0, ActFault::Disabled, {}, 2803, "Exponential"},
        {ActKind::Choose, 2804, "", 1, ActFault::None, {2804}, 2804, "Normal"},
        {ActKind::Click, 2854, "", 0, ActFault::None, {2854}, 2804, "Normal"},
        {ActKind::Type, 2815, "100.5", 0, ActFault::None, {}, 2815, "100.5"},
        {ActKind::Enter, 2815, "", 0, ActFault::Refused, {}, 2815, "100.5"},
        {ActKind::Type, 2815, "99.5", 0, ActFault::None, {}, 2815, "99.5"},
        {ActKind::Scroll, 2849, "", 7, ActFault::None, {2815, 2849}, 2815, "99.50000"},
        {ActKind::Type, 2824, "6000", 0, ActFault::None, {}, 2839, "7"},
        {ActKind::Focus, 2834, "", 0, ActFault::Refused, {}, 2824, "30"},
        {ActKind::Type, 2834, "9", 0, ActFault::None, {}, 2834, "9"},
        {ActKind::Enter, 2834, "", 0, ActFault::None, {2834}, 2834, "9"},
        {ActKind::Type, 2835, "44", 0, ActFault::None, {}, 2835, "44"},
        {ActKind::Enter, 2835, "", 0, ActFault::None, {2835}, 2835, "10"},
    };
    for (const auto& act : acts) {
        const CString what = Format("%d \"%s\" %d", act.id, act.text, act.value);
        const std::vector<int> hints =
            HintsOf([&] { EXPECT_EQ(Act(act.kind, act.id, act.text, act.value), act.fault) << what; });
        EXPECT_EQ(hints, act.hints) << what;
        EXPECT_EQ(TextOf(act.control), act.shown) << what;
    }
    EXPECT_EQ(details.GetCarrierInputAmplitudeTolerance(), 99.5);
    EXPECT_EQ(details.GetSyncSourceNumResults(), 7);
    EXPECT_EQ(details.GetFFTDetectorNumResults(), 9);
    EXPECT_EQ(details.GetFFTDetectorSettlingTime(), 30);
    EXPECT_TRUE(details.GetFFTDetectorAverage());
    ExpectGolden(__FILE__, "windows/changed.txt", Dump());
}

TEST_F(SettlingViewTest, DefaultsAreAskedForAndRangesShown) {
    const struct {
        ActKind kind;
        int id;
        const char* text;
    } requests[] = {
        {ActKind::SetDefault, 2808, "Set this control to its default of Normal?"},
        {ActKind::SetDefault, 2818, "Set this control to its default of 0.00100 %?"},
        {ActKind::SetDefault, 2824, "Set this control to its default of 30 ms?"},
        {ActKind::SetDefault, 2841, "Set this control to its default of 3 ms?"},
        {ActKind::SetDefault, 2850, "Set this control to its default of Off?"},
        {ActKind::ShowRange, 2810, "The valid range is 0 % to 100 %."},
        {ActKind::ShowRange, 2829, "The valid range is 0 ms to 5000 ms."},
        {ActKind::ShowRange, 2833, "The valid range is 1 to 10."},
    };
    details.SetFFTDetectorSettlingTime(250);
    details.SetSignalAnalyserFrequencyNumResults(8);
    for (const auto& request : requests) {
        host.user.Clear();
        host.user.QueueAnswer(request.id == 2841 ? BoxAnswer::No : BoxAnswer::Yes);
        FindControl(*frame, request.id)
            ->GetParent()
            ->Send(request.kind == ActKind::SetDefault ? 32789 : 32790, static_cast<WPARAM>(request.id), 0);
        ASSERT_EQ(host.user.Boxes().size(), 1U) << request.id;
        EXPECT_EQ(host.user.Texts()[0], request.text);
    }
    EXPECT_EQ(TextOf(2824), "30");
    EXPECT_EQ(details.GetFFTDetectorSettlingTime(), 30);
    EXPECT_EQ(details.GetSignalAnalyserFrequencyNumResults(), 8) << "the answer was No";
    auto* view = dynamic_cast<CSettlingView*>(frame->Children()[0]);
    view->OnShowRange(2800, 0);
    EXPECT_EQ(host.user.Boxes().size(), 1U);
    host.user.QueueAnswer(BoxAnswer::Yes);
    host.user.QueueAnswer(BoxAnswer::Yes);
    view->OnSetDefault(2860, 0);
    EXPECT_EQ(host.user.Texts().back(), "Error : No default settings");
}

TEST_F(SettlingViewTest, WindowsFollowScriptsArchivesAndOneAnother) {
    CTypedFrameWnd* const other = details.OpenSettlingDetails(1, nullptr);
    ASSERT_NE(other, frame);
    EXPECT_EQ(Act(ActKind::Choose, 2800, {}, 0), ActFault::None);
    details.SetCTDetectorTolerance(12.0);
    EXPECT_EQ(FindControl(*other, 2800)->GetText(), "None");
    EXPECT_EQ(FindControl(*other, 2813)->GetText(), "12.00000");
    EXPECT_FALSE(FindControl(*other, 2810)->IsWindowEnabled());
    CArchive stored;
    CSettlingDetails().Serialize(stored);
    CArchive archive{stored.Bytes()};
    CString error;
    ASSERT_TRUE(details.Load(archive, error)) << error;
    details.SetCTDetectorToleranceType(3); // a type without a name
    UpdateViews(nullptr, -1, nullptr, 0);
    for (CTypedFrameWnd* window : {frame, other}) {
        EXPECT_EQ(FindControl(*window, 2803)->GetText(), "");
        EXPECT_EQ(FindControl(*window, 2813)->GetText(), "2.50000");
        EXPECT_TRUE(FindControl(*window, 2810)->IsWindowEnabled());
    }
}

TEST_F(SettlingViewTest, AWindowMayCloseInsideItsHandlerAndPrints) {
    auto* view = dynamic_cast<CSettlingView*>(frame->Children()[0]);
    CDC paper(4600);
    view->Print(paper);
    ASSERT_EQ(paper.Lines().size(), 52U);
    EXPECT_EQ(paper.Lines()[3].text, "Signal Analyzer RMS amplitude tolerance\t2.50000 %");
    EXPECT_EQ(paper.Lines()[3].tabStops, (std::vector{0, 3000}));
    const int token = host.application.AddViewObserver([this](CView*, int, void*, int) { frame->Close(); });
    EXPECT_EQ(Act(ActKind::Scroll, 2849, {}, 5), ActFault::None);
    host.application.RemoveViewObserver(token);
    EXPECT_TRUE(OpenFrames().empty());
    PumpMessages();
    EXPECT_EQ(details.GetSyncSourceNumResults(), 5);
}

TEST_F(SettlingViewTest, WithoutADocumentThereIsNoWindow) {
    host.application.settlingDetails = nullptr;
    EXPECT_EQ(details.OpenSettlingDetails(1, nullptr), nullptr);
    EXPECT_EQ(host.user.Texts(), std::vector{LoadText(kTextNoWindow)});
    ASSERT_EQ(host.debugLines.size(), 1U);
    EXPECT_NE(host.debugLines[0].find("Settling details"), CString::npos);
}

} // namespace
} // namespace kalvio::test
