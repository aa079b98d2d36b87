// From a closed device to a running unit or demo mode.

#include "hardware/BringUpSteps.h"
#include "hardware/FirmwareVersions.h"
#include "hardware/Hardware.h"
#include "hardware/HardwareAccessDlg.h"
#include "hardware/SoftwareVersion.h"
#include "hardware/Truncate.h"
#include "host/HostApplication.h"
#include "platform/DebugFile.h"
#include "platform/Endian.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <mutex>
#include <new>

namespace {

constexpr unsigned kTextConverters = 12669;
constexpr unsigned kTextFirmware = 12741;
constexpr unsigned kTextNotStarted = 12743;
constexpr unsigned kTextFpgaLoad = 11700; // the host's
constexpr unsigned kTextDspLoad = 11702;  // the host's; takes the DSP's number from 1
constexpr WPARAM kBringUpFailure = 11701;

constexpr std::uint32_t kAccessRetryMs = 100;
constexpr double kRunningClockFactor = 54.0 / 49.0;

constexpr std::size_t kDescriptorBytes = 18;
constexpr std::size_t kReleaseNumberAt = 12;

constexpr std::uint16_t kControl0 = 0x8000;
constexpr std::uint8_t kConvertersRunning = 7;

constexpr int kDspLoadAttempts = 3;
constexpr int kDspLoadFlag = 1;

struct DspImage {
    std::uint8_t dsp;
    char letter;
    const char* registryName;
    const char* defaultPath;
};

constexpr std::array<DspImage, 2> kDspImages{
    {{0, 'A', "DSPAFile", R"(C:\Kalvio3A.bin)"}, {1, 'B', "DSPBFile", R"(C:\Kalvio3B.bin)"}}};

// The calibration memories: 512 bytes of data in pages of 32, two address bytes.
constexpr std::uint8_t kPageBytes = 32;
constexpr std::uint8_t kAddressBytes = 2;
constexpr std::uint16_t kTableBytes = 512;
constexpr std::uint16_t kMirrorAt = 0;
constexpr std::uint16_t kMasterAt = 2048;

// Links fitted on the analogue board, as its register 'q' reads back.
constexpr std::uint8_t kNot150RLink = 0x01;
constexpr std::uint8_t kDCCoupledLink = 0x02;
constexpr std::uint8_t kNot192kLink = 0x10;

constexpr std::uint32_t kControlWordDC = 0x100;
constexpr std::uint32_t kControlWordAC = 0x900;
constexpr std::uint32_t kDspWordMask = 0xFFFFFF;

void TraceBringUp(const CString& done) {
    CDebugFile::Write("CHardware::InitialiseHardware - " + done + "\n");
}

void TraceLoad(const CString& done) {
    CDebugFile::Write("CHardware::LoadHardware - " + done + "\n");
}

CString ImagePath(const char* registryName, const char* defaultPath) {
    return CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware", registryName,
                                       CString(defaultPath));
}

bool LoadTable(kalvio::MemoryAccess& memory, std::uint8_t device, std::span<const CalibTableRecord> records,
               std::unique_ptr<CCalibrationTable>& table) {
    table.reset(new (std::nothrow) CCalibrationTable(memory));
    return table != nullptr &&
           table->InitialiseTable(device, kPageBytes, kAddressBytes, kTableBytes, kMirrorAt, kMasterAt,
                                  records.data(), static_cast<int>(records.size())) != 0;
}

// The receiver owns the text; it is freed here when there is no window to take it.
void TellBringUpFailure(WindowHandle window, int stepCode, std::int16_t status) {
    const CString text =
        kalvio::Format("Error code is %d; return value 0x%X.", stepCode, static_cast<unsigned>(int{status}));
    char* const buffer = new (std::nothrow) char[text.size() + 1];
    if (buffer == nullptr) {
        return;
    }
    std::copy_n(text.c_str(), text.size() + 1, buffer);
    if (!kalvio::NotifyWindow(window, kalvio::kMessageBringUpFailed, kBringUpFailure,
                              reinterpret_cast<LPARAM>(buffer))) {
        delete[] buffer;
    }
}

} // namespace

int CHardware::InitialiseHardware(WindowHandle window) {
    CDebugFile::Write("CHardware::InitialiseHardware\n");
    if (m_transport.IsOpen()) {
        return 0;
    }
    m_messageWindow = window;
    if (!OpenDeviceOrAsk() || !AcceptFirmware() || !PrepareResults() || !StartUnit() || LoadHardware() != 0) {
        return 0;
    }
    TraceBringUp("LoadHardware finished");
    if (!ReleaseConverters() || !LoadCalibrationTables()) {
        return 0;
    }
    return ApplyInitialSettings() ? 1 : 0;
}

// Opens the device, or lets the user wait for it, go on without, or leave. False: leave.
bool CHardware::OpenDeviceOrAsk() {
    const bool opened = m_transport.USBInitialise();
    TraceBringUp("Initialised USB");
    if (opened) {
        return true;
    }
    CHardwareAccessDlg dialog;
    dialog.Create();
    while (!m_transport.IsOpen() && dialog.GetChoice() == CHardwareAccessDlg::Choice::None) {
        m_transport.USBInitialise();
        GetHostApplication().DoMessageLoop();
        kalvio::Sleep(kAccessRetryMs);
    }
    dialog.DestroyWindow();
    return dialog.GetChoice() != CHardwareAccessDlg::Choice::Exit;
}

bool CHardware::AcceptFirmware() {
    if (CheckFirmwareVersion() == 0) {
        kalvio::ShowMessage(kalvio::LoadText(kTextFirmware));
        m_transport.USBTerminate();
        return false;
    }
    TraceBringUp("Checked Firmware Version");
    return true;
}

int CHardware::CheckFirmwareVersion() {
    if (!m_transport.IsOpen()) {
        return 1;
    }
    std::array<std::uint8_t, kDescriptorBytes> descriptor{};
    if (m_transport.USBGetDeviceDescriptor(descriptor.data()) != kalvio::kUsbOk) {
        m_transport.USBReset();
        if (m_transport.USBGetDeviceDescriptor(descriptor.data()) != kalvio::kUsbOk) {
            return 0;
        }
    }
    const std::uint16_t release = kalvio::GetLittle16(&descriptor[kReleaseNumberAt]);
    return kalvio::FirmwareReleaseFor(kalvio::kSoftwareMajor, kalvio::kSoftwareMinor) == release ? 1 : 0;
}

bool CHardware::PrepareResults() {
    if (!m_transport.IsOpen() && !AllocateDemoBuffers()) {
        return false;
    }
    m_resultEvent.ResetEvent();
    if (InitialiseResultReadyFlags() == 0) {
        return false;
    }
    TraceBringUp("Initialised Result Ready flags");
    return true;
}

bool CHardware::StartUnit() {
    if (Initialise(0, 0) != 0) {
        const bool drained =
            m_transport.USBCleanupOutstandingData(0, [this] { Terminate(0, 0); }) == kalvio::kUsbOk;
        if (!drained || Initialise(0, 0) != 0) {
            kalvio::ShowMessage(kalvio::LoadText(kTextNotStarted));
            return false;
        }
    }
    if (IsHardwarePresent() != 0) {
        RecordRunning(1);
    }
    TraceBringUp("Initialise finished");
    return true;
}

std::int16_t CHardware::LoadHardware() {
    CDebugFile::Write("CHardware::LoadHardware\n");
    const std::int16_t status = FPGALoad(ImagePath("FPGAFile", R"(C:\Kalvio\Main1.bin)"));
    if (status != 0) {
        TraceLoad("FPGA load failed");
        kalvio::ShowMessage(kalvio::LoadText(kTextFpgaLoad));
        return status;
    }
    TraceLoad("FPGA file downloaded");
    return LoadDspImages();
}

std::int16_t CHardware::LoadDspImages() {
    for (const DspImage& image : kDspImages) {
        const CString path = kalvio::GetFullPathName(ImagePath(image.registryName, image.defaultPath));
        std::int16_t status = 1;
        for (int attempt = 0; attempt < kDspLoadAttempts && status != 0; ++attempt) {
            status = DSPLoad(image.dsp, path, kDspLoadFlag);
        }
        if (status != 0) {
            TraceLoad(kalvio::Format("DSP %c load failed", image.letter));
            kalvio::ShowMessage(kalvio::FormatText(kalvio::LoadText(kTextDspLoad), image.dsp + 1));
            return status;
        }
        TraceLoad(kalvio::Format("DSP %c file downloaded (%X)", image.letter, static_cast<unsigned>(status)));
    }
    return 0;
}

bool CHardware::ReleaseConverters() {
    if (MicroWriteCtrlRegister(kControl0, kConvertersRunning) != 0) {
        kalvio::ShowMessage(kalvio::LoadText(kTextConverters));
        return false;
    }
    return true;
}

bool CHardware::LoadCalibrationTables() {
    if (!LoadTable(*this, kalvio::kMainBoardMemory, kalvio::MainBoardRecords(), m_mainTable) ||
        !LoadTable(*this, kalvio::kAnalogueBoardMemory, kalvio::AnalogueBoardRecords(), m_analogueTable)) {
        return false;
    }
    TraceBringUp("Calibration tables loaded");
    return true;
}

bool CHardware::ApplyInitialSettings() {
    int stepCode = 0;
    const std::int16_t status = InitialiseHardwareSettings(stepCode);
    if (status != 0) {
        TellBringUpFailure(m_messageWindow, stepCode, status);
        return false;
    }
    TraceBringUp("InitialiseHardwareSettings called");
    m_clockFactor.store(kRunningClockFactor);
    m_transport.ClearLinkErrors();
    m_transport.SetInitialised(true);
    return true;
}

std::int16_t CHardware::InitialiseHardwareSettings(int& stepCode) {
    CDebugFile::Write("CHardware::InitialiseHardwareSettings\n");
    for (const kalvio::BringUpStep& step : kalvio::BringUpSteps()) {
        const std::int16_t status = RunBringUpStep(step);
        if (status != 0) {
            stepCode = step.stepCode;
            return status;
        }
        if (step.trace != nullptr) {
            CDebugFile::Write(CString("CHardware::InitialiseHardwareSettings - ") + step.trace + "\n");
        }
    }
    return 0;
}

std::int16_t CHardware::RunBringUpStep(const kalvio::BringUpStep& step) {
    using enum kalvio::BringUpAction;
    switch (step.action) {
    case PutAnalogue:
        return AnaloguePutMem(static_cast<std::uint8_t>(step.address), step.value);
    case BusyWait:
        kalvio::BusyWaitSince(kalvio::GetTickCount(), step.value);
        return 0;
    case StampConverters:
        m_converterStamp.store(kalvio::GetTickCount());
        return 0;
    case ReadLinkFit:
        return ReadLinkFitFlags(static_cast<std::uint8_t>(step.address));
    case PutControl:
        return MicroWriteCtrlRegister(step.address, step.value);
    case PutRelay:
        return SetMainBoardRelay(static_cast<std::uint8_t>(step.address), step.value);
    case PutMicro:
        return MicroPutMem(step.space, step.address, step.value, 0);
    case PutControlWord:
        return DSPPutControlWord(step.dsp, IsAnalogueDCCoupled() != 0 ? kControlWordDC : kControlWordAC);
    case PutCalibration:
        return PutCalibrationWord(step.dsp, step.address, step.value);
    }
    return 0;
}

// Without a unit the register reads as zero: 150 ohm, AC coupled, 192 kHz hardware.
std::int16_t CHardware::ReadLinkFitFlags(std::uint8_t reg) {
    std::uint8_t links = 0;
    const std::int16_t status = AnalogueGetMem(reg, links);
    if (status == 0) {
        m_is150R.store((links & kNot150RLink) == 0 ? 1 : 0);
        m_isDCCoupled.store((links & kDCCoupledLink) != 0 ? 1 : 0);
        m_is192k.store((links & kNot192kLink) == 0 ? 1 : 0);
    }
    return status;
}

std::int16_t CHardware::PutCalibrationWord(std::uint8_t dsp, std::uint16_t address, int entry) {
    const double value = m_analogueTable->GetCalibrationValueForID(entry);
    return DSPPutMem24(dsp, kalvio::kSpaceX, address, kalvio::TruncatedBits(value) & kDspWordMask);
}
