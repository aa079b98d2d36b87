#pragma once

// A unit that is well, over which peripherals answer anything.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "hardware/Hardware.h"
#include "peripheral_network/KvNetSettings.h"
#include "platform/Registry.h"
#include "platform/ScratchFolder.h"
#include "support/TestHost.h"

#include <set>

namespace kalvio::fuzz {

inline constexpr std::uint32_t kMostRequests = 200000; // far above what any sequence needs
inline constexpr std::size_t kBlockBytes = 44;
inline constexpr std::size_t kFrameAt = 4;
inline constexpr std::uint8_t kPeripheralBus = 12;

// A unit that is well, with a bus on which a byte of the input decides about each answer: the data that were
// sent; the same with bytes of the input in their place; any block, status included.
class AnyBus final : public DeviceDriver {
public:
    explicit AnyBus(FuzzInput& input) : m_input(input) {}

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

    FuzzInput& m_input;
    std::array<std::uint8_t, kBlockBytes> m_block{};
    std::uint32_t m_command = 0;
    std::uint32_t m_requests = 0;
    bool m_isBus = false;
};

inline void NameImages() {
    static const test::ScratchFolder folder;
    static const CString path = folder.Path("image");
    test::WriteText(path, CString(30, 'i'));
    for (const char* name : {"FPGAFile", "DSPAFile", "DSPBFile"}) {
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", name, path);
    }
}

// Brings the unit up with a network document entered, calls `work(network, bus, input)`, and shuts down.
template<typename Work>
void OnAnyBus(const std::uint8_t* data, std::size_t size, Work work) {
    test::TestHost host;
    NameImages();
    FuzzInput input(data, size);
    AnyBus bus(input);
    CHardware hardware(bus);
    host.application.hardware = &hardware;
    {
        CKvNetSettings network;
        host.application.kvNet = &network;
        network.Initialise();
        Require(hardware.InitialiseHardware(host.mainWindow.Handle()) == 1, "the unit comes up");
        work(network, bus, input);
        host.application.kvNet = nullptr;
    }
    hardware.TerminateHardware();
    host.application.hardware = nullptr;
}

} // namespace kalvio::fuzz
