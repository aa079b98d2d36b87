// Bring-up, use and shutdown of a unit that answers anything.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "hardware/Hardware.h"
#include "hardware/HardwareAccessDlg.h"
#include "platform/Registry.h"
#include "platform/ScratchFolder.h"
#include "support/TestHost.h"

namespace {

using namespace kalvio;
using fuzz::Require;

constexpr std::uint32_t kCommandMagic = 0x0000ABCD; // what follows a command is its data
constexpr std::uint32_t kMostRequests = 20000;      // far above what any sequence needs

// Well-behaved once the input has come to its end; before, a byte decides what becomes of each request.
class AnyUnit final : public DeviceDriver {
public:
    explicit AnyUnit(fuzz::FuzzInput input) : m_input(input) {}

    DeviceHandle Open(std::string_view) override { return DeviceHandle{1}; }
    void Close(DeviceHandle) override {}
    DriverReply Control(DeviceHandle, const DriverRequest& request) override {
        Require(++m_requests < kMostRequests, "the library comes to an end");
        const std::uint8_t how = m_input.Byte();
        if (request.code == kControlBulkWrite && request.dataToUnit.size() >= 16 &&
            GetBig32(request.dataToUnit.data()) == kCommandMagic) {
            m_command = GetBig32(&request.dataToUnit[4]);
        }
        Answer(request, how);
        if (how >= 0xF0) {
            return {false, 0, how == 0xFF ? kErrorSemaphoreTimeout : 1U};
        }
        return {true, static_cast<std::uint32_t>(request.dataToUnit.size() + request.dataFromUnit.size()), 0};
    }

private:
    void Answer(const DriverRequest& request, std::uint8_t how) {
        const std::span<std::uint8_t> answer = request.dataFromUnit;
        std::ranges::fill(answer, std::uint8_t{0});
        if (how >= 0x80) {
            std::ranges::copy(m_input.Take(answer.size()), answer.begin());
        }
        const bool isResponse =
            request.code == kControlBulkRead && (answer.size() == 12 || answer.size() == 16);
        if (isResponse && how < 0xE0) {
            PutBig32(answer.data(), how >= 0xD0 ? 0x0000B00B : 0x0000600D);
            PutBig32(&answer[4], m_command);
        } else if (request.code == kControlGetDescriptor && how < 0xE0) {
            PutLittle16(&answer[12], 267);
        }
    }

    fuzz::FuzzInput m_input;
    std::uint32_t m_command = 0;
    std::uint32_t m_requests = 0;
};

void NameImages() {
    static const test::ScratchFolder folder;
    static const CString path = folder.Path("image");
    test::WriteText(path, CString(30, 'i'));
    for (const char* name : {"FPGAFile", "DSPAFile", "DSPBFile"}) {
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", name, path);
    }
}

void Use(CHardware& hardware) {
    std::array<std::uint8_t, 34> answer{};
    const std::array<std::uint8_t, 4> question{1, 2, 3, 4};
    hardware.SetAnalogueSampleRate(SampleRate::k192kHz, 1, 1);
    hardware.AnaloguePutMem('r', 0x20);
    hardware.MicroPutMem(kSpaceX, 0x7000, 1, 1);
    CHardware::SendKvNetData(1, 0x80, question.size(), question.data(), answer.size(), answer.data());
    hardware.WriteMainBoardTable();
    hardware.ResetCalibration();
    hardware.SuspendDevice();
    hardware.UnsuspendDevice();
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    return {Bytes(), Bytes(64), Bytes(1200), Bytes(1200, 0x90)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::TestHost host;
    host.user.onDialog = [](CDialog& dialog) { dialog.PressButton(CHardwareAccessDlg::kContinueId); };
    NameImages();
    AnyUnit unit({data, size});
    CHardware hardware(unit);
    host.application.hardware = &hardware;
    hardware.InitialiseHardware(host.mainWindow.Handle());
    Use(hardware);
    hardware.TerminateHardware();
    host.application.hardware = nullptr;
    return 0;
}
