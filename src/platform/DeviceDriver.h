#pragma once

// The kernel driver of the analyser unit, as the library sees it: a device file that takes control
// requests. A simulated unit and a real one stand behind the same four operations.

#include <cstdint>
#include <span>
#include <string_view>

namespace kalvio {

// Control codes of the driver (device type 0x22, access 0).
enum DeviceControlCode : std::uint32_t {
    kControlGetDescriptor = 0x00222004, // data from unit: 18 bytes, the USB device descriptor
    kControlResetDevice = 0x00222031,   // no buffers
    kControlResetPipe = 0x00222035,     // input: 4 bytes, pipe number, signed little-endian
    kControlBulkRead = 0x0022204E,      // input: 8-byte transfer block; data from unit
    kControlBulkWrite = 0x00222051,     // input: 8-byte transfer block; data to unit
    kControlVendorRequest = 0x00222059, // input: 10-byte request block
    kControlLastUsbError = 0x0022205C,  // data from unit: 4 bytes, status
};

// System error of a read that found nothing within its time-out (the semaphore time-out).
inline constexpr std::uint32_t kErrorSemaphoreTimeout = 121;

// An open device. Zero is no device.
enum class DeviceHandle : std::uint32_t { None = 0 };

// One control request. A code that moves data uses exactly one of the two data buffers; the library
// passes its caller's buffer straight through, without a copy.
struct DriverRequest {
    std::uint32_t code = 0;
    std::span<const std::uint8_t> input{};
    std::span<const std::uint8_t> dataToUnit{};
    std::span<std::uint8_t> dataFromUnit{};
};

// What became of a request: done with a byte count, or failed with a system error code.
struct DriverReply {
    bool ok = false;
    std::uint32_t bytesReturned = 0;
    std::uint32_t error = 0;
};

// Every operation may be called from any thread; an implementation guards its own state. Control may
// block for as long as the unit takes.
class DeviceDriver {
public:
    virtual ~DeviceDriver() = default;

    // Opens the device of that name for this caller alone. None when it is absent or already open.
    virtual DeviceHandle Open(std::string_view name) = 0;

    // Carries out one request on an open device. A closed or unknown handle fails.
    virtual DriverReply Control(DeviceHandle device, const DriverRequest& request) = 0;

    // Closes the device. An unknown handle does nothing.
    virtual void Close(DeviceHandle device) = 0;
};

} // namespace kalvio
