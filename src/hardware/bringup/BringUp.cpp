#include "hardware/bringup/BringUp.h"

#include "hardware/HardwareAccessDlg.h"
#include "hardware/HardwareTexts.h"
#include "hardware/bringup/FirmwareVersions.h"
#include "hardware/bringup/SoftwareVersion.h"
#include "hardware/bringup/UnitLife.h"
#include "hardware/link/DriverRequests.h"
#include "hardware/registers/UnitAddresses.h"
#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "platform/DebugFile.h"
#include "platform/UserInterface.h"
#include "platform/formats/Endian.h"

#include <algorithm>
#include <array>
#include <new>

namespace kalvio {

namespace {

constexpr std::uint32_t kAccessRetryMs = 100;
constexpr std::uint8_t kConvertersRunning = 7; // in CTRL0

constexpr std::size_t kReleaseNumberAt = 12;

void Trace(const CString& done) {
    CDebugFile::Write("CHardware::InitialiseHardware - " + done + "\n");
}

// The receiver owns the text; it is freed here when there is no window to take it.
void TellFailure(WindowHandle window, int stepCode, std::int16_t status) {
    const CString text =
        Format("Error code is %d; return value 0x%X.", stepCode, static_cast<unsigned>(int{status}));
    char* const buffer = new (std::nothrow) char[text.size() + 1];
    if (buffer == nullptr) {
        return;
    }
    std::copy_n(text.c_str(), text.size() + 1, buffer);
    if (!NotifyWindow(window, kMessageBringUpFailed, kTextBringUpFailed, reinterpret_cast<LPARAM>(buffer))) {
        delete[] buffer;
    }
}

} // namespace

bool BringUp::Run(WindowHandle window) {
    if (!OpenDeviceOrAsk() || !AcceptFirmware() || !PrepareResults() || !StartUnit() ||
        m_images.Load() != 0) {
        return false;
    }
    Trace("LoadHardware finished");
    return ReleaseConverters() && LoadCalibration() && WriteSettings(window);
}

// Opens the device, or lets the user wait for it, go on without, or leave. False: leave.
bool BringUp::OpenDeviceOrAsk() {
    const bool opened = m_targets.transport.USBInitialise();
    Trace("Initialised USB");
    if (opened) {
        return true;
    }
    CHardwareAccessDlg dialog;
    dialog.Create();
    while (!m_targets.transport.IsOpen() && dialog.GetChoice() == CHardwareAccessDlg::Choice::None) {
        m_targets.transport.USBInitialise();
        GetHostApplication().DoMessageLoop();
        Sleep(kAccessRetryMs);
    }
    dialog.DestroyWindow();
    return dialog.GetChoice() != CHardwareAccessDlg::Choice::Exit;
}

bool BringUp::AcceptFirmware() {
    if (!IsFirmwareRight()) {
        ShowMessage(LoadText(kTextWrongFirmware));
        m_targets.transport.USBTerminate();
        return false;
    }
    Trace("Checked Firmware Version");
    return true;
}

bool BringUp::IsFirmwareRight() {
    if (!m_targets.transport.IsOpen()) {
        return true;
    }
    std::array<std::uint8_t, kDescriptorBytes> descriptor{};
    if (m_targets.transport.USBGetDeviceDescriptor(descriptor.data()) != kUsbOk) {
        m_targets.transport.USBReset();
        if (m_targets.transport.USBGetDeviceDescriptor(descriptor.data()) != kUsbOk) {
            return false;
        }
    }
    return FirmwareReleaseFor(kSoftwareMajor, kSoftwareMinor) == GetLittle16(&descriptor[kReleaseNumberAt]);
}

bool BringUp::PrepareResults() {
    if (!m_targets.transport.IsOpen() && !m_targets.samples.MakeDemoBuffers()) {
        return false;
    }
    m_targets.results.event.ResetEvent();
    m_targets.results.Clear();
    Trace("Initialised Result Ready flags");
    return true;
}

bool BringUp::StartUnit() {
    if (!InitialiseUnit()) {
        ShowMessage(LoadText(kTextNotStarted));
        return false;
    }
    if (m_targets.commands.IsActive()) {
        RecordRunning(1);
    }
    Trace("Initialise finished");
    return true;
}

// Once more after throwing away what an earlier run may have left in the unit.
bool BringUp::InitialiseUnit() {
    CommandSet& commands = m_targets.commands;
    return commands.Initialise(0, 0) == 0 || (m_targets.transport.USBCleanupOutstandingData(0, [&commands] {
               commands.Terminate(0, 0);
           }) == kUsbOk && commands.Initialise(0, 0) == 0);
}

bool BringUp::ReleaseConverters() {
    if (m_targets.mainBoard.WriteControl(address::kControl0, kConvertersRunning) != 0) {
        ShowMessage(LoadText(kTextConvertersInReset));
        return false;
    }
    return true;
}

bool BringUp::LoadCalibration() {
    if (!m_targets.boards.Load()) {
        return false;
    }
    Trace("Calibration tables loaded");
    return true;
}

bool BringUp::WriteSettings(WindowHandle window) {
    int stepCode = 0;
    const std::int16_t status = m_settings.Write(stepCode);
    if (status != 0) {
        TellFailure(window, stepCode, status);
        return false;
    }
    Trace("InitialiseHardwareSettings called");
    m_targets.clock.Raise();
    m_targets.transport.ClearLinkErrors();
    m_targets.transport.SetInitialised(true);
    return true;
}

} // namespace kalvio
