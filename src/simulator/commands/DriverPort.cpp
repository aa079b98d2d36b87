#include "simulator/commands/DriverPort.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace kalvio::simulator {

namespace {

enum class DataBuffer { None, ToUnit, FromUnit };

// The buffers that a control code takes; a length of zero leaves it open.
struct ControlShape {
    std::uint32_t code;
    std::size_t inputBytes;
    DataBuffer data;
    std::size_t dataBytes;
};

constexpr std::size_t kDescriptorBytes = 18;
constexpr std::size_t kShortDescriptorBytes = 8;
constexpr std::size_t kReleaseNumber = 12; // offset in the descriptor

constexpr ControlShape kControls[] = {
    {kControlGetDescriptor, 0, DataBuffer::FromUnit, kDescriptorBytes},
    {kControlResetDevice, 0, DataBuffer::None, 0},
    {kControlResetPipe, 4, DataBuffer::None, 0},
    {kControlBulkRead, 8, DataBuffer::FromUnit, 0},
    {kControlBulkWrite, 8, DataBuffer::ToUnit, 0},
    {kControlVendorRequest, 10, DataBuffer::None, 0},
    {kControlLastUsbError, 0, DataBuffer::FromUnit, 4},
};

constexpr std::uint32_t kPipeOut = 1; // endpoint 2, out and in
constexpr std::uint32_t kPipeIn = 8;
constexpr std::uint32_t kPipeCount = 14;
constexpr std::uint32_t kCommandEndpoint = 2;
constexpr std::uint32_t kEndpointCount = 7;

constexpr std::uint8_t kResetEndpoint = 0xB0;
constexpr std::uint8_t kSetPairing = 0xB1;
constexpr std::size_t kRequestCode = 4; // offsets in the request block
constexpr std::size_t kRequestValue = 6;
constexpr std::size_t kRequestIndex = 8;

constexpr std::uint32_t kUsbStalled = 0xC0000004;
constexpr std::uint32_t kUsbTimedOut = 0xC0006000;

const ControlShape* FindControl(std::uint32_t code) {
    const auto* found = std::find_if(std::begin(kControls), std::end(kControls),
                                     [code](const ControlShape& shape) { return shape.code == code; });
    return found == std::end(kControls) ? nullptr : found;
}

bool Fits(DataBuffer used, DataBuffer buffer, std::size_t size, std::size_t wanted) {
    if (used != buffer) {
        return size == 0;
    }
    return wanted == 0 ? size > 0 : size == wanted;
}

// What is wrong with the buffers of a request; empty when they are right.
std::string BufferFault(const DriverRequest& request) {
    const ControlShape* shape = FindControl(request.code);
    const char* what = nullptr;
    if (shape == nullptr) {
        what = "unknown code";
    } else if (request.input.size() != shape->inputBytes) {
        what = "wrong input length";
    } else if (!Fits(shape->data, DataBuffer::ToUnit, request.dataToUnit.size(), shape->dataBytes)) {
        what = "wrong length of data to the unit";
    } else if (!Fits(shape->data, DataBuffer::FromUnit, request.dataFromUnit.size(), shape->dataBytes)) {
        what = "wrong length of data from the unit";
    }
    if (what == nullptr) {
        return {};
    }
    char text[80];
    std::snprintf(text, sizeof text, "control request 0x%08X: %s", request.code, what);
    return text;
}

std::optional<FaultKind> FaultOf(const DriverRequest& request) {
    switch (request.code) {
    case kControlBulkWrite:
        return FaultKind::FailWrite;
    case kControlBulkRead:
        return FaultKind::FailRead;
    case kControlGetDescriptor:
        return FaultKind::FailDescriptor;
    case kControlLastUsbError:
        return FaultKind::FailLastError;
    case kControlResetDevice:
    case kControlResetPipe:
        return FaultKind::FailReset;
    case kControlVendorRequest:
        if (request.input.size() > kRequestCode && request.input[kRequestCode] == kResetEndpoint) {
            return FaultKind::FailReset;
        }
        break;
    default:
        break;
    }
    return std::nullopt;
}

} // namespace

DriverPort::DriverPort(FaultPlan& faults, CommandEndpoint& endpoint, std::uint16_t releaseNumber)
    : m_faults(faults), m_endpoint(endpoint), m_releaseNumber(releaseNumber) {}

Transfer DriverPort::Handle(const DriverRequest& request, std::uint32_t tick) {
    if (request.code == kControlBulkWrite) {
        m_endpoint.Announce(request.dataToUnit);
    }
    if (m_faults.Strike(FaultKind::Disconnect, m_endpoint.LastCommand())) {
        return Transfer::Failed(kErrorNotConnected);
    }
    Transfer transfer =
        ShowsFault(request) ? Transfer::Failed(kErrorGeneralFailure) : Dispatch(request, tick);
    if (!transfer.ok) {
        m_lastStatus = transfer.error == kErrorSemaphoreTimeout ? kUsbTimedOut : kUsbStalled;
    }
    return transfer;
}

bool DriverPort::ShowsFault(const DriverRequest& request) {
    const std::uint32_t command = m_endpoint.LastCommand();
    const bool anyFails = m_faults.Strike(FaultKind::FailAny, command).has_value();
    const std::optional<FaultKind> kind = FaultOf(request);
    const bool kindFails = kind && m_faults.Strike(*kind, command);
    return anyFails || kindFails;
}

Transfer DriverPort::Dispatch(const DriverRequest& request, std::uint32_t tick) {
    std::string fault = BufferFault(request);
    if (!fault.empty()) {
        return Transfer::Malformed(std::move(fault), kErrorInvalidFunction);
    }
    switch (request.code) {
    case kControlGetDescriptor:
        return GetDescriptor(request.dataFromUnit);
    case kControlResetDevice:
        m_endpoint.ResetDevice();
        return Transfer::Done();
    case kControlResetPipe:
        return ResetPipe(request.input);
    case kControlBulkRead:
        return BulkRead(request);
    case kControlBulkWrite:
        return BulkWrite(request, tick);
    case kControlVendorRequest:
        return VendorRequest(request.input);
    default:
        return GetLastError(request.dataFromUnit);
    }
}

Transfer DriverPort::GetDescriptor(ByteSpan into) {
    // USB 1.1, vendor class, 64-byte control packets, one configuration.
    std::array<std::uint8_t, kDescriptorBytes> descriptor{0x12, 0x01, 0x10, 0x01, 0xFF, 0x00,
                                                          0x00, 0x40, 0x4B, 0x56, 0x01, 0x00,
                                                          0x00, 0x00, 0x01, 0x02, 0x00, 0x01};
    StoreLittle(descriptor, kReleaseNumber, m_releaseNumber, 2);
    const bool cut = m_faults.Strike(FaultKind::ShortDescriptor, m_endpoint.LastCommand()).has_value();
    const std::size_t count = cut ? kShortDescriptorBytes : kDescriptorBytes;
    std::copy_n(descriptor.begin(), count, into.begin());
    return Transfer::Done(count);
}

Transfer DriverPort::ResetPipe(ByteView input) {
    const std::uint32_t pipe = ReadLittle(input, 0, 4);
    if (pipe >= kPipeCount) {
        return Transfer::Malformed("reset of pipe " + std::to_string(pipe));
    }
    if (pipe == kPipeOut || pipe == kPipeIn) {
        m_endpoint.Reset();
    }
    return Transfer::Done();
}

Transfer DriverPort::BulkRead(const DriverRequest& request) {
    const std::uint32_t pipe = ReadLittle(request.input, 0, 2);
    if (pipe != kPipeIn) {
        return Transfer::Malformed("read from pipe " + std::to_string(pipe));
    }
    return m_endpoint.Read(request.dataFromUnit, ReadLittle(request.input, 4, 4));
}

Transfer DriverPort::BulkWrite(const DriverRequest& request, std::uint32_t tick) {
    const std::uint32_t pipe = ReadLittle(request.input, 0, 2);
    if (pipe != kPipeOut) {
        return Transfer::Malformed("write to pipe " + std::to_string(pipe));
    }
    return m_endpoint.Write(request.dataToUnit, tick);
}

Transfer DriverPort::VendorRequest(ByteView input) {
    constexpr std::uint8_t kHostToDeviceVendor[] = {0, 2, 0, 0};
    if (!std::equal(std::begin(kHostToDeviceVendor), std::end(kHostToDeviceVendor), input.begin()) ||
        ReadLittle(input, kRequestIndex, 2) != 0) {
        return Transfer::Malformed("vendor request with a wrong block");
    }
    const std::uint32_t value = ReadLittle(input, kRequestValue, 2);
    switch (input[kRequestCode]) {
    case kResetEndpoint:
        if (value < 1 || value > kEndpointCount) {
            return Transfer::Malformed("reset of endpoint " + std::to_string(value));
        }
        if (value == kCommandEndpoint) {
            m_endpoint.Reset();
        }
        return Transfer::Done();
    case kSetPairing:
        return Transfer::Done(); // any pairing; the request log keeps it
    default:
        return Transfer::Malformed("unknown vendor request " + std::to_string(input[kRequestCode]));
    }
}

Transfer DriverPort::GetLastError(ByteSpan into) {
    StoreLittle(into, 0, m_lastStatus, 4);
    return Transfer::Done(into.size());
}

} // namespace kalvio::simulator
