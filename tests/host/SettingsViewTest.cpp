// What the host does for the windows of documents: panels, acts, closing, sheets, print-outs, snapshots.

#include "host/SettingsView.h"
#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "host/PropertySheet.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <thread>

namespace kalvio::test {
namespace {

enum : int { kNumber = 10, kTick, kHex, kBar, kStop };

constexpr ControlTemplate kControls[] = {
    {ControlKind::Static, 0, "Number", {2, 2, 40, 10}},
    {ControlKind::Edit, kNumber, "5", {42, 2, 80, 14}},
    {ControlKind::CheckBox, kTick, "Tick", {2, 16, 40, 26}},
    {ControlKind::HexEdit, kHex, "", {2, 28, 80, 40}},
    {ControlKind::ScrollBar, kBar, "", {2, 42, 80, 52}},
    {ControlKind::PushButton, kStop, "Stop", {2, 54, 40, 66}},
};
constexpr DialogTemplate kPanel{700, "Panel", {0, 0, 84, 70}, kControls};

class View final : public CSettingsView {
public:
    explicit View(CString& log) : m_log(log) {}
    ~View() override { m_log += "gone "; }
    int InitialiseView(int panel, CPoint) override {
        m_log += Format("init%d ", panel);
        AddPanelToFrame(kPanel, 5120);
        return startable ? CreatePanels() : 0;
    }
    int OnControlChanged(int id) override {
        m_log += Format("c%d ", id);
        if (id == kStop) {
            GetParentFrame()->Close();
        }
        return id == kTick ? 0 : 1;
    }
    void OnControlUpdateHardware(int id) override { m_log += Format("h%d ", id); }
    LRESULT OnSetDefault(WPARAM id, LPARAM) override {
        m_log += Format("d%d ", static_cast<int>(id));
        return 0;
    }
    void OnTimer(unsigned timer) override { m_log += Format("t%u ", timer); }
    void OnDestroy() override { m_log += Format("destroy%zu ", Panels().size()); }
    void SetPrintTabStops(CDC* context) override {
        context->SetTabStops({0, context->HorizontalResolution() / 2});
    }
    void PrintDetails(CDC*) override {
        PrintTitle("Panel");
        PrintField("Level", "1.0", "V");
        PrintText("1\t2");
    }
    static inline bool startable = true;

private:
    CString& m_log;
};

class SettingsViewTest : public ::testing::Test {
protected:
    void TearDown() override { View::startable = true; }
    CTypedFrameWnd* Open() {
        return host.application.Windows().Open([this] { return std::make_unique<View>(log); }, kTextOn,
                                               {700, -1, nullptr});
    }
    CString Log() { return std::exchange(log, CString()); }

    CString log;
    TestHost host;
};

TEST_F(SettingsViewTest, ActsReachTheViewAndTheFrameClosesInsideItsOwnHandler) {
    CTypedFrameWnd* frame = Open();
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(Log(), "init700 ");
    const auto act = [&](ActKind kind, int id, const char* text = "", int value = 0) {
        return PerformAct(*frame, {kind, id, text, value}).fault;
    };
    EXPECT_EQ(act(ActKind::Type, kNumber, "7"), ActFault::None);
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(act(ActKind::Click, kTick), ActFault::Refused) << "what was typed is told before";
    EXPECT_EQ(Log(), "c10 h10 c11 ");
    EXPECT_EQ(act(ActKind::SetDefault, kNumber), ActFault::None);
    EXPECT_EQ(act(ActKind::Type, kHex, "0g"), ActFault::Refused);
    EXPECT_EQ(act(ActKind::Type, kHex, "01 a5"), ActFault::None);
    EXPECT_EQ(act(ActKind::Key, kBar, "", kKeyEnd), ActFault::None);
    EXPECT_EQ(Log(), "d10 c12 h12 c13 h13 ");
    const ControlState seen = SnapshotOf(frame->Handle());
    EXPECT_EQ(DumpWindow(seen.children[0].children[0]), "700 dialog \"Panel\"\n"
                                                        "  0 text \"Number\"\n"
                                                        "  10 edit (Number) \"7\"\n"
                                                        "  11 check box \"Tick\" ticked\n"
                                                        "  12 edit (Number) \"01 a5\"\n"
                                                        "  13 scroll bar (Number) \"\" focus 100 of 0..100\n"
                                                        "  14 button \"Stop\"\n");
    EXPECT_EQ(act(ActKind::Click, kStop), ActFault::None);
    EXPECT_EQ(Log(), "c14 destroy1 h14 ") << "closed, and alive while its handler runs";
    EXPECT_TRUE(OpenFrames().empty());
    PumpMessages();
    EXPECT_EQ(Log(), "gone ");
}

TEST_F(SettingsViewTest, AViewThatCannotStartIsNotShown) {
    View::startable = false;
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(Log(), "init700 destroy1 gone ");
    EXPECT_EQ(host.user.Boxes().size(), 1U);
    EXPECT_EQ(
        host.application.Windows().Open([]() -> std::unique_ptr<CView> { throw int{kTextOff}; }, kTextOn),
        nullptr);
    EXPECT_EQ(host.user.Texts().back(), LoadText(kTextOff));
}

TEST_F(SettingsViewTest, PrintsOnTabStopsAndIsReadFromAnyThread) {
    CTypedFrameWnd* frame = Open();
    auto* view = dynamic_cast<View*>(frame->Children()[0]);
    CDC paper(1000);
    view->Print(paper);
    view->Print(paper);
    ASSERT_EQ(paper.Lines().size(), 6U);
    EXPECT_EQ(view->Lines().size(), 3U) << "of the last time";
    EXPECT_EQ(paper.Lines()[1].text, "Level\t1.0 V");
    EXPECT_EQ(paper.Lines()[2].tabStops, (std::vector{0, 500}));
    SetTimer(view->Handle(), 3, 10);
    ControlState seen;
    std::atomic<bool> done{false};
    std::thread reader([&] {
        seen = SnapshotOf(frame->Handle());
        done = true;
    });
    while (!done) {
        PumpMessages();
    }
    reader.join();
    EXPECT_EQ(seen.handle, frame->Handle());
    view->ShowControl(kTick, false);
    EXPECT_FALSE(view->Find<CButton>(kTick)->IsWindowVisible());
    view->ShowControl(kTick, true);
    EXPECT_TRUE(view->Find<CButton>(kTick)->IsWindowVisible());
    const std::uint64_t before = CurrentRevision();
    view->SetControlText(kNumber, "9");
    const ControlState changed = SnapshotOf(frame->Handle(), before);
    EXPECT_EQ(changed.children[0].children[0].children.size(), 1U) << "the changed control alone";
    frame->Close();
}

enum : int { kFirstPage = 800, kSecondPage };

class Page final : public CPropertyPage {
public:
    Page(const DialogTemplate& layout, CString& log) : CPropertyPage(layout), m_log(log) {}
    bool OnSetActive() override { return Note("active"); }
    bool OnKillActive() override { return Note("left"); }
    bool OnApply() override { return Note("applied") && refusals-- <= 0 && CPropertyPage::OnApply(); }
    void OnCancel() override { Note("cancelled"); }
    int OnControlChanged(int) override {
        SetModified();
        return 1;
    }
    int refusals = 0;

private:
    bool Note(const char* what) {
        m_log += Format("%s%d ", what, TemplateId());
        return true;
    }
    CString& m_log;
};

TEST_F(SettingsViewTest, ASheetAppliesEveryPageOrStaysOpen) {
    static constexpr ControlTemplate kOne[] = {{ControlKind::Edit, kNumber, "", {0, 0, 40, 12}}};
    static constexpr DialogTemplate kFirst{kFirstPage, "First", {0, 0, 100, 50}, kOne};
    static constexpr DialogTemplate kSecond{kSecondPage, "Second", {0, 0, 100, 50}, kOne};
    Page first(kFirst, log);
    Page second(kSecond, log);
    CPropertySheet sheet("Setup");
    sheet.AddPage(&first);
    sheet.AddPage(&second);
    second.refusals = 1;
    host.user.onDialog = [&](CDialog& shown) {
        const auto act = [&](ActKind kind, int id, const char* text = "", int value = 0) {
            return PerformAct(shown, {kind, id, text, value}).fault;
        };
        EXPECT_EQ(act(ActKind::Click, kSheetApply), ActFault::Disabled) << "nothing is changed";
        EXPECT_EQ(act(ActKind::Choose, kSheetTabs, "", 1), ActFault::None);
        EXPECT_FALSE(first.IsWindowVisible());
        second.OnControlChanged(kNumber);
        EXPECT_EQ(act(ActKind::Click, kSheetApply), ActFault::None);
        EXPECT_TRUE(second.IsModified()) << "refused";
        EXPECT_EQ(act(ActKind::Click, IDOK), ActFault::None);
    };
    EXPECT_EQ(sheet.DoModal(), IDOK);
    EXPECT_EQ(Log(),
              "active800 left800 active801 left801 applied800 applied801 left801 applied800 applied801 ");
    host.user.onDialog = [&](CDialog& shown) { PerformAct(shown, {ActKind::Close, 0, {}, 0}); };
    EXPECT_EQ(sheet.DoModal(), IDCANCEL);
    EXPECT_EQ(Log(), "active801 cancelled801 ");
}

TEST_F(SettingsViewTest, TheUpdaterManagerKnowsWhoShowsAControl) {
    CView one;
    CView other;
    CUpdaterManager& updaters = host.application.Updaters();
    updaters.Link(&one, std::vector{1, 2});
    updaters.Link(&other, std::vector{2});
    EXPECT_EQ(updaters.ViewsOf(2), (std::vector<CView*>{&one, &other}));
    EXPECT_EQ(updaters.Count(&one), 2U);
    updaters.Unlink(&one);
    EXPECT_EQ(updaters.ViewsOf(2), std::vector<CView*>{&other});
}

} // namespace
} // namespace kalvio::test
