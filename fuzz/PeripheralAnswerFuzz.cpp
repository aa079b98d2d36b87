// Scans, switching, status reads and downloads over a bus whose peripherals answer anything.

#include "AnyBus.h"
#include "switching/ChannelArray.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

namespace {

using namespace kalvio;
using fuzz::AnyBus;
using fuzz::Require;

constexpr int kMostCalls = 60;

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
    fuzz::OnAnyBus(data, size, [](CKvNetSettings& network, AnyBus& bus, fuzz::FuzzInput& input) {
        Calls(network, bus, input).Make();
    });
    return 0;
}
