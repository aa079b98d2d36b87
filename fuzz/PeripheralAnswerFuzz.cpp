// Scans, switching, status reads and downloads over a bus whose peripherals answer anything.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "hardware/Hardware.h"
#include "peripheral_network/KvNetSettings.h"
#include "platform/Registry.h"
#include "platform/ScratchFolder.h"
#include "support/TestHost.h"
#include "switching/ChannelArray.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <set>

namespace {

using namespace kalvio;
using fuzz::Require;

constexpr std::uint32_t kMostRequests = 200000; // far above what any sequence needs
constexpr int kMostCalls = 60;
constexpr std::size_t kBlockBytes = 44;
constexpr std::size_t kFrameAt = 4;
constexpr std::uint8_t kPeripheralBus = 12;

// A unit that is well, with a bus on which a byte of the input decides about each answer: the data that were
// sent; the same with bytes of the input in their place; any block, status included.
class AnyBus final : public DeviceDriver {
public:
    explicit AnyBus(fuzz::FuzzInput& input) : m_input(input) {}

    DeviceHandle Open(std::string_view) override { return DeviceHandle{1}; }
    void Close(DeviceHandle) override {}
    DriverReply Control(DeviceHandle, const DriverRequest& request) override {
        Require(++m_requests < kMostRequests, "the library comes to an end");
        if (request.code == kControlBulkWrite) {
            Take(request.dataToUnit);
        } else {
            Give(request);
        }
        return {true, static_cast<std::uint32_t>(request.dataToUnit.size() + request.dataFromUnit.size()), 0};
    }

    std::set<short> statuses; // that the bus gave

private:
    void Take(std::span<const std::uint8_t> bytes) {
        if (bytes.size() == kBlockBytes) {
            std::ranges::copy(bytes, m_block.begin());
        } else if (bytes.size() >= 16 && GetBig32(bytes.data()) == 0x0000ABCD) {
            m_command = GetBig32(&bytes[4]);
            m_isBus = m_command == 22 && bytes[16] == kPeripheralBus;
        }
    }

    void Give(const DriverRequest& request) {
        const std::span<std::uint8_t> answer = request.dataFromUnit;
        std::ranges::fill(answer, std::uint8_t{0});
        if (request.code == kControlGetDescriptor) {
            PutLittle16(&answer[12], 267);
        } else if (answer.size() == 12 || answer.size() == 16) {
            PutBig32(answer.data(), 0x0000600D);
            PutBig32(&answer[4], m_command);
        } else if (m_isBus && answer.size() == kBlockBytes) {
            Answer(answer);
        }
    }

    void Answer(std::span<std::uint8_t> block) {
        const std::uint8_t how = m_input.Byte();
        std::copy(m_block.begin() + kFrameAt, m_block.end(), block.begin() + kFrameAt);
        if (how >= 0x80) {
            std::ranges::copy(m_input.Take(kBlockBytes), block.begin());
        } else if (how >= 0x40) {
            std::ranges::copy(m_input.Take(how & 7U), block.begin() + kFrameAt + 3);
        }
        statuses.insert(static_cast<short>(GetBig16(block.data())));
    }

    fuzz::FuzzInput& m_input;
    std::array<std::uint8_t, kBlockBytes> m_block{};
    std::uint32_t m_command = 0;
    std::uint32_t m_requests = 0;
    bool m_isBus = false;
};

void NameImages() {
    static const test::ScratchFolder folder;
    static const CString path = folder.Path("image");
    test::WriteText(path, CString(30, 'i'));
    for (const char* name : {"FPGAFile", "DSPAFile", "DSPBFile"}) {
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", name, path);
    }
}

class Calls {
public:
    Calls(CKvNetSettings& network, AnyBus& bus, fuzz::FuzzInput& input)
        : m_network(network), m_bus(bus), m_input(input) {
        Define("mono", 0);
        Define("stereo", 1);
    }

    void Make() {
        m_network.SetShowErrorMessages(m_input.Byte());
        for (int call = 0; call < kMostCalls && !m_input.IsAtEnd(); ++call) {
            const int shown = m_network.GetShowErrorMessages();
            One(m_input.Byte());
            Require(m_network.GetShowErrorMessages() == shown, "the setting for messages is put back");
        }
    }

private:
    void Define(const char* name, int stereo) {
        m_network.DefineArray(name, stereo, 0);
        for (std::uint8_t entry = 0; entry < 24; ++entry) {
            const auto bus = static_cast<std::uint8_t>(stereo != 0 ? entry % 2 : entry / 4 % 2);
            m_network.AddChannelToArray(name, static_cast<std::uint8_t>(3 + entry / 8), kClassTypeIOSwitcher,
                                        bus, static_cast<std::uint8_t>(entry / 16), entry % 8, 0);
        }
    }

    // A code of the library's own, or one that the bus gave.
    void Check(short code) const {
        static const std::set<short> kOwn{KVNET_OK, KVNET_ERR_PARAMETER, KVNET_ERR_HARDWARE,
                                          KVNET_ERR_CHANNEL_NOT_IN_ARRAY, KVNET_ERR_RESPONSE_MISMATCH};
        Require(kOwn.contains(code) || m_bus.statuses.contains(code), "a code is one that there is");
    }

    void One(std::uint8_t what) {
        const std::uint8_t argument = m_input.Byte();
        const auto address = static_cast<std::uint8_t>(argument % 66);
        VARIANT status;
        switch (what % 8) {
        case 0:
            m_network.FillDeviceList();
            Require(m_network.Devices().size() <= 64, "a scan finds at most one device an address");
            break;
        case 1:
            Check(m_network.GetStatus(address, &status));
            break;
        case 2:
            Check(m_network.Reset(address, what & 8, &status));
            break;
        case 3:
            ReadAndSet(address, what);
            break;
        case 4:
            Download(address);
            break;
        default:
            Switch(*m_network.GetChannelArray((what & 8) != 0 ? "mono" : "stereo"), what, argument);
        }
    }

    void Switch(CChannelArray& array, std::uint8_t what, std::uint8_t argument) {
        const auto channel = static_cast<short>(argument % 26);
        const std::uint8_t on = what >> 7;
        if (what % 8 == 7) {
            const bool update = (what & 0x10) != 0;
            Check(update ? array.UpdateDevicesFromSettings()
                         : ((what & 0x20) != 0 ? array.Balance(on) : array.ClearChannels(on)));
            return;
        }
        const short code =
            what % 8 == 5 ? array.ExclusiveChannel(channel, on) : array.AddRemoveChannel(channel, on);
        Check(code);
        ChannelDetails entry;
        if (array.GetChannelDetails(static_cast<short>(channel - 1), entry) != 0) {
            Require(entry.state == on, "an array shows what was asked last");
        } else {
            Require(code == KVNET_ERR_CHANNEL_NOT_IN_ARRAY, "there is no such channel");
        }
    }

    void ReadAndSet(std::uint8_t address, std::uint8_t what) {
        CIOSwitcherSettings& switchers = *m_network.GetSwitcherSettings()->GetIOSwitcherSettings();
        VARIANT one;
        VARIANT other;
        const auto bus = static_cast<std::int16_t>(what >> 3 & 1);
        switchers.OLEGetBusStatus(address, bus, &one);
        switchers.OLEGetFullStatus(address, &one, &other);
        switchers.OLEGetBusDC(address, bus, &one, &other);
        switchers.OLEBusGroupSwitch(address, bus, bus, what);
        switchers.OLEBusLoad(address, bus, (what & 0x10) != 0);
    }

    // Five records; said to be sent only when the bus told each of them stored.
    void Download(std::uint8_t address) {
        std::vector<std::uint8_t> content(kFirmwareHeaderBytes);
        for (std::uint8_t block = 0; block < 5; ++block) {
            content.insert(content.end(), {0x10, block});
            content.insert(content.end(), kFirmwareDataBytes, block);
        }
        FirmwareFile file(content);
        int stored = 0;
        class : public ProgressDisplay {
            void GoModal(const CString&) override {}
            void SetRange(int, int, int) override {}
            void SetText(const CString&) override {}
            void SetPos(int) override {}
            void StepIt() override {}
            void PeekAndPump(bool) override {}
            [[nodiscard]] bool Cancelled() const override { return false; }
        } progress;
        const auto write = [&](const FirmwareRecord& record) {
            const short code = m_network.WriteSector(address, record.bytes[0], record.bytes[1],
                                                     kFirmwareDataBytes, record.Data().data());
            Check(code);
            stored = code == KVNET_OK ? (record.Block() == 0 ? 1 : stored + 1) : 0;
            return code == KVNET_OK;
        };
        const DownloadResult result = SendRecords(file, write, progress);
        Require((result.outcome == DownloadOutcome::Sent) == (stored == 5),
                "what is said to be sent is stored");
    }

    CKvNetSettings& m_network;
    AnyBus& m_bus;
    fuzz::FuzzInput& m_input;
};

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    Bytes switching;
    for (std::uint8_t call = 0; call < 120; ++call) {
        switching.push_back(static_cast<std::uint8_t>(call * 37));
    }
    return {Bytes(40), Bytes(200, 0x04), Bytes(200, 0x85), Bytes(200, 0x4D), switching};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::TestHost host;
    NameImages();
    fuzz::FuzzInput input(data, size);
    AnyBus bus(input);
    CHardware hardware(bus);
    host.application.hardware = &hardware;
    {
        CKvNetSettings network;
        host.application.kvNet = &network;
        network.Initialise();
        Require(hardware.InitialiseHardware(host.mainWindow.Handle()) == 1, "the unit comes up");
        Calls(network, bus, input).Make();
        host.application.kvNet = nullptr;
    }
    hardware.TerminateHardware();
    host.application.hardware = nullptr;
    return 0;
}
