#include "hardware/UsbTransport.h"

#include "hardware/QuietLock.h"
#include "platform/Endian.h"
#include "platform/Registry.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>

namespace kalvio {

namespace {

constexpr const char* kDeviceName = R"(\\.\kvusb-0)";

constexpr int kCommandEndpoint = 2;
constexpr std::size_t kCommandLock = kCommandEndpoint - 1;
constexpr std::uint16_t kCommandOutPipe = 1;
constexpr std::uint16_t kCommandInPipe = 8;
constexpr int kEndpoints = 7;
constexpr int kFirstInPipe = 7;

constexpr std::uint32_t kTransferTimeout = 3000; // in the driver's unit
constexpr std::uint32_t kDrainTimeout = 10;
constexpr int kDrainReads = 5;

constexpr std::uint8_t kVendorResetEndpoint = 0xB0;
constexpr std::uint8_t kVendorSetPairing = 0xB1;

constexpr std::uint32_t kFrameMagic = 0x0000ABCD;
constexpr std::uint32_t kRefused = 0x0000B00B;
constexpr std::size_t kDescriptorBytes = 18;

constexpr int kLinkErrorsForMessage = 3;
constexpr unsigned kTextBadLink = 12629;
constexpr unsigned kTextAddressCheck = 12630;

// How a bulk request names its pipe and time-out: pipe, two bytes of padding, time-out, little-endian.
class TransferBlock {
public:
    TransferBlock(std::uint16_t pipe, std::uint32_t timeout) {
        PutLittle16(m_bytes.data(), pipe);
        PutLittle32(m_bytes.data() + 4, timeout);
    }
    operator std::span<const std::uint8_t>() const { return m_bytes; }

private:
    std::array<std::uint8_t, 8> m_bytes{};
};

void FillHeader(const UsbExchange& exchange) {
    PutBig32(exchange.header, kFrameMagic);
    PutBig32(exchange.header + 4, exchange.command);
    PutBig32(exchange.header + 8, exchange.outLength);
    PutBig32(exchange.header + 12, exchange.inLength);
}

// Big-endian bytes become an integer of the host, in place; the integer.
std::uint32_t ToHostInPlace32(std::uint8_t* at) {
    const std::uint32_t value = GetBig32(at);
    std::memcpy(at, &value, sizeof value);
    return value;
}

std::uint16_t ToHostInPlace16(std::uint8_t* at) {
    const std::uint16_t value = GetBig16(at);
    std::memcpy(at, &value, sizeof value);
    return value;
}

} // namespace

std::uint16_t GetPipe(int endpoint, int direction) {
    switch (direction) {
    case static_cast<int>(EPDirection::Out):
        return static_cast<std::uint16_t>(endpoint - 1);
    case static_cast<int>(EPDirection::In):
        return static_cast<std::uint16_t>(endpoint + 6);
    default:
        return 0xFFFF;
    }
}

int GetEndpoint(int pipe) {
    return pipe < kFirstInPipe ? pipe + 1 : pipe - 6;
}

UsbTransport::UsbTransport(DeviceDriver& driver) : m_driver(driver) {}

bool UsbTransport::USBInitialise() {
    const std::scoped_lock hold(m_endpointLocks[kCommandLock]);
    if (IsOpen()) {
        return true;
    }
    const DeviceHandle handle = m_driver.Open(kDeviceName);
    m_handle.store(handle);
    if (handle == DeviceHandle::None) {
        return false;
    }
    m_linkErrors.store(0);
    m_linkMessageShown.store(false);
    return true;
}

void UsbTransport::USBTerminate() {
    const std::scoped_lock hold(m_endpointLocks[kCommandLock]);
    const DeviceHandle handle = m_handle.exchange(DeviceHandle::None);
    if (handle != DeviceHandle::None) {
        m_driver.Close(handle);
    }
}

bool UsbTransport::Succeeds(const DriverRequest& request) {
    if (m_driver.Control(m_handle.load(), request).ok) {
        return true;
    }
    DropLastError();
    return false;
}

void UsbTransport::DropLastError() {
    std::uint32_t dropped = 0;
    GetLastUSBError(dropped);
}

std::uint16_t UsbTransport::GetLastUSBError(std::uint32_t& status) {
    status = 0;
    if (!IsOpen()) {
        return kUsbOk;
    }
    std::array<std::uint8_t, 4> bytes{};
    const DriverReply reply =
        m_driver.Control(m_handle.load(), {.code = kControlLastUsbError, .dataFromUnit = bytes});
    if (!reply.ok) {
        return kUsbLastErrorFailed;
    }
    status = GetLittle32(bytes.data());
    return kUsbOk;
}

std::uint16_t UsbTransport::USBWriteData(std::uint16_t pipe, const std::uint8_t* data, std::uint32_t length) {
    const TransferBlock block(pipe, kTransferTimeout);
    return Succeeds({.code = kControlBulkWrite, .input = block, .dataToUnit = {data, length}})
               ? kUsbOk
               : kUsbWriteFailed;
}

std::uint16_t UsbTransport::USBReadData(std::uint16_t pipe, std::uint8_t* data, std::uint32_t length) {
    const TransferBlock block(pipe, kTransferTimeout);
    return Succeeds({.code = kControlBulkRead, .input = block, .dataFromUnit = {data, length}})
               ? kUsbOk
               : kUsbReadFailed;
}

std::uint16_t UsbTransport::USBGetDeviceDescriptor(std::uint8_t* descriptor18) {
    if (!IsOpen()) {
        return kUsbOk;
    }
    std::fill_n(descriptor18, kDescriptorBytes, std::uint8_t{0});
    const DriverReply reply = m_driver.Control(
        m_handle.load(), {.code = kControlGetDescriptor, .dataFromUnit = {descriptor18, kDescriptorBytes}});
    if (!reply.ok) {
        DropLastError();
        return kUsbReadFailed;
    }
    return reply.bytesReturned == kDescriptorBytes ? kUsbOk : kUsbReadFailed;
}

// Request block: host to device, vendor, device, reserved, the request, padding, value and index (0)
// little-endian.
bool UsbTransport::VendorRequest(std::uint8_t request, std::uint16_t value) {
    if (!IsOpen()) {
        return true;
    }
    std::array<std::uint8_t, 10> block{0, 2, 0, 0, request};
    PutLittle16(block.data() + 6, value);
    return Succeeds({.code = kControlVendorRequest, .input = block});
}

std::uint16_t UsbTransport::USBSetEndpointPairing(std::uint16_t pairing) {
    return VendorRequest(kVendorSetPairing, pairing) ? kUsbOk : kUsbPairingFailed;
}

std::uint16_t UsbTransport::USBResetEndpoint(std::int8_t endpoint) {
    const auto widened = static_cast<std::uint16_t>(static_cast<std::int16_t>(endpoint));
    return VendorRequest(kVendorResetEndpoint, widened) ? kUsbOk : kUsbResetEndpointFailed;
}

int UsbTransport::ResetEndpoints() {
    for (std::int8_t endpoint = 1; endpoint <= kEndpoints; ++endpoint) {
        if (USBResetEndpoint(endpoint) != kUsbOk) {
            return 0;
        }
    }
    return 1;
}

std::uint16_t UsbTransport::USBResetPipe(int endpoint, EPDirection direction) {
    if (IsOpen()) {
        std::array<std::uint8_t, 4> pipe{};
        const auto number = static_cast<std::int16_t>(GetPipe(endpoint, static_cast<int>(direction)));
        PutLittle32(pipe.data(), static_cast<std::uint32_t>(static_cast<std::int32_t>(number)));
        Succeeds({.code = kControlResetPipe, .input = pipe});
    }
    return kUsbOk;
}

std::uint16_t UsbTransport::USBReset() {
    if (IsOpen()) {
        Succeeds({.code = kControlResetDevice});
    }
    return kUsbOk;
}

int UsbTransport::LockEndpoint(int endpoint) {
    if (endpoint < 1 || endpoint > kEndpoints) {
        return 0;
    }
    m_endpointLocks[static_cast<std::size_t>(endpoint - 1)].Lock();
    return 1;
}

int UsbTransport::UnlockEndpoint(int endpoint) {
    if (endpoint < 1 || endpoint > kEndpoints) {
        return 0;
    }
    m_endpointLocks[static_cast<std::size_t>(endpoint - 1)].Unlock();
    return 1;
}

std::uint16_t UsbTransport::USBTransfer(const UsbExchange& exchange) {
    if (IsInert()) {
        return kUsbOk;
    }
    WarnOfBadLink();
    const std::scoped_lock hold(m_endpointLocks[kCommandLock]);
    return IsInert() ? kUsbOk : RunExchange(exchange);
}

// Whether to show is decided under the endpoint's lock, so that only one thread does; the box itself comes
// up without it.
void UsbTransport::WarnOfBadLink() {
    if (m_linkErrors.load() < kLinkErrorsForMessage) {
        return;
    }
    {
        const std::scoped_lock hold(m_endpointLocks[kCommandLock]);
        if (!m_initialised.load() || m_linkMessageShown.exchange(true)) {
            return;
        }
    }
    ShowMessageWhenQuiet(LoadText(kTextBadLink));
}

std::uint16_t UsbTransport::RunExchange(const UsbExchange& exchange) {
    FillHeader(exchange);
    std::uint16_t result = USBWriteData(kCommandOutPipe, exchange.header, exchange.headerLength);
    if (result != kUsbOk) {
        ++m_linkErrors;
        USBResetEndpoint(kCommandEndpoint);
        return result;
    }
    result = MoveInChunks(exchange, EPDirection::Out);
    if (result == kUsbOk) {
        result = USBReadData(kCommandInPipe, exchange.response, exchange.responseLength);
    }
    if (result != kUsbOk) {
        return AfterDataFailure(result);
    }
    result = CheckResponse(exchange);
    if (result != kUsbOk) {
        return result;
    }
    result = MoveInChunks(exchange, EPDirection::In);
    return result == kUsbOk ? kUsbOk : AfterDataFailure(result);
}

std::uint16_t UsbTransport::MoveInChunks(const UsbExchange& exchange, EPDirection direction) {
    const bool out = direction == EPDirection::Out;
    const std::uint32_t length = out ? exchange.outLength : exchange.inLength;
    std::uint16_t result = kUsbOk;
    for (std::uint32_t done = 0; done < length && result == kUsbOk;) {
        const std::uint32_t chunk = std::min(kBulkChunkBytes, length - done);
        result = out ? USBWriteData(kCommandOutPipe, exchange.outData + done, chunk)
                     : USBReadData(kCommandInPipe, exchange.inData + done, chunk);
        done += chunk;
    }
    return result;
}

std::uint16_t UsbTransport::CheckResponse(const UsbExchange& exchange) {
    if (ToHostInPlace32(exchange.response + 4) != exchange.command) {
        ++m_linkErrors;
        return AfterDataFailure(kUsbWrongEcho);
    }
    if (ToHostInPlace32(exchange.response) != kRefused) {
        return kUsbOk;
    }
    ++m_linkErrors;
    return ToHostInPlace16(exchange.response + 8);
}

std::uint16_t UsbTransport::AfterDataFailure(std::uint16_t code) {
    if (USBResetEndpoint(kCommandEndpoint) != kUsbOk) {
        ++m_linkErrors;
    }
    return code;
}

std::uint16_t UsbTransport::USBCleanupOutstandingData([[maybe_unused]] int code,
                                                      const std::function<void()>& terminate) {
    if (!IsOpen()) {
        return kUsbOk;
    }
    std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[kBulkChunkBytes]);
    if (!buffer) {
        return kUsbNoDrainBuffer;
    }
    const bool drained = DrainInput(buffer.get());
    buffer.reset();
    if (!drained) {
        terminate();
        return kUsbReadFailed;
    }
    return USBReset();
}

bool UsbTransport::DrainInput(std::uint8_t* buffer) {
    const std::scoped_lock hold(m_endpointLocks[kCommandLock]);
    const TransferBlock block(kCommandInPipe, kDrainTimeout);
    bool failed = false;
    for (int read = 0; read < kDrainReads; ++read) {
        const DriverReply reply = m_driver.Control(
            m_handle.load(),
            {.code = kControlBulkRead, .input = block, .dataFromUnit = {buffer, kBulkChunkBytes}});
        failed = !reply.ok;
        if (failed && reply.error == kErrorSemaphoreTimeout) {
            return true;
        }
        if (failed) {
            DropLastError();
            USBReset();
        }
    }
    return !failed;
}

std::int16_t UsbTransport::ReportUSBError(std::uint16_t code, const char* functionName,
                                          const CString& detail) {
    if (!m_initialised.load()) {
        return 1;
    }
    const auto status = static_cast<std::int16_t>(code);
    const int show = CRegistry::GetRegistryValue(RegistryKeyType::User, "Debug", "ShowUSBErrors", 0);
    if (code == kUnitAddressCheckFailed) {
        ShowMessageWhenQuiet(FormatText(LoadText(kTextAddressCheck), functionName, detail));
    } else if (show != 0) {
        ShowMessageWhenQuiet(Format("USB Error in function %s\nReturn code was 0x%X\n%s", functionName,
                                    static_cast<unsigned>(int{status}), detail.c_str()));
    }
    return status;
}

} // namespace kalvio
