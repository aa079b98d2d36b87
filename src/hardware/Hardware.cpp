// The life of the hardware object outside bring-up: creation, demo mode, suspend, shutdown.

#include "hardware/Hardware.h"

#include "host/HostApplication.h"
#include "platform/Registry.h"

#include <mutex>

namespace {

constexpr std::uint32_t kSettleBeforeParkingMs = 100;

} // namespace

CHardware::CHardware(kalvio::DeviceDriver& driver) : m_transport(driver) {}

CHardware::~CHardware() {
    TerminateHardware();
}

void CHardware::TerminateHardware() {
    Terminate(0, 0);
    if (IsHardwarePresent() != 0 && m_transport.IsInitialised()) {
        RecordRunning(0);
        CRegistry::SetRegistryValue(RegistryKeyType::User, "Debug", "HWErrors", m_transport.LinkErrors());
    }
    m_transport.SetTerminating(true);
    FreeBuffers();
    m_transport.USBTerminate();
    TerminateResultReadyFlags();
    m_mainTable.reset();
    m_analogueTable.reset();
    m_commands.SetSuspended(false); // a later bring-up finds a unit that is not parked
    m_transport.SetTerminating(false);
}

void CHardware::FreeBuffers() {
    const std::scoped_lock hold(m_sampleBufferLock);
    m_buffers.FreeSamples();
    m_buffers.FreeDemo();
}

bool CHardware::AllocateDemoBuffers() {
    const std::scoped_lock hold(m_sampleBufferLock);
    return m_buffers.SetDemoSize(kalvio::kDemoSamples) != 0;
}

void CHardware::RecordRunning(int running) {
    CRegistry::SetRegistryValue(RegistryKeyType::User, "Power Management", "HWRunning", running);
}

void CHardware::GoIntoDemoMode() {
    AllocateDemoBuffers();
    m_transport.USBTerminate();
}

void CHardware::SuspendDevice() {
    if (IsHardwarePresent() == 0) {
        return;
    }
    AllocateDemoBuffers();
    const CWnd* mainWindow = GetHostApplication().mainWindow;
    if (mainWindow != nullptr) {
        kalvio::PostToWindow(mainWindow->Handle(), kalvio::kMessageSuspending, 0, 0);
    }
    m_commands.SetSuspended(true);
    kalvio::Sleep(kSettleBeforeParkingMs);
    Terminate(0, 1);
}

void CHardware::UnsuspendDevice() {
    Initialise(0, 1);
    m_commands.SetSuspended(false);
}
