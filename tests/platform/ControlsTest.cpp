// The one door to controls: what a user can do to each, what its window is told, what a reader sees.

#include "platform/Controls.h"
#include "platform/Dialog.h"
#include "testing/ScriptedUserInterface.h"

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
    kPush
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
};
constexpr DialogTemplate kLayout{300, "Panel", {0, 0, 90, 120}, kControls};

// A panel that notes what it is told and refuses what it is told to refuse.
class Panel final : public CDialog {
public:
    Panel() {
        Create(kLayout);
        for (const int id : {kCombo, kFree, kList}) {
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
    template<typename Control>
    Control& At(int id) {
        return dynamic_cast<Control&>(*GetDlgItem(id));
    }

    CString told;
    int refused = 0;
};

} // namespace

TEST(Controls, AnActGoesToTheControlAndItsWindow) {
    struct Row {
        const char* what;
        UserAct act;
        ActFault fault;
        const char* told;
        int state; // that the control shows afterwards
    };
    const Row kRows[] = {
        {"a check box is ticked", {ActKind::Click, kCheck, {}, 0}, ActFault::None, "c13 h13 ", 1},
        {"and unticked by the space bar", {ActKind::Key, kCheck, {}, 0x20}, ActFault::None, "c13 h13 ", 0},
        {"another key does nothing", {ActKind::Key, kCheck, {}, 0x41}, ActFault::NotPossible, "", 0},
        {"a radio button", {ActKind::Click, kRadioA, {}, 0}, ActFault::None, "c14 h14 ", 1},
        {"its neighbour", {ActKind::Click, kRadioB, {}, 0}, ActFault::None, "c15 h15 ", 1},
        {"a choice", {ActKind::Choose, kCombo, {}, 1}, ActFault::None, "c16 h16 ", 1},
        {"no such choice", {ActKind::Choose, kCombo, {}, 2}, ActFault::NotPossible, "", 1},
        {"a closed list takes no text", {ActKind::Type, kCombo, "three", 0}, ActFault::NotPossible, "", 1},
        {"a spin", {ActKind::Scroll, kSpin, {}, 7}, ActFault::None, "c19 h19 ", 7},
        {"a spin stays in its range", {ActKind::Scroll, kSpin, {}, 700}, ActFault::None, "c19 h19 ", 100},
        {"a scroll bar", {ActKind::Scroll, kBar, {}, 5}, ActFault::None, "c20 h20 ", 5},
        {"a label", {ActKind::Click, kLabel, {}, 0}, ActFault::NotPossible, "", 0},
        {"nothing there", {ActKind::Click, 99, {}, 0}, ActFault::NoSuchControl, "", 0},
    };
    const test::ScriptedUserInterface user; // without anybody facing the user a dialog would go at once
    Panel panel;
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(PerformAct(panel, row.act).fault, row.fault);
        EXPECT_EQ(panel.Told(), row.told);
        const ControlState state = DescribeWindow(panel);
        for (const ControlState& control : state.children) {
            if (control.id == row.act.control) {
                EXPECT_EQ(std::max({control.checked, control.selected, control.position}), row.state);
            }
        }
    }
    EXPECT_EQ(panel.At<CButton>(kRadioA).GetCheck(), 0);
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
}

} // namespace kalvio
