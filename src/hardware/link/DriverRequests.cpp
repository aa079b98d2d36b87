#include "hardware/link/DriverRequests.h"

#include <algorithm>

namespace kalvio {

namespace {

constexpr const char* kDeviceName = R"(\\.\kvusb-0)";
constexpr std::uint8_t kVendorResetEndpoint = 0xB0;
constexpr std::uint8_t kVendorSetPairing = 0xB1;

} // namespace

bool DriverRequests::Open() {
    if (!IsOpen()) {
        m_handle.store(m_driver.Open(kDeviceName));
    }
    return IsOpen();
}

void DriverRequests::Close() {
    const DeviceHandle handle = m_handle.exchange(DeviceHandle::None);
    if (handle != DeviceHandle::None) {
        m_driver.Close(handle);
    }
}

DriverReply DriverRequests::Drain(std::span<std::uint8_t> data) {
    static constexpr auto kBlock = TransferBlock(kCommandInPipe, kDrainTimeout);
    return m_driver.Control(m_handle.load(),
                            {.code = kControlBulkRead, .input = kBlock, .dataFromUnit = data});
}

bool DriverRequests::ReadDescriptor(std::span<std::uint8_t, kDescriptorBytes> descriptor) {
    std::ranges::fill(descriptor, std::uint8_t{0});
    const DriverReply reply =
        m_driver.Control(m_handle.load(), {.code = kControlGetDescriptor, .dataFromUnit = descriptor});
    if (!reply.ok) {
        DropLastError();
    }
    return reply.ok && reply.bytesReturned == kDescriptorBytes;
}

// Request block: host to device, vendor, device, reserved, the request, padding, value and index (0)
// little-endian.
bool DriverRequests::VendorRequest(std::uint8_t request, std::uint16_t value) {
    std::array<std::uint8_t, 10> block{0, 2, 0, 0, request};
    PutLittle16(&block[6], value);
    return Succeeds({.code = kControlVendorRequest, .input = block});
}

bool DriverRequests::ResetEndpoint(std::uint16_t endpoint) {
    return VendorRequest(kVendorResetEndpoint, endpoint);
}

bool DriverRequests::SetPairing(std::uint16_t pairing) {
    return VendorRequest(kVendorSetPairing, pairing);
}

bool DriverRequests::ResetPipe(std::int32_t pipe) {
    std::array<std::uint8_t, 4> number{};
    PutLittle32(number.data(), static_cast<std::uint32_t>(pipe));
    return Succeeds({.code = kControlResetPipe, .input = number});
}

bool DriverRequests::ResetDevice() {
    return Succeeds({.code = kControlResetDevice});
}

bool DriverRequests::LastError(std::uint32_t& status) {
    std::array<std::uint8_t, 4> bytes{};
    const bool read =
        m_driver.Control(m_handle.load(), {.code = kControlLastUsbError, .dataFromUnit = bytes}).ok;
    status = read ? GetLittle32(bytes.data()) : 0;
    return read;
}

void DriverRequests::DropLastError() {
    std::uint32_t dropped = 0;
    LastError(dropped);
}

} // namespace kalvio
