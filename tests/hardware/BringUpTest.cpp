#include "hardware/HardwareAccessDlg.h"
#include "platform/Registry.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

using simulator::FaultKind;

const std::vector<CString> kFullTrace = {
    "CHardware::InitialiseHardware\n",
    "CHardware::InitialiseHardware - Initialised USB\n",
    "CHardware::InitialiseHardware - Checked Firmware Version\n",
    "CHardware::InitialiseHardware - Initialised Result Ready flags\n",
    "CHardware::InitialiseHardware - Initialise finished\n",
    "CHardware::LoadHardware\n",
    "CHardware::LoadHardware - FPGA file downloaded\n",
    "CHardware::LoadHardware - DSP A file downloaded (0)\n",
    "CHardware::LoadHardware - DSP B file downloaded (0)\n",
    "CHardware::InitialiseHardware - LoadHardware finished\n",
    "CHardware::InitialiseHardware - Calibration tables loaded\n",
    "CHardware::InitialiseHardwareSettings\n",
    "CHardware::InitialiseHardwareSettings - initialised analogue relays (part 1)\n",
    "CHardware::InitialiseHardwareSettings - initialised analogue relays (part 2)\n",
    "CHardware::InitialiseHardwareSettings - read LINK_FIT settings\n",
    "CHardware::InitialiseHardwareSettings - Written CTRL0 settings\n",
    "CHardware::InitialiseHardwareSettings - Set main board relays\n",
    "CHardware::InitialiseHardwareSettings - Written CTRL1 settings\n",
    "CHardware::InitialiseHardwareSettings - Written CTRL2 settings\n",
    "CHardware::InitialiseHardwareSettings - Written CTRL3 settings\n",
    "CHardware::InitialiseHardwareSettings - Written MONCTRL settings\n",
    "CHardware::InitialiseHardwareSettings - Written AES receiver settings (CR1)\n",
    "CHardware::InitialiseHardwareSettings - Written AES receiver settings (CR2)\n",
    "CHardware::InitialiseHardwareSettings - Written AES receiver interrupt registers\n",
    "CHardware::InitialiseHardwareSettings - Initialised DSP control words\n",
    "CHardware::InitialiseHardwareSettings - Initialised temperature sensors\n",
    "CHardware::InitialiseHardwareSettings - Initialised analyzer calibration coefficients\n",
    "CHardware::InitialiseHardwareSettings - Initialised generator calibration coefficients\n",
    "CHardware::InitialiseHardwareSettings - finished\n",
    "CHardware::InitialiseHardware - InitialiseHardwareSettings called\n",
};

constexpr int kStepCodes[] = {2,  3,  4,  5,  6,  10, 11, 12,  13,  14,  15,  16,  17,  20,  29,  30, 31, 32,
                              33, 34, 35, 36, 37, 40, 41, 42,  50,  51,  52,  53,  54,  55,  56,  57, 60, 61,
                              65, 70, 71, 80, 81, 90, 91, 100, 101, 102, 103, 110, 111, 112, 113, 120};

TEST(BringUp, TracesEveryStepAndStartsTheUnit) {
    UnitRig rig;
    EXPECT_EQ(rig.HWRunning(), -1);
    EXPECT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(rig.host.debugLines, kFullTrace);
    EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{});
    EXPECT_EQ(rig.HWRunning(), 1);
    EXPECT_TRUE(rig.unit.IsInitialised());
    EXPECT_EQ(rig.hardware.GetMessageWnd(), rig.host.mainWindow.Handle());
    EXPECT_NEAR(rig.hardware.GetDSPClockCycleTime(), 19.929846 * 49.0 / 54.0, 1e-9);
    EXPECT_EQ(rig.unit.ProtocolErrors(), std::vector<std::string>{});
    EXPECT_EQ(rig.unit.RelayViolations(), std::vector<std::string>{});
    const std::vector<simulator::LoadedImage> images = rig.unit.Images();
    ASSERT_EQ(images.size(), 3u);
    EXPECT_EQ(images[1].bytes.size(), 12u) << "ten bytes, padded to whole words";

    rig.host.debugLines.clear();
    rig.unit.ClearLogs();
    EXPECT_EQ(rig.BringUp(), 0) << "already open";
    EXPECT_EQ(rig.host.debugLines, std::vector<CString>{kFullTrace[0]});
    EXPECT_TRUE(rig.unit.Requests().empty());
}

TEST(BringUp, LeavesTheUnitWithItsInitialSettings) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    std::string registers;
    for (char reg = 'p'; reg <= 'w'; ++reg) {
        registers += Format("%02X", unsigned{rig.unit.PeekRegister(reg)});
    }
    EXPECT_EQ(registers, "80802080C0C07700");
    const struct {
        char space;
        std::uint16_t address;
        std::uint8_t value;
    } bytes[] = {{'S', 0x8000, 7}, {'S', 0x8080, 0xF5}, {'S', 0x8800, 0x22}, {'S', 0x8880, 0xFF},
                 {'S', 0x9000, 1}, {'S', 0x9003, 1},    {'S', 0x9004, 2},    {'S', 0x9005, 6},
                 {'S', 0x9006, 5}, {'S', 0x9007, 7},    {'S', 0xA802, 0x81}, {'S', 0xA803, 0xCB},
                 {'X', 0xA800, 0}, {'X', 0xA801, 0},    {'S', 0xA001, 7}};
    for (const auto& byte : bytes) {
        EXPECT_EQ(rig.unit.PeekMicro(byte.space, byte.address), byte.value) << std::hex << byte.address;
    }
    EXPECT_EQ(rig.unit.MainBoardRelays(), (std::array<std::uint8_t, 8>{}));
}

TEST(BringUp, CoefficientsComeFromTheAnalogueBoardsCalibration) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    const struct {
        int dsp;
        std::uint32_t address;
        int offset; // of the calibration entry
        double value;
        std::uint32_t word;
    } words[] = {{0, 51, 304, -5.0, 0xFFFFFB},  {0, 52, 320, 1234.0, 1234}, {1, 51, 312, -32768.0, 0xFF8000},
                 {1, 52, 328, 32767.0, 0x7FFF}, {0, 56, 48, 7.0, 7},        {0, 57, 64, 8.0, 8},
                 {0, 58, 56, 9.0, 9},           {0, 59, 72, -1.0, 0xFFFFFF}};
    for (const auto& row : words) {
        EXPECT_EQ(rig.hardware.SetAnalogueCalibrationValue(row.offset, row.value), 1);
    }
    ASSERT_EQ(rig.hardware.WriteAnalogueTable(), 1);
    rig.hardware.TerminateHardware();
    ASSERT_EQ(rig.BringUp(), 1);
    for (const auto& row : words) {
        EXPECT_EQ(rig.unit.PeekDsp(row.dsp, 'X', row.address), row.word) << row.offset;
    }
}

TEST(BringUp, LinksDecideFlagsAndControlWords) {
    const struct {
        std::uint8_t links;
        int is150R, isDC, is192k;
        std::uint32_t word;
    } cases[] = {
        {0x00, 1, 0, 1, 0x900}, {0x13, 0, 1, 0, 0x100}, {0x02, 1, 1, 1, 0x100}, {0x11, 0, 0, 0, 0x900}};
    for (const auto& row : cases) {
        SCOPED_TRACE(int{row.links});
        simulator::UnitOptions options;
        options.linkFit = row.links;
        UnitRig rig(options);
        ASSERT_EQ(rig.BringUp(), 1);
        EXPECT_EQ(rig.hardware.Is150RImpedance(), row.is150R);
        EXPECT_EQ(rig.hardware.IsAnalogueDCCoupled(), row.isDC);
        EXPECT_EQ(rig.hardware.IsAnalogueHardware192k(), row.is192k);
        EXPECT_EQ(rig.unit.PeekDsp(0, 'X', 24), row.word);
        EXPECT_EQ(rig.unit.PeekDsp(1, 'X', 24), row.word);
    }
}

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

constexpr const char* kFirmwareText =
    "The system has detected an incorrect firmware version in the hardware.";
constexpr const char* kNotStarted = "The system has failed to initialise the hardware. After clicking OK,";
constexpr const char* kConverters =
    "Failed to bring the analogue converters out of reset. Kalvio will now exit.";

struct EarlyCase {
    const char* name;
    std::vector<simulator::Fault> faults;
    int result;
    CString box;           // how the box begins; empty: none
    const char* lastTrace; // null: not looked at
};

TEST(BringUp, EarlyFailuresAreToldOrOvercome) {
    const CString fpga = LoadText(11700);
    const CString dspA = FormatText(LoadText(11702), 1);
    const CString dspB = FormatText(LoadText(11702), 2);
    const EarlyCase cases[] = {
        {"descriptor fails once", {{FaultKind::FailDescriptor, 1}}, 1, "", nullptr},
        {"descriptor is short once", {{FaultKind::ShortDescriptor, 1}}, 1, "", nullptr},
        {"descriptor fails twice",
         {{FaultKind::FailDescriptor, 1, 2}},
         0,
         kFirmwareText,
         "Initialised USB\n"},
        {"unit starts after a drain", {{FaultKind::Refuse, 1, 1, 0x0205, 1}}, 1, "", nullptr},
        {"unit does not start", {{FaultKind::Refuse, 1, 2, 0x0205, 1}}, 0, kNotStarted, "Ready flags\n"},
        {"drain fails", {{FaultKind::FailRead, 1, 6}}, 0, kNotStarted, "Ready flags\n"},
        {"gate array", {{FaultKind::Refuse, 1, 1, 0x0205, 20}}, 0, fpga, "- FPGA load failed\n"},
        {"DSP A, third attempt", {{FaultKind::Refuse, 1, 2, 0x0205, 21}}, 1, "", nullptr},
        {"DSP A", {{FaultKind::Refuse, 1, 3, 0x0205, 21}}, 0, dspA, "- DSP A load failed\n"},
        {"DSP B", {{FaultKind::Refuse, 2, 3, 0x0205, 21}}, 0, dspB, "- DSP B load failed\n"},
        {"converters", {{FaultKind::Refuse, 1, 1, 0x0205, 7}}, 0, kConverters, "LoadHardware finished\n"},
    };
    for (const EarlyCase& row : cases) {
        SCOPED_TRACE(row.name);
        UnitRig rig;
        for (const simulator::Fault& fault : row.faults) {
            rig.unit.AddFault(fault);
        }
        EXPECT_EQ(rig.BringUp(), row.result);
        const std::vector<CString> texts = rig.host.user.Texts();
        EXPECT_EQ(texts.size(), row.box.empty() ? 0u : 1u);
        if (!texts.empty()) {
            EXPECT_TRUE(texts[0].starts_with(row.box)) << texts[0];
        }
        if (row.lastTrace != nullptr) {
            EXPECT_TRUE(rig.host.debugLines.back().ends_with(row.lastTrace)) << rig.host.debugLines.back();
        }
        rig.hardware.TerminateHardware();
        EXPECT_FALSE(rig.unit.IsOpen());
        rig.unit.ClearFaults();
        EXPECT_EQ(rig.BringUp(), 1);
    }
}

TEST(BringUp, FirmwareMustMatchTheSoftware) {
    for (const std::uint16_t release : {std::uint16_t{266}, std::uint16_t{267}, std::uint16_t{268}}) {
        UnitRig rig;
        rig.unit.SetReleaseNumber(release);
        EXPECT_EQ(rig.BringUp(), release == 267 ? 1 : 0);
        EXPECT_EQ(rig.unit.IsOpen(), release == 267);
        EXPECT_EQ(rig.host.user.Texts().size(), release == 267 ? 0u : 1u);
    }
}

TEST(BringUp, ImageFilesThatCannotBeLoaded) {
    UnitRig rig;
    const struct {
        const char* name;
        CString path;
        CString box;
    } cases[] = {{"FPGAFile", rig.directory.File("missing"), LoadText(11700)},
                 {"DSPAFile", rig.directory.File(""), FormatText(LoadText(11702), 1)},
                 {"DSPBFile", "", FormatText(LoadText(11702), 2)}};
    for (const auto& row : cases) {
        const CString good =
            CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware", row.name, CString());
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", row.name, row.path);
        rig.host.user.Clear();
        EXPECT_EQ(rig.BringUp(), 0) << row.name;
        EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{row.box});
        rig.hardware.TerminateHardware();
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", row.name, good);
    }
    EXPECT_EQ(rig.BringUp(), 1);
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
                texts.push_back(child->GetText());
            }
            exits ? static_cast<void>(dialog.PressButton(CHardwareAccessDlg::kExitId)) : dialog.PressEscape();
        };
        EXPECT_EQ(rig.BringUp(), exits ? 0 : 1);
        EXPECT_EQ(texts, (std::vector<CString>{
                             " Accessing hardware...",
                             "The system is attempting to access the hardware. This may take a few seconds..",
                             "Please ensure that the hardware is plugged in and switched on.", "&Exit",
                             "&Continue without hardware"}));
    }
}

TEST(AccessDialog, EndsWhenTheUnitAppears) {
    simulator::UnitOptions options;
    options.absentOpens = 4;
    UnitRig rig(options);
    const std::uint32_t start = rig.host.clock.TickCount();
    int shown = 0;
    rig.host.user.onDialog = [&shown](CDialog&) { ++shown; };
    rig.host.debugLines.clear();
    EXPECT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(shown, 1);
    EXPECT_GE(rig.host.clock.TickCount() - start, 400u) << "three more failures, then success: four sleeps";
    EXPECT_EQ(rig.hardware.IsHardwarePresent(), 1);
    EXPECT_EQ(rig.host.debugLines, kFullTrace);
}

TEST(DemoMode, EveryCommandSucceedsWithoutAUnit) {
    UnitRig rig;
    rig.unit.SetPresent(false);
    rig.AnswerAccessDialog(CHardwareAccessDlg::kContinueId);
    EXPECT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(rig.host.debugLines, kFullTrace);
    EXPECT_EQ(rig.hardware.IsHardwarePresent(), 0);
    EXPECT_EQ(rig.hardware.CheckFirmwareVersion(), 1);
    EXPECT_EQ(rig.hardware.GetBufferSize(), 0x80000u);
    ASSERT_NE(rig.hardware.GetDemoSampleBuffer(kChannelB), nullptr);
    EXPECT_EQ(rig.hardware.GetSampleBuffer(kChannelB), rig.hardware.GetDemoSampleBuffer(kChannelB));
    EXPECT_EQ(rig.hardware.SetMainBoardRelay(1, 1), 0);
    EXPECT_EQ(rig.HWRunning(), -1);
    EXPECT_EQ(rig.unit.RequestCount(), 0u);
    rig.hardware.TerminateHardware();
    EXPECT_EQ(rig.HWRunning(), -1);
    rig.unit.SetPresent(true);
    EXPECT_EQ(rig.BringUp(), 1);
    rig.hardware.GoIntoDemoMode();
    EXPECT_FALSE(rig.unit.IsOpen());
    EXPECT_NE(rig.hardware.GetSampleBuffer(kChannelA), nullptr);
}

TEST(Shutdown, StopsTheUnitAndRecordsIt) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    rig.unit.AddFault({FaultKind::Refuse, 1, 2, 0x0205});
    rig.hardware.DSPSendCommand(0, 0x3C);
    rig.hardware.DSPSendCommand(0, 0x3C);
    EXPECT_EQ(rig.hardware.GetLinkErrorCount(), 2);
    rig.unit.ClearLogs();
    rig.hardware.TerminateHardware();
    EXPECT_EQ(rig.ParametersOf(2), std::vector<std::string>{"00000000"});
    EXPECT_EQ(rig.unit.Exchanges().size(), 1u);
    EXPECT_FALSE(rig.unit.IsInitialised());
    EXPECT_FALSE(rig.unit.IsOpen());
    EXPECT_EQ(rig.HWRunning(), 0);
    EXPECT_EQ(CRegistry::GetRegistryValue(RegistryKeyType::User, "Debug", "HWErrors", -1), 2);
    EXPECT_EQ(rig.hardware.GetDemoSampleBuffer(kChannelA), nullptr);
    rig.hardware.TerminateHardware();
    EXPECT_EQ(rig.unit.Exchanges().size(), 1u);
    EXPECT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(rig.hardware.GetLinkErrorCount(), 0);
}

TEST(Suspend, ParksAndWakesTheUnit) {
    UnitRig rig;
    rig.hardware.SuspendDevice();
    EXPECT_EQ(rig.hardware.IsDeviceSuspended(), 0) << "nothing to park";
    ASSERT_EQ(rig.BringUp(), 1);
    rig.unit.ClearLogs();
    const std::uint32_t slept = rig.host.clock.SleptMs();
    rig.hardware.SuspendDevice();
    EXPECT_EQ(rig.host.clock.SleptMs() - slept, 100u);
    PumpMessages();
    ASSERT_EQ(rig.host.mainWindow.messages.size(), 1u);
    EXPECT_EQ(rig.host.mainWindow.messages[0].id, 0x8033u);
    EXPECT_EQ(rig.hardware.IsDeviceSuspended(), 1);
    EXPECT_EQ(rig.hardware.IsHardwarePresent(), 0);
    EXPECT_FALSE(rig.unit.IsInitialised());
    EXPECT_NE(rig.hardware.GetSampleBuffer(kChannelA), nullptr);
    EXPECT_EQ(rig.hardware.MicroPutMem('S', 0x9000, 5, 0), 0);
    EXPECT_EQ(rig.unit.Exchanges().size(), 1u) << "nothing but the parking itself";
    rig.hardware.UnsuspendDevice();
    EXPECT_EQ(rig.hardware.IsHardwarePresent(), 1);
    EXPECT_TRUE(rig.unit.IsInitialised());
    EXPECT_EQ(rig.unit.Exchanges().size(), 2u);
}

TEST(Suspend, ShutdownOfAParkedUnitSendsNothing) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    rig.hardware.SuspendDevice();
    rig.unit.ClearLogs();
    rig.hardware.TerminateHardware();
    EXPECT_TRUE(rig.unit.Requests().empty());
    EXPECT_EQ(rig.HWRunning(), 1);
    EXPECT_EQ(rig.BringUp(), 1);
    EXPECT_TRUE(rig.unit.IsInitialised());
}

} // namespace
} // namespace kalvio::test
