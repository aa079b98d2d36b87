#pragma once

// A whole set-up for tests: host, virtual unit, hardware object, image files and settings.

#include "hardware/Hardware.h"
#include "simulator/VirtualUnit.h"
#include "support/TestHost.h"

#include <cstddef>
#include <filesystem>

namespace kalvio::test {

// A directory of its own under the system's temporary one, removed with its content at the end.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    [[nodiscard]] CString File(const CString& name) const { return (m_path / name).string(); }
    // Writes a file of so many bytes 1, 2, 3, …; the path.
    [[nodiscard]] CString MakeFile(const CString& name, std::size_t bytes) const;

private:
    std::filesystem::path m_path;
};

// The registry lies in memory and is emptied at both ends. The hardware object stands in the application
// object; it is created, not yet brought up. The unit and the library share the host's manual clock.
class UnitRig {
public:
    explicit UnitRig(const simulator::UnitOptions& options = {}, std::uint32_t startTick = 1000);
    ~UnitRig();
    UnitRig(const UnitRig&) = delete;
    UnitRig& operator=(const UnitRig&) = delete;

    // InitialiseHardware with the host's main window as the message window: 1 or 0.
    int BringUp();
    // Presses that button of the access dialog as soon as it is shown (CHardwareAccessDlg's ids).
    void AnswerAccessDialog(int buttonId);
    [[nodiscard]] int HWRunning() const; // the registry's value; -1 when it was never written
    // Frames of one command code that the unit saw, as parameter bytes in hex, in order.
    [[nodiscard]] std::vector<std::string> ParametersOf(std::uint32_t command) const;

    TestHost host;
    TemporaryDirectory directory;
    simulator::VirtualUnit unit;
    CHardware hardware;
};

} // namespace kalvio::test
