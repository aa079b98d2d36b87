#include "platform/Dialog.h"
#include "support/UserLog.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using kalvio::ControlKind;
using kalvio::test::UserLog;

TEST(MultiBaseEdit, ShowsAndReadsNumbersInItsBase) {
    struct Case {
        int base;
        const char* text;
        double number;
        int integer;
    };
    const double none = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {10, " 12.5 V", 12.5, 12},
        {10, "-3e2", -300.0, -3},
        {10, "volts", none, 0},
        {10, "nan", none, 0},
        {10, "", none, 0},
        {16, "1F", 31.0, 31},
        {16, "0xFFFFFFFF", 4294967295.0, -1},
        {16, "G", none, 0},
    };
    for (const Case& each : cases) {
        CMultiBaseEdit edit;
        edit.SetBase(each.base);
        edit.SetWindowText(each.text);
        EXPECT_EQ(edit.GetIntValue(), each.integer) << each.text;
        if (std::isnan(each.number)) {
            EXPECT_TRUE(std::isnan(edit.GetNumericalValue())) << each.text;
        } else {
            EXPECT_EQ(edit.GetNumericalValue(), each.number) << each.text;
        }
    }
    CMultiBaseEdit edit;
    edit.SetDecimalPlaces(3);
    edit.SetNumericalValue(2.0005);
    EXPECT_EQ(edit.GetWindowText(), "2.001");
    edit.SetNumericalValue(none);
    EXPECT_EQ(edit.GetWindowText(), "");
    edit.SetBase(16);
    edit.SetIntValue(-2);
    EXPECT_EQ(edit.GetWindowText(), "FFFFFFFE");
}

TEST(Spin, KeepsItsRangeAndItsBuddy) {
    CMultiBaseEdit edit;
    CSpinButtonCtrl spin;
    spin.SetBuddy(&edit);
    spin.SetRange(1, 10);
    EXPECT_EQ(spin.GetPos(), 1);
    spin.SetPos(12);
    EXPECT_EQ(edit.GetWindowText(), "10");
    edit.SetWindowText("4");
    EXPECT_EQ(spin.GetPos(), 4);
    edit.SetWindowText("99999999999");
    EXPECT_EQ(spin.GetPos(), 10);
    edit.SetWindowText("x");
    EXPECT_EQ(spin.GetPos(), 10);
}

TEST(ComboBox, ItemsCarryDataAndUnknownIndexesHarmNothing) {
    CComboBox combo;
    EXPECT_EQ(combo.AddString("none", -5), 0);
    EXPECT_EQ(combo.AddString("some", 7), 1);
    EXPECT_EQ(combo.GetCurSel(), CComboBox::kNoSelection);
    EXPECT_TRUE(combo.SetCurSelFromItemData(-5));
    EXPECT_EQ(combo.GetWindowText(), "none");
    EXPECT_FALSE(combo.SetCurSelFromItemData(8));
    EXPECT_EQ(combo.GetCurSel(), 0);
    combo.SetItemData(1, 9);
    EXPECT_EQ(combo.GetItemData(1), 9);
    combo.SetItemData(2, 1);
    EXPECT_EQ(combo.GetItemData(-1), -1);
    EXPECT_EQ(combo.GetLBText(2), "");
    combo.SetCurSel(2);
    EXPECT_EQ(combo.GetCurSel(), CComboBox::kNoSelection);
}

constexpr int kContinueButton = 40;

class AccessDialog : public CDialog {
public:
    int command = 0;

protected:
    void OnCommand(int controlId) override {
        command = controlId;
        DestroyWindow();
    }
};

TEST(Dialog, IsMadeFromItsTemplateAndAnsweredThroughItsModel) {
    const kalvio::ControlTemplate controls[] = {
        {ControlKind::Static, -1, "No unit.", {7, 7, 100, 15}},
        {ControlKind::PushButton, kContinueButton, "Continue", {7, 20, 57, 34}},
        {ControlKind::Edit, 41, "", {}},
        {ControlKind::ComboBox, 42, "", {}},
        {ControlKind::CheckBox, 43, "", {}},
        {ControlKind::RadioButton, 44, "", {}},
        {ControlKind::Spin, 45, "", {}},
    };
    const kalvio::DialogTemplate layout{250, "Access", {0, 0, 120, 60}, controls};
    UserLog user;
    int shown = 0;
    user.onDialog = [&](CDialog& dialog) { shown = dialog.TemplateId(); };
    AccessDialog dialog;
    ASSERT_TRUE(dialog.Create(layout));
    EXPECT_FALSE(dialog.Create(layout));
    EXPECT_EQ(shown, 250);
    EXPECT_EQ(dialog.GetWindowText(), "Access");
    EXPECT_EQ(dialog.Children().size(), std::size(controls));
    EXPECT_NE(dynamic_cast<CComboBox*>(dialog.GetDlgItem(42)), nullptr);
    EXPECT_FALSE(dialog.PressButton(41));
    dialog.GetDlgItem(kContinueButton)->EnableWindow(false);
    EXPECT_FALSE(dialog.PressButton(kContinueButton));
    dialog.GetDlgItem(kContinueButton)->EnableWindow(true);
    EXPECT_TRUE(dialog.PressButton(kContinueButton)); // the handler takes the dialog away
    EXPECT_EQ(dialog.command, kContinueButton);
    EXPECT_FALSE(dialog.Exists());
    EXPECT_TRUE(dialog.Children().empty());
    ASSERT_TRUE(dialog.Create(layout));
    dialog.PressEscape();
    EXPECT_EQ(dialog.command, IDCANCEL);
}

TEST(UserInterface, DeclinesWithoutOneInstalledAndAsksTheInstalledOne) {
    EXPECT_FALSE(kalvio::AskYesNo("Go on?"));
    kalvio::ShowMessage("nobody sees this");
    EXPECT_EQ(kalvio::CurrentUserInterface().BrowseForFile("title", "*"), "");
    UserLog user;
    user.QueueAnswer(kalvio::BoxAnswer::Yes);
    EXPECT_TRUE(kalvio::AskYesNo("Go on?", kalvio::BoxIcon::Question, "Unit"));
    EXPECT_FALSE(kalvio::AskYesNo("Really?"));
    EXPECT_EQ(user.Texts(), (std::vector<CString>{"Go on?", "Really?"}));
    EXPECT_EQ(user.Boxes().front().caption, "Unit");
}

} // namespace
