#pragma once

// The requests that the unit's kernel driver takes, over the one device that is open.

#include "platform/DeviceDriver.h"
#include "platform/formats/Endian.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <span>

namespace kalvio {

inline constexpr std::uint32_t kTransferTimeout = 3000; // in the driver's unit
inline constexpr std::uint32_t kDrainTimeout = 10;
inline constexpr std::uint16_t kCommandOutPipe = 1; // endpoint 2
inline constexpr std::uint16_t kCommandInPipe = 8;
inline constexpr std::size_t kDescriptorBytes = 18;

// How a bulk request names its pipe and time-out: pipe, two bytes of padding, time-out, little-endian.
[[nodiscard]] constexpr std::array<std::uint8_t, 8> TransferBlock(std::uint16_t pipe, std::uint32_t timeout) {
    return {static_cast<std::uint8_t>(pipe),
            static_cast<std::uint8_t>(pipe >> 8),
            0,
            0,
            static_cast<std::uint8_t>(timeout),
            static_cast<std::uint8_t>(timeout >> 8),
            static_cast<std::uint8_t>(timeout >> 16),
            static_cast<std::uint8_t>(timeout >> 24)};
}

// Any thread; opening and closing are the caller's to put in order with what runs. Each operation is one
// request, true when the driver carried it out; a failure reads the driver's last error and drops it.
class DriverRequests {
public:
    explicit DriverRequests(DeviceDriver& driver) : m_driver(driver) {}

    bool Open(); // true when it is open already
    void Close();
    [[nodiscard]] bool IsOpen() const { return m_handle.load() != DeviceHandle::None; }

    // Bulk data of endpoint 2.
    bool Write(std::span<const std::uint8_t> data) {
        static constexpr auto kBlock = TransferBlock(kCommandOutPipe, kTransferTimeout);
        return Succeeds({.code = kControlBulkWrite, .input = kBlock, .dataToUnit = data});
    }
    bool Read(std::span<std::uint8_t> data) {
        static constexpr auto kBlock = TransferBlock(kCommandInPipe, kTransferTimeout);
        return Succeeds({.code = kControlBulkRead, .input = kBlock, .dataFromUnit = data});
    }
    // A read of whatever is pending, with the driver's own answer; drops no last error.
    DriverReply Drain(std::span<std::uint8_t> data);
    // True only for all 18 bytes, which are zeroed first.
    bool ReadDescriptor(std::span<std::uint8_t, kDescriptorBytes> descriptor);
    bool ResetEndpoint(std::uint16_t endpoint);
    bool SetPairing(std::uint16_t pairing);
    bool ResetPipe(std::int32_t pipe);
    bool ResetDevice();
    bool LastError(std::uint32_t& status); // 0 when it cannot be read
    void DropLastError();

private:
    bool Succeeds(const DriverRequest& request) {
        if (m_driver.Control(m_handle.load(), request).ok) {
            return true;
        }
        DropLastError();
        return false;
    }
    bool VendorRequest(std::uint8_t request, std::uint16_t value);

    DeviceDriver& m_driver;
    std::atomic<DeviceHandle> m_handle{DeviceHandle::None};
};

} // namespace kalvio
