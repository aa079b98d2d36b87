// Windows by name: scripts that open them and act on them, and what they look like.

#include "platform/UserInterface.h"
#include "reference_host/application/ReferenceHost.h"
#include "reference_host/script/ReferenceScriptHost.h"
#include "reference_host/script/ScriptRunner.h"
#include "reference_host/windows/WindowPictures.h"
#include "support/Golden.h"
#include "testing/ManualClock.h"

#include <sstream>

namespace kalvio::reference_host {
namespace {

// Passes dialogs on to the host's windows, as a program with a user does.
class DialogRelay final : public UserInterface {
public:
    explicit DialogRelay(ReferenceHost& host) : m_host(host), m_previous(InstallUserInterface(this)) {}
    ~DialogRelay() override { InstallUserInterface(m_previous); }
    BoxAnswer ShowBox(const CString& text, BoxButtons, BoxIcon, const CString&) override {
        boxes.push_back(text);
        return BoxAnswer::Yes;
    }
    CString BrowseForFile(const CString&, const CString&) override { return {}; }
    void ShowWaitCursor(bool) override {}
    void DialogShown(CDialog& dialog) override { m_host.WindowsByName().DialogShown(dialog); }
    void DialogClosed(CDialog& dialog) override { m_host.WindowsByName().DialogClosed(dialog); }

    std::vector<CString> boxes;

private:
    ReferenceHost& m_host;
    UserInterface* m_previous;
};

class WindowSessionTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_host.BringUp().Ok()); }

    // Runs lines; what they show, and the first fault.
    std::string Run(const std::string& text, bool json = false) {
        std::ostringstream out;
        const ParsedScript script = ParseScript(text);
        for (const ScriptError& error : script.errors) {
            return error.message;
        }
        ReferenceScriptHost scriptHost(m_host);
        const std::vector<CCmdTarget*> objects = m_host.AutomationObjects();
        const ScriptNames names(objects);
        ScriptRunner runner(names, scriptHost, {out, json, false});
        for (const ScriptStatement& statement : script.statements) {
            const StatementOutcome outcome = runner.Run(statement);
            if (outcome.end != StatementEnd::Ok) {
                return outcome.error.message;
            }
        }
        return out.str();
    }

    test::ManualClock m_clock;
    ReferenceHost m_host{{.threaded = false}};
    DialogRelay m_user{m_host};
};

TEST_F(WindowSessionTest, AScriptOpensActsAndCloses) {
    EXPECT_EQ(Run("window open settling\n"
                  "window act settling 2810 type 7.5\n"
                  "window act settling 2810 enter\n"
                  "window act settling 2801 choose Normal\n"
                  "SETT_SAAmplTolerance\n"
                  "SETT_SAFreqConvergence"),
              "SETT_SAAmplTolerance = 7.5\nSETT_SAFreqConvergence = 1\n");
    EXPECT_EQ(Run("window act settling 2812 type 900\nwindow act settling 2812 enter"),
              "Control 2812: the change was not accepted.");
    EXPECT_FALSE(m_user.boxes.empty());
    EXPECT_NE(Run("window open settling\nwindow show settling").find("[7.50000"), std::string::npos)
        << "the same window";
    EXPECT_EQ(Run("window print settling").substr(0, 14), "Sweep Settling");
    EXPECT_EQ(Run("window close settling"), "");
    EXPECT_EQ(Run("window show settling"), "the window \"settling\" is not open");
}

TEST_F(WindowSessionTest, JsonRecordsCarryTheWindow) {
    const std::string record = Run("window open debug\nwindow show debug", true);
    EXPECT_EQ(
        record.find("{\"sequence\":1,\"line\":1,\"window\":\"debug\",\"verb\":\"open\"}\n{\"sequence\":2"),
        0U)
        << record;
    EXPECT_NE(record.find("\"role\":\"button\",\"name\":\"Start\""), std::string::npos) << record;
}

TEST_F(WindowSessionTest, FaultsAreFoundInTheWordsAndInTheWindow) {
    const struct {
        const char* line;
        const char* fault;
    } kRows[] = {
        {"window", "window takes open, show, print, close, act or dialog"},
        {"window shut settling", "window takes open, show, print, close, act or dialog"},
        {"window open", "window open takes one word"},
        {"window open moon", "there is no window \"moon\"; known are "},
        {"window act settling 2810 kick", "\"kick\" is no act; known are "},
        {"window open settling\nwindow act settling 9 click",
         "there is no control \"9\" in \"Sweep Settling\""},
        {"window act settling 2800 choose Never", "control 2800 has no item \"Never\""},
        {"window act settling 2830 key shift", "\"shift\" is no key; known are "},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(Run(row.line).find(row.fault), 0U) << row.line << ": " << Run(row.line);
    }
}

ControlState Control(int id, ControlRole role, const char* text, CRect rect) {
    ControlState state;
    state.id = id;
    state.role = role;
    state.name = state.text = text;
    state.rect = rect;
    return state;
}

// One control of each sort.
ControlState Everything() {
    ControlState window = Control(0, ControlRole::Window, "Every <sort>", {0, 0, 200, 120});
    window.templateId = 5;
    auto& all = window.children;
    all.push_back(Control(1, ControlRole::Group, " Group ", {2, 2, 198, 60}));
    all.push_back(Control(2, ControlRole::Text, "Two\nlines", {8, 12, 40, 28}));
    all.push_back(Control(3, ControlRole::Edit, "typed", {48, 12, 88, 24}));
    all.push_back(Control(4, ControlRole::ComboBox, "", {96, 12, 140, 112}));
    all.back().items = {{"one", 1}, {"two", 2, 0xFF}};
    all.back().selected = 1;
    all.push_back(Control(5, ControlRole::CheckBox, "Tick", {8, 34, 48, 44}));
    all.back().checked = 1;
    all.push_back(Control(6, ControlRole::RadioButton, "Radio", {56, 34, 100, 44}));
    all.back().greyed = true;
    all.push_back(Control(7, ControlRole::Button, "Push", {108, 32, 148, 46}));
    all.back().enabled = false;
    all.push_back(Control(8, ControlRole::Spin, "", {152, 34, 162, 46}));
    all.push_back(Control(9, ControlRole::ScrollBar, "", {8, 50, 88, 58}));
    all.back().high = 31;
    all.back().page = 16;
    all.back().position = 8;
    all.push_back(Control(10, ControlRole::Progress, "", {96, 50, 176, 58}));
    all.back().high = 100;
    all.back().position = 25;
    all.push_back(Control(11, ControlRole::Tabs, "", {8, 64, 100, 74}));
    all.back().items = {{"First", 0}, {"Second", 1}};
    all.back().selected = 0;
    all.push_back(Control(12, ControlRole::ListBox, "", {8, 78, 88, 112}));
    all.back().items = {{"8\tadapter", 8}, {"9\tother", 9}};
    all.back().selected = 0;
    all.push_back(Control(13, ControlRole::Picture, "", {96, 80, 180, 112}));
    all.back().drawing = {{DrawnItem::Kind::Box, {0, 0, 40, 10}, {}, 0x0000FF},
                          {DrawnItem::Kind::Text, {44, 0, 80, 10}, "scale", 0},
                          {DrawnItem::Kind::Line, {0, 20, 80, 20}, {}, 0}};
    all.push_back(Control(14, ControlRole::Button, "unseen", {8, 78, 88, 112}));
    all.back().visible = false;
    return window;
}

TEST(WindowPictures, ShowEverySortOfControl) {
    std::string text = DrawWindowText(Everything()) + WindowJson(Everything()) + "\n";
    test::ExpectGolden(__FILE__, "windows.txt", text + DrawWindowSvg(Everything()));
}

} // namespace
} // namespace kalvio::reference_host
