// Requests to the virtual unit: any code, any lengths, any frames, in any order.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "simulator/VirtualUnit.h"

namespace {

using namespace kalvio;
using fuzz::Bytes;
using fuzz::Require;

constexpr std::uint32_t kCodes[] = {kControlGetDescriptor, kControlResetDevice, kControlResetPipe,
                                    kControlBulkRead,      kControlBulkWrite,   kControlVendorRequest,
                                    kControlLastUsbError};
constexpr const char* kName = R"(\\.\kvusb-0)";
constexpr std::uint32_t kLongestData = 70000; // somewhat above the largest chunk
constexpr std::uint32_t kMostRequests = 64;
constexpr std::array<std::uint8_t, 8> kOutPipe{1, 0, 0, 0, 0xB8, 0x0B, 0, 0};
constexpr std::array<std::uint8_t, 8> kInPipe{8, 0, 0, 0, 0xB8, 0x0B, 0, 0};

class Caller {
public:
    explicit Caller(fuzz::FuzzInput input) : m_input(input), m_device(m_unit.Open(kName)) {}

    void Run() {
        for (std::uint32_t i = 0; i < kMostRequests && !m_input.IsAtEnd(); ++i) {
            Step();
        }
        Require(m_slept < kMostRequests * 100000, "the unit answers in time");
        CheckStillAlive();
    }

private:
    void Step() {
        const std::uint8_t choice = m_input.Byte();
        m_now += m_input.Byte();
        switch (choice % 4) {
        case 0:
            AnyRequest();
            break;
        case 1:
            AnyFrame();
            break;
        case 2:
            Read(m_input.Byte() % 64);
            break;
        default:
            ReopenOrReset(choice);
            break;
        }
    }

    void Send(const DriverRequest& request) {
        const DriverReply reply = m_unit.Control(m_device, request);
        Require(reply.bytesReturned <= request.dataToUnit.size() + request.dataFromUnit.size(),
                "no more bytes are moved than there is room for");
        Require(reply.ok || reply.error != 0, "a failed request has an error");
    }

    void AnyRequest() {
        const std::uint8_t code = m_input.Byte();
        const auto input = m_input.Take(m_input.Byte() % 16);
        const auto toUnit = m_input.Take(m_input.Byte());
        m_data.assign(m_input.Long() % kLongestData, 0);
        Send({.code = code < 0xF0 ? kCodes[code % std::size(kCodes)] : m_input.Long(),
              .input = input,
              .dataToUnit = (code & 1) != 0 ? toUnit : std::span<const std::uint8_t>(),
              .dataFromUnit = (code & 2) != 0 ? std::span<std::uint8_t>(m_data) : std::span<std::uint8_t>()});
    }

    // A command header of any code with any parameters, its out data, and what it may answer.
    void AnyFrame() {
        const std::uint32_t command = m_input.Byte() % 26;
        const std::uint32_t outLength = m_input.Byte();
        const std::uint32_t inLength = m_input.Byte();
        Bytes header(16);
        PutBig32(header.data(), 0x0000ABCD);
        PutBig32(&header[4], command);
        PutBig32(&header[8], outLength);
        PutBig32(&header[12], inLength);
        const auto parameters = m_input.Take(m_input.Byte() % 20);
        header.insert(header.end(), parameters.begin(), parameters.end());
        Send({.code = kControlBulkWrite, .input = kOutPipe, .dataToUnit = header});
        m_data.assign(outLength, m_input.Byte());
        Send({.code = kControlBulkWrite, .input = kOutPipe, .dataToUnit = m_data});
        Read(command >= 3 && command <= 6 ? 16 : 12);
        Read(inLength);
    }

    void Read(std::size_t length) {
        m_data.assign(length, 0);
        Send({.code = kControlBulkRead, .input = kInPipe, .dataFromUnit = m_data});
    }

    void ReopenOrReset(std::uint8_t choice) {
        if ((choice & 0x10) != 0) {
            m_unit.Close(m_device);
            m_device = m_unit.Open(kName);
        } else {
            Send({.code = kControlResetDevice});
        }
    }

    // After a new opening a plain exchange works.
    void CheckStillAlive() {
        m_unit.Close(m_device);
        m_device = m_unit.Open(kName);
        constexpr std::array<std::uint8_t, 20> kInitialise{0, 0, 0xAB, 0xCD, 0, 0, 0, 1};
        m_data.assign(12, 0);
        const bool sent =
            m_unit
                .Control(m_device, {.code = kControlBulkWrite, .input = kOutPipe, .dataToUnit = kInitialise})
                .ok;
        const bool answered =
            m_unit.Control(m_device, {.code = kControlBulkRead, .input = kInPipe, .dataFromUnit = m_data}).ok;
        Require(sent && answered && GetBig32(&m_data[4]) == 1, "a new opening finds a working unit");
    }

    fuzz::FuzzInput m_input;
    std::uint32_t m_now = 1000;
    std::uint64_t m_slept = 0;
    simulator::VirtualUnit m_unit{{[this] { return m_now; },
                                   [this](std::uint32_t milliseconds) {
                                       m_now += milliseconds;
                                       m_slept += milliseconds;
                                   }}};
    DeviceHandle m_device;
    Bytes m_data;
};

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds;
    for (std::uint8_t command = 1; command <= 24; ++command) {
        // The frame, no out data, two bytes in; 16 parameter bytes that name an address and space 'X'.
        seeds.push_back({1, 5, command, 0, 2, 16, 0x70, 0, 'X', 0, 'X', 0, 0, 0, 0, 'Y', 0, 0, 0, 0, 0, 0});
    }
    seeds.push_back({1, 5, 22, 44, 44, 4, 12, 0, 0, 0, 0x55});
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Caller({data, size}).Run();
    return 0;
}
