#pragma once

// The hardware object over any driver, brought up in virtual time.

#include "../tests/platform/ScratchFolder.h"
#include "VirtualClock.h"

#include "hardware/Hardware.h"
#include "host/HostApplication.h"
#include "platform/Registry.h"

#include <cstdio>
#include <cstdlib>

namespace kalvio::benchmarks {

inline constexpr std::size_t kGateArrayImageBytes = 128U << 10;
inline constexpr std::size_t kDspImageBytes = 24U << 10;

// Image files as a unit gets them at bring-up, and the settings that name them.
class ImageFiles {
public:
    ImageFiles() {
        Make("FPGAFile", kGateArrayImageBytes);
        Make("DSPAFile", kDspImageBytes);
        Make("DSPBFile", kDspImageBytes);
    }
    ~ImageFiles() { CRegistry::Reset(); }
    ImageFiles(const ImageFiles&) = delete;
    ImageFiles& operator=(const ImageFiles&) = delete;

private:
    void Make(const char* setting, std::size_t bytes) const {
        const CString path = m_folder.Path(setting);
        test::WriteText(path, CString(bytes, '\x5A'));
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", setting, path);
    }

    test::ScratchFolder m_folder;
};

class RunningHardware {
public:
    explicit RunningHardware(DeviceDriver& driver) : hardware(driver) {
        application.hardware = &hardware;
        InstallHostApplication(&application);
        const ImageFiles images;
        const VirtualClock clock;
        if (hardware.InitialiseHardware(WindowHandle::None) != 1) {
            std::fputs("the unit does not come up\n", stderr);
            std::exit(EXIT_FAILURE);
        }
    }
    ~RunningHardware() {
        hardware.TerminateHardware();
        InstallHostApplication(nullptr);
        CRegistry::Reset();
    }
    RunningHardware(const RunningHardware&) = delete;
    RunningHardware& operator=(const RunningHardware&) = delete;

    CHostApplication application;
    CHardware hardware;
};

} // namespace kalvio::benchmarks
