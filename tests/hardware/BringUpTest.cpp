// What of bring-up a transcript cannot show: every step's code, the dialog, the firmware of every version.

#include "hardware/HardwareAccessDlg.h"
#include "hardware/bringup/FirmwareVersions.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

using simulator::FaultKind;

constexpr int kStepCodes[] = {2,  3,  4,  5,  6,  10, 11, 12,  13,  14,  15,  16,  17,  20,  29,  30, 31, 32,
                              33, 34, 35, 36, 37, 40, 41, 42,  50,  51,  52,  53,  54,  55,  56,  57, 60, 61,
                              65, 70, 71, 80, 81, 90, 91, 100, 101, 102, 103, 110, 111, 112, 113, 120};

// The number of the command that writes the first initial setting, counted from 1.
std::uint32_t FirstSetting() {
    UnitRig rig;
    EXPECT_EQ(rig.BringUp(), 1);
    std::uint32_t number = 0;
    for (const simulator::Exchange& exchange : rig.unit.Exchanges()) {
        ++number;
        if (exchange.command == 7 && exchange.parameters[1] == 'p') {
            break;
        }
    }
    return number;
}

TEST(BringUp, AFailedSettingIsToldByItsStepCode) {
    std::uint32_t command = FirstSetting();
    UnitRig rig;
    for (const int code : kStepCodes) {
        rig.unit.AddFault({FaultKind::Refuse, command++, 1, 0x8205});
        EXPECT_EQ(rig.BringUp(), 0);
        rig.hardware.TerminateHardware();
        rig.unit.ClearFaults();
        ASSERT_FALSE(rig.host.mainWindow.bringUpFailures.empty());
        EXPECT_EQ(rig.host.mainWindow.bringUpFailures.back(),
                  Format("Error code is %d; return value 0x1.", code));
        EXPECT_EQ(rig.host.mainWindow.messages.back().id, 0x8071u);
        EXPECT_EQ(rig.host.mainWindow.messages.back().wParam, 11701u);
    }
    ASSERT_EQ(rig.BringUp(), 1);
    rig.hardware.TerminateHardware();
    rig.unit.AddFault({FaultKind::Refuse, command - 1, 1, 0x8205});
    EXPECT_EQ(rig.BringUp(), 0);
    EXPECT_EQ(rig.host.mainWindow.bringUpFailures.back(), "Error code is 120; return value 0xFFFF8205.");
    rig.hardware.TerminateHardware();
    rig.unit.AddFault({FaultKind::Refuse, command - 1, 1, 0x8205});
    EXPECT_EQ(rig.hardware.InitialiseHardware(WindowHandle::None), 0) << "nobody takes the text";
}

TEST(BringUp, TheObjectKeepsItsWindowAndShutsTheUnitDownWithItself) {
    UnitRig rig;
    {
        CHardware hardware(rig.unit);
        EXPECT_EQ(hardware.InitialiseHardware(rig.host.mainWindow.Handle()), 1);
        EXPECT_EQ(hardware.GetMessageWnd(), rig.host.mainWindow.Handle());
        EXPECT_EQ(rig.HWRunning(), 1);
    }
    EXPECT_FALSE(rig.unit.IsOpen());
    EXPECT_FALSE(rig.unit.IsInitialised());
    EXPECT_EQ(rig.HWRunning(), 0);
}

TEST(AccessDialog, SaysWhatItWaitsForAndTakesBothButtons) {
    for (const bool exits : {true, false}) {
        UnitRig rig;
        rig.unit.SetPresent(false);
        std::vector<CString> texts;
        rig.host.user.onDialog = [&](CDialog& dialog) {
            EXPECT_EQ(dialog.TemplateId(), 250);
            texts.push_back(dialog.GetText());
            for (const CWnd* child : dialog.Children()) {
                const CRect& at = child->GetWindowRect();
                texts.push_back(Format("%d %d %d %d ", at.left, at.top, at.right, at.bottom) +
                                child->GetText());
            }
            exits ? static_cast<void>(dialog.PressButton(CHardwareAccessDlg::kExitId)) : dialog.PressEscape();
        };
        EXPECT_EQ(rig.BringUp(), exits ? 0 : 1);
        EXPECT_EQ(
            texts,
            (std::vector<CString>{
                " Accessing hardware...",
                "7 7 263 17 The system is attempting to access the hardware. This may take a few seconds..",
                "7 23 263 33 Please ensure that the hardware is plugged in and switched on.",
                "47 45 97 59 &Exit", "113 45 223 59 &Continue without hardware"}));
    }
}

TEST(AccessDialog, EndsWhenTheUnitAppears) {
    simulator::UnitOptions options;
    options.absentOpens = 4;
    UnitRig rig(options);
    const std::uint32_t start = rig.host.clock.TickCount();
    int shown = 0;
    rig.host.user.onDialog = [&shown](CDialog&) { ++shown; };
    EXPECT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(shown, 1);
    EXPECT_GE(rig.host.clock.TickCount() - start, 400u) << "three more failures, then success: four sleeps";
    EXPECT_EQ(rig.hardware.IsHardwarePresent(), 1);
}

TEST(FirmwareVersions, EachSoftwareHasItsRelease) {
    const std::pair<int, std::uint16_t> olderSoftware[] = {{10, 1}, {20, 1}, {30, 1}, {40, 1}, {50, 1},
                                                           {60, 1}, {70, 1}, {80, 1}, {90, 1}, {91, 1}};
    for (const auto& [minorVersion, release] : olderSoftware) {
        EXPECT_EQ(FirmwareReleaseFor(0, minorVersion), release) << minorVersion;
    }
    for (int minorVersion = 92; minorVersion <= 99; ++minorVersion) {
        EXPECT_EQ(FirmwareReleaseFor(0, minorVersion), minorVersion + 54);
    }
    for (const int minorVersion : {0, 1, 10, 11}) {
        EXPECT_EQ(FirmwareReleaseFor(1, minorVersion), 256 + minorVersion);
    }
    EXPECT_EQ(FirmwareReleaseFor(1, 12), std::nullopt);
    EXPECT_EQ(FirmwareReleaseFor(0, 11), std::nullopt);
    EXPECT_EQ(FirmwareReleaseFor(2, 0), std::nullopt);
}

} // namespace
} // namespace kalvio::test
