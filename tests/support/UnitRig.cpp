#include "support/UnitRig.h"

#include "platform/Registry.h"
#include "support/ScriptedDriver.h"

#include <fstream>
#include <random>

namespace kalvio::test {

namespace {

std::filesystem::path NewDirectory() {
    std::random_device random;
    for (;;) {
        const auto path =
            std::filesystem::temp_directory_path() / Format("kalvio-rig-%08x%08x", random(), random());
        if (std::filesystem::create_directory(path)) {
            return path;
        }
    }
}

simulator::UnitClock ClockOf(ManualClock& clock) {
    return {[&clock] { return clock.TickCount(); },
            [&clock](std::uint32_t milliseconds) { clock.Sleep(milliseconds); }};
}

} // namespace

TemporaryDirectory::TemporaryDirectory() : m_path(NewDirectory()) {}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

CString TemporaryDirectory::MakeFile(const CString& name, std::size_t bytes) const {
    std::ofstream file(m_path / name, std::ios::binary);
    for (std::size_t i = 1; i <= bytes; ++i) {
        file.put(static_cast<char>(i));
    }
    return File(name);
}

UnitRig::UnitRig(const simulator::UnitOptions& options, std::uint32_t startTick)
    : host(startTick), unit(ClockOf(host.clock), options), hardware(unit) {
    CRegistry::Reset();
    host.application.hardware = &hardware;
    const auto set = [this](const char* name, const char* file, std::size_t bytes) {
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", name,
                                    directory.MakeFile(file, bytes));
    };
    set("FPGAFile", "Main1.bin", 100);
    set("DSPAFile", "Kalvio3A.bin", 10);
    set("DSPBFile", "Kalvio3B.bin", 30);
}

UnitRig::~UnitRig() {
    hardware.TerminateHardware();
    host.application.hardware = nullptr;
    CRegistry::Reset();
}

int UnitRig::BringUp() {
    return hardware.InitialiseHardware(host.mainWindow.Handle());
}

void UnitRig::AnswerAccessDialog(int buttonId) {
    host.user.onDialog = [buttonId](CDialog& dialog) { dialog.PressButton(buttonId); };
}

int UnitRig::HWRunning() const {
    return CRegistry::GetRegistryValue(RegistryKeyType::User, "Power Management", "HWRunning", -1);
}

std::vector<std::string> UnitRig::ParametersOf(std::uint32_t command) const {
    std::vector<std::string> parameters;
    for (const simulator::Exchange& exchange : unit.Exchanges()) {
        if (exchange.command == command) {
            parameters.push_back(ToHex(exchange.parameters));
        }
    }
    return parameters;
}

} // namespace kalvio::test
