// A program outside the tree: brings the installed library up without a unit and reads two values.

#include "hardware/Hardware.h"
#include "hardware/LevelConversions.h"
#include "host/HostApplication.h"
#include "platform/Dialog.h"
#include "platform/UserInterface.h"

#include <cstdio>

namespace {

// A computer without a unit: opening fails.
class NoDriver final : public kalvio::DeviceDriver {
public:
    kalvio::DeviceHandle Open(std::string_view) override { return kalvio::DeviceHandle::None; }
    kalvio::DriverReply Control(kalvio::DeviceHandle, const kalvio::DriverRequest&) override { return {}; }
    void Close(kalvio::DeviceHandle) override {}
};

// Goes on without the hardware whenever the library asks.
class ContinueAlone final : public kalvio::UserInterface {
public:
    kalvio::BoxAnswer ShowBox(const CString& text, kalvio::BoxButtons, kalvio::BoxIcon,
                              const CString&) override {
        std::printf("%s\n", text.c_str());
        return kalvio::BoxAnswer::Ok;
    }
    CString BrowseForFile(const CString&, const CString&) override { return {}; }
    void ShowWaitCursor(bool) override {}
    void DialogShown(CDialog& dialog) override { dialog.PressEscape(); }
    void DialogClosed(CDialog&) override {}
};

} // namespace

int main() {
    ContinueAlone user;
    kalvio::InstallUserInterface(&user);
    NoDriver driver;
    CHardware hardware(driver);
    GetHostApplication().hardware = &hardware;
    if (hardware.InitialiseHardware(WindowHandle::None) != 1) {
        return 1;
    }
    const auto serial = hardware.Invoke("HW_GetMainUnitSerialNum", {});
    std::printf("demo mode, serial number %s, 0 dBu is %.4f V\n", serial.value.ToText().c_str(),
                ConvertdBuToV(0.0));
    GetHostApplication().hardware = nullptr;
    kalvio::InstallUserInterface(nullptr);
    return serial.Ok() ? 0 : 1;
}
