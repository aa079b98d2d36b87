#include "settling/SettlingView.h"

#include "host/HostTexts.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettlingWatcher.h"
#include "settling/SettlingDetails.h"
#include "support/DocumentScript.h"

namespace kalvio::test {
namespace {

class SettlingViewTest : public ::testing::Test {
protected:
    SettlingViewTest() {
        host.application.settling = &details;
        host.application.settlingDetails = &details;
        preprocessor::SetThreaded(false);
    }
    ~SettlingViewTest() override { preprocessor::SetThreaded(true); }

    TestHost host;
    CSettlingDetails details;
};

class SettlingActsTest : public SettlingViewTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(SettlingActsTest, ActByAct) {
    CSettlingWatcher watcher(nullptr, nullptr, nullptr);
    ASSERT_EQ(watcher.AddSignal(kResultRmsA, kNoDetector), 1);
    DocumentScript script(host, details, __FILE__, GetParam());
    script.words["open"] = [&](const std::string&) {
        CTypedFrameWnd* const frame = details.OpenSettlingDetails(1, nullptr);
        script.window = frame;
        script.Note(Format("window type %d, panel %d", frame->WindowType(), frame->Panel()));
    };
    script.words["spin"] = [&](const std::string& rest) { // ID LEAST MOST
        std::istringstream words(rest);
        int id = 0;
        int least = 0;
        int most = 0;
        words >> id >> least >> most;
        dynamic_cast<CSpinButtonCtrl&>(*FindControl(*script.window, id)).SetRange(least, most);
    };
    script.words["needed"] = [&](const std::string&) {
        SettlingVerdict verdict;
        EXPECT_TRUE(watcher.GetVerdict(0, verdict));
        script.Note(Format("%d results", verdict.needed));
    };
    script.words["unnamed"] = [this](const std::string&) { // a type without a name
        details.SetCTDetectorToleranceType(3);
        UpdateViews(nullptr, -1, nullptr, 0);
    };
    script.Play();
    EXPECT_TRUE(OpenFrames().empty());
}

INSTANTIATE_TEST_SUITE_P(Windows, SettlingActsTest,
                         ::testing::Values("windows/settling.txt", "windows/acts.txt"));

TEST_F(SettlingViewTest, PrintsOnTabStopsOfThePaper) {
    CDC paper(4600);
    dynamic_cast<CPrintView&>(*details.OpenSettlingDetails(1, nullptr)->Children()[0]).Print(paper);
    EXPECT_EQ(paper.Lines().at(3).tabStops, (std::vector{0, 3000}));
}

// Its boxes let messages run, and the user closes the window that asks.
class ClosingUser final : public UserInterface {
public:
    ClosingUser() : m_previous(InstallUserInterface(this)) {}
    ~ClosingUser() override { InstallUserInterface(m_previous); }
    BoxAnswer ShowBox(const CString&, BoxButtons, BoxIcon, const CString&) override {
        OpenFrames().front()->Close();
        PumpMessages();
        return BoxAnswer::Yes;
    }
    CString BrowseForFile(const CString&, const CString&) override { return {}; }
    void ShowWaitCursor(bool) override {}
    void DialogShown(CDialog&) override {}
    void DialogClosed(CDialog&) override {}

private:
    UserInterface* m_previous;
};

TEST_F(SettlingViewTest, AWindowThatIsClosedWhileItAsksStaysUntilItHasItsAnswer) {
    const ClosingUser user;
    CTypedFrameWnd* const frame = details.OpenSettlingDetails(1, nullptr);
    const WindowHandle handle = frame->Handle();
    details.SetFFTDetectorSettlingTime(250);
    EXPECT_TRUE(PerformAct(*frame, {ActKind::SetDefault, 2824, {}, 0}).Ok());
    EXPECT_EQ(details.GetFFTDetectorSettlingTime(), 30);
    EXPECT_EQ(SnapshotOf(handle).handle, handle);
    host.clock.Advance(100);
    PumpMessages();
    EXPECT_EQ(SnapshotOf(handle).handle, WindowHandle::None);
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
