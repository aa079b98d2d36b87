#include "hardware/bringup/UnitLife.h"

#include "host/HostApplication.h"
#include "platform/Clock.h"
#include "platform/Registry.h"

namespace kalvio {

namespace {

constexpr std::uint32_t kSettleBeforeParkingMs = 100;

} // namespace

void RecordRunning(int running) {
    CRegistry::SetRegistryValue(RegistryKeyType::User, "Power Management", "HWRunning", running);
}

void UnitLife::EnterDemoMode() {
    m_samples.MakeDemoBuffers();
    m_transport.USBTerminate();
}

void UnitLife::Suspend() {
    if (!m_commands.IsActive()) {
        return;
    }
    m_samples.MakeDemoBuffers();
    if (const CWnd* mainWindow = GetHostApplication().mainWindow) {
        PostToWindow(mainWindow->Handle(), kMessageSuspending, 0, 0);
    }
    m_commands.SetSuspended(true);
    Sleep(kSettleBeforeParkingMs);
    m_commands.Terminate(0, 1);
}

void UnitLife::Resume() {
    m_commands.Initialise(0, 1);
    m_commands.SetSuspended(false);
}

void UnitLife::Terminate() {
    m_commands.Terminate(0, 0);
    if (m_commands.IsActive() && m_transport.IsInitialised()) {
        RecordRunning(0);
        CRegistry::SetRegistryValue(RegistryKeyType::User, "Debug", "HWErrors", m_transport.LinkErrors());
    }
    m_transport.SetTerminating(true);
    m_samples.Free();
    m_transport.USBTerminate();
    m_boards.Drop();
    m_commands.SetSuspended(false); // a later bring-up finds a unit that is not parked
    m_transport.SetTerminating(false);
}

} // namespace kalvio
