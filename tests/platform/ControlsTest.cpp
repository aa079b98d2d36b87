// The one door to controls: what a user can do to each, what its window is told, what a reader sees.

#include "platform/Controls.h"
#include "platform/Dialog.h"
#include "support/Golden.h"
#include "testing/ScriptedUserInterface.h"

#include <cmath>
#include <gtest/gtest.h>

namespace kalvio {
namespace {

enum : int {
    kLabel = 10,
    kEdit,
    kNumber,
    kCheck,
    kRadioA,
    kRadioB,
    kCombo,
    kFree,
    kList,
    kSpin,
    kBar,
    kPush,
    kBytes,
    kColor,
    kDone,
    kTabs
};

constexpr ControlTemplate kControls[] = {
    {ControlKind::Static, kLabel, "Level", {0, 0, 40, 8}},
    {ControlKind::TextEdit, kEdit, "", {40, 0, 80, 12}},
    {ControlKind::Edit, kNumber, "5", {40, 14, 80, 26}},
    {ControlKind::CheckBox, kCheck, "Average", {0, 28, 40, 36}},
    {ControlKind::RadioButton, kRadioA, "A", {0, 40, 20, 48}},
    {ControlKind::RadioButton, kRadioB, "B", {20, 40, 40, 48}},
    {ControlKind::ComboBox, kCombo, "", {0, 50, 40, 60}},
    {ControlKind::EditableCombo, kFree, "", {40, 50, 80, 60}},
    {ControlKind::ListBox, kList, "", {0, 62, 80, 90}},
    {ControlKind::Spin, kSpin, "", {80, 14, 88, 26}},
    {ControlKind::ScrollBar, kBar, "", {0, 92, 80, 100}},
    {ControlKind::PushButton, kPush, "Apply", {0, 102, 40, 114}},
    {ControlKind::HexEdit, kBytes, "", {0, 116, 80, 128}},
    {ControlKind::ColorCombo, kColor, "", {0, 130, 80, 142}},
    {ControlKind::Progress, kDone, "", {0, 144, 80, 156}},
    {ControlKind::Tabs, kTabs, "", {0, 158, 80, 170}},
};
constexpr DialogTemplate kLayout{300, "Panel", {0, 0, 90, 172}, kControls};

// A panel that notes what it is told and refuses what it is told to refuse.
class Panel final : public CDialog {
public:
    Panel() {
        Create(kLayout);
        for (const int id : {kCombo, kFree, kList, kTabs}) {
            auto* items = dynamic_cast<CItemControl*>(GetDlgItem(id));
            items->AddString("one", 1);
            items->AddString("two", 2);
        }
    }
    bool TakesCommands() const override { return false; }
    int OnControlChanged(int id) override {
        told += Format("c%d ", id);
        return id == refused ? 0 : 1;
    }
    void OnControlUpdateHardware(int id) override { told += Format("h%d ", id); }
    CString Told() { return std::exchange(told, CString()); }
    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == kMessageSetDefault || message == kMessageShowRange || message == kMessageDoubleClick) {
            told += Format("%X:%d ", message, static_cast<int>(wParam));
        }
        return CDialog::OnMessage(message, wParam, lParam);
    }
    CString Shown(int id) const {
        const ControlState state = DescribeWindow(*FindControl(*this, id));
        const CString dump = DumpWindow(state);
        return Format("%s, page %d%s", dump.substr(0, dump.size() - 1).c_str(), state.page,
                      state.readOnly ? ", read-only" : "");
    }
    template<typename Control>
    Control& At(int id) {
        return dynamic_cast<Control&>(*GetDlgItem(id));
    }

    CString told;
    int refused = 0;
};

} // namespace

namespace {

std::vector<std::pair<int, const char*>> Pairs(const std::vector<int>& values,
                                               const std::vector<const char*>& texts) {
    std::vector<std::pair<int, const char*>> pairs;
    for (const int value : values) {
        for (const char* text : texts) {
            pairs.emplace_back(value, text);
        }
    }
    return pairs;
}

} // namespace

// Every act with every value on every control, one after the other: what the user is answered, what the
// window is told, and what the control then shows.
TEST(Controls, AnActGoesToTheControlAndItsWindow) {
    const test::ScriptedUserInterface user; // without anybody facing the user a dialog would go at once
    Panel panel;
    panel.At<CEdit>(kEdit).SetLimitText(3);
    panel.At<CHexEdit>(kBytes).SetLimit(3);
    panel.At<CSpinButtonCtrl>(kSpin).SetRange(9, 2);
    panel.At<CSpinButtonCtrl>(kSpin).SetBuddy(panel.GetDlgItem(kNumber));
    panel.At<CScrollBar>(kBar).SetScrollRange(20, 2, 4);
    panel.At<CProgressCtrl>(kDone).SetRange(5, 1);
    panel.At<CProgressCtrl>(kDone).SetPos(7);
    panel.At<CColorCombo>(kColor).AddColorString("red", 3, 0xFF0000);
    using Texts = std::vector<const char*>;
    const std::vector<std::tuple<ActKind, std::vector<int>, Texts>> acts{
        {ActKind::Focus, {0}, {""}},
        {ActKind::Click, {0}, {""}},
        {ActKind::Choose, {-1, 0, 1, 2, 3}, {""}},
        {ActKind::DoubleClick, {-1, 1, 2}, {""}},
        {ActKind::Type, {0}, {"", "two", "12 3", "-4", "1.5e3", "0A1b c", "1 2 3 4", "12345678"}},
        {ActKind::Enter, {0}, {""}},
        {ActKind::Scroll, {-700, 0, 3, 18, 700}, {""}},
        {ActKind::Key, {kKeyRight, kKeyUp, kKeyPageUp, kKeyDown, kKeyLeft, kKeyPageDown}, {""}},
        {ActKind::Key, {kKeyEnd, kKeyHome, kKeySpace, 0x41}, {""}},
        {ActKind::SetDefault, {0}, {""}},
        {ActKind::ShowRange, {0}, {""}},
    };
    static constexpr const char* kActs[] = {"focus", "click",  "double click", "choose",  "type", "enter",
                                            "key",   "scroll", "close",        "default", "range"};
    static constexpr const char* kFaults[] = {"",         "no such control", "hidden",
                                              "disabled", "cannot",          "refused"};
    CString all;
    for (const ControlTemplate& control : kControls) {
        CString before;
        int impossible = 0;
        for (const auto& [kind, values, texts] : acts) {
            for (const auto& [value, text] : Pairs(values, texts)) {
                const ActOutcome outcome = PerformAct(panel, {kind, control.id, text, value});
                const CString now = panel.Shown(control.id);
                const CString shown = now == before ? "" : now;
                const CString told = panel.Told();
                before = now;
                if (outcome.fault == ActFault::NotPossible && told.empty() && shown.empty()) {
                    ++impossible;
                    continue;
                }
                all += Format("%s %d '%s': %s%s%s\n", kActs[static_cast<int>(kind)], value, text,
                              kFaults[static_cast<int>(outcome.fault)], told.c_str(), shown.c_str());
            }
        }
        all += Format("and %d acts that it cannot do\n", impossible);
    }
    test::ExpectGolden(__FILE__, "controls.txt", all);
    EXPECT_EQ(PerformAct(panel, {ActKind::Click, 99, {}, 0}).fault, ActFault::NoSuchControl);
    EXPECT_EQ(panel.At<CHexEdit>(kBytes).GetBytes(), (std::vector<std::uint8_t>{0x0A, 0x1B, 0x0C}));
    EXPECT_EQ(panel.At<CColorCombo>(kColor).GetItemColor(0), 0xFF0000U);
    EXPECT_EQ(panel.At<CColorCombo>(kColor).GetItemColor(1), kDefaultColor);
}

TEST(Controls, TypedTextIsToldWhenTheFocusGoesOrEnterIsTyped) {
    const test::ScriptedUserInterface user; // without anybody facing the user a dialog would go at once
    Panel panel;
    EXPECT_TRUE(PerformAct(panel, {ActKind::Type, kEdit, "abc", 0}).Ok());
    EXPECT_EQ(panel.Told(), "");
    EXPECT_TRUE(PerformAct(panel, {ActKind::Enter, kEdit, {}, 0}).Ok());
    EXPECT_EQ(panel.Told(), "c11 h11 ");
    EXPECT_TRUE(PerformAct(panel, {ActKind::Type, kFree, "12", 0}).Ok());
    EXPECT_TRUE(PerformAct(panel, {ActKind::Focus, kCheck, {}, 0}).Ok());
    EXPECT_EQ(panel.Told(), "c17 h17 ");
    panel.refused = kNumber;
    EXPECT_TRUE(PerformAct(panel, {ActKind::Type, kNumber, "x", 0}).Ok());
    EXPECT_EQ(PerformAct(panel, {ActKind::Click, kCheck, {}, 0}).fault, ActFault::Refused);
    EXPECT_EQ(panel.Told(), "c12 "); // neither the hardware nor the check box
    panel.At<CEdit>(kEdit).SetLimitText(3);
    EXPECT_EQ(PerformAct(panel, {ActKind::Type, kEdit, "abcd", 0}).fault, ActFault::Refused);
    panel.At<CEdit>(kEdit).SetReadOnly(true);
    EXPECT_EQ(PerformAct(panel, {ActKind::Type, kEdit, "a", 0}).fault, ActFault::NotPossible);
}

TEST(Controls, WhatAUserCannotReachRefuses) {
    const test::ScriptedUserInterface user; // without anybody facing the user a dialog would go at once
    Panel panel;
    auto& check = panel.At<CButton>(kCheck);
    check.ShowWindow(false);
    EXPECT_EQ(PerformAct(panel, {ActKind::Click, kCheck, {}, 0}).fault, ActFault::Hidden);
    check.ShowWindow(true);
    check.SetGreyed(true);
    EXPECT_EQ(PerformAct(panel, {ActKind::Click, kCheck, {}, 0}).fault, ActFault::Disabled);
    check.SetGreyed(false);
    panel.EnableWindow(false);
    EXPECT_EQ(PerformAct(panel, {ActKind::Click, kCheck, {}, 0}).fault, ActFault::Disabled);
    EXPECT_EQ(check.GetCheck(), 0);
    EXPECT_EQ(panel.Told(), "");
    panel.EnableWindow(true);
    EXPECT_TRUE(PerformAct(panel, {ActKind::Close, 0, {}, 0}).Ok());
    EXPECT_FALSE(panel.Exists());
}

TEST(Controls, AReaderSeesWhatChangedSince) {
    const test::ScriptedUserInterface user; // without anybody facing the user a dialog would go at once
    Panel panel;
    const ControlState whole = DescribeWindow(panel);
    ASSERT_EQ(whole.children.size(), std::size(kControls));
    EXPECT_EQ(whole.templateId, 300);
    EXPECT_EQ(whole.children[1].name, "Level"); // the text before it
    EXPECT_EQ(whole.children[3].name, "Average");
    EXPECT_STREQ(NameOf(whole.children[8].role), "list box");
    EXPECT_EQ(whole.children[6].items, (std::vector<ControlItem>{{"one", 1}, {"two", 2}}));

    const std::uint64_t before = CurrentRevision();
    EXPECT_TRUE(DescribeChanges(panel, before).children.empty());
    std::vector<WindowHandle> noted;
    ObserveChanges([&noted](WindowHandle window, std::uint64_t) { noted.push_back(window); });
    panel.At<CButton>(kPush).SetGreyed(true);
    panel.At<CButton>(kPush).SetGreyed(true); // no change
    ObserveChanges(nullptr);
    EXPECT_EQ(noted, std::vector{panel.At<CButton>(kPush).Handle()});
    const ControlState changed = DescribeChanges(panel, before);
    ASSERT_EQ(changed.children.size(), 1U);
    EXPECT_EQ(changed.children[0].id, kPush);
    EXPECT_TRUE(changed.children[0].greyed);
}

TEST(Controls, NumbersAreReadInTheirBase) {
    CMultiBaseEdit edit(1, nullptr);
    edit.SetBase(16);
    const std::pair<const char*, int> texts[] = {{"0x1F", 31}, {"0X1f", 31}, {"1F", 31}, {"0", 0}, {"zz", 0}};
    for (const auto& [text, value] : texts) {
        edit.SetText(text);
        EXPECT_EQ(edit.GetIntValue(), value) << text;
    }
    edit.SetNumericalValue(255.4);
    EXPECT_EQ(edit.GetText(), "FF");
    edit.SetNumericalValue(-5.0);
    EXPECT_EQ(edit.GetText(), "0");
    edit.SetBase(10);
    edit.SetDecimalPlaces(2);
    edit.SetNumericalValue(1.005);
    EXPECT_EQ(edit.GetText(), "1.00");
    edit.SetNumericalValue(std::nan(""));
    EXPECT_EQ(edit.GetText(), "");
}

TEST(Controls, ListsLoseItemsAndTellOfDoubleClicks) {
    const test::ScriptedUserInterface user; // without anybody facing the user a dialog would go at once
    Panel panel;
    auto& list = panel.At<CListBox>(kList);
    list.AddString("three", 3);
    list.SetCurSel(2);
    list.DeleteString(0);
    EXPECT_EQ(list.GetCount(), 2);
    EXPECT_EQ(list.GetItemData(list.GetCurSel()), 3);
    list.DeleteString(1);
    EXPECT_EQ(list.GetCurSel(), CListBox::kNoSelection);
    EXPECT_TRUE(PerformAct(panel, {ActKind::DoubleClick, kList, {}, 0}).Ok());
    EXPECT_EQ(list.GetCurSel(), 0);
    EXPECT_EQ(list.InsertString(0, "zero", 7), 0);
    EXPECT_EQ(list.GetCurSel(), 1) << "the one that was selected";
    EXPECT_EQ(list.InsertString(2, "last", 8), 2);
    EXPECT_EQ(list.GetCurSel(), 1);
    EXPECT_EQ(list.GetLBText(0) + list.GetLBText(1) + list.GetLBText(2), "zerotwolast");
}

} // namespace kalvio
