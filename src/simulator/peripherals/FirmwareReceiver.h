#pragma once

// A peripheral that does nothing but take new firmware. While it holds half a firmware its status flags
// carry bit 1, and it takes a new download at any time.

#include "simulator/peripherals/BusDevice.h"
#include "simulator/peripherals/FirmwareStore.h"

namespace kalvio::simulator {

struct FirmwareReceiverOptions {
    DeviceIdentity identity{0x22, 0, 0};
    bool lies = false; // answers that it stored what it dropped
};

class FirmwareReceiver final : public BusDevice {
public:
    explicit FirmwareReceiver(std::uint8_t address, FirmwareReceiverOptions options = {})
        : BusDevice(address, options.identity), m_lies(options.lies) {}

    // What it holds of new firmware, sector by sector; empty while its first one is untouched.
    [[nodiscard]] FirmwareStore::Sectors Firmware() const;
    [[nodiscard]] bool IsHalf() const;
    // Write-sector commands that reached it, refused ones included.
    [[nodiscard]] std::uint32_t BlocksSeen() const;

    // The n-th block from now on finds it losing power: neither stored nor answered. Power is back after
    // so many milliseconds, or, when that is 0, with PowerOn.
    void LosePowerAtBlock(std::uint32_t n, std::uint32_t backAfterMs = 0);
    void PowerOn();

protected:
    std::optional<DeviceAnswer> Obey(std::uint8_t command, ByteView data, std::uint32_t tick) override;
    void PowerUp(std::uint32_t) override { m_store.LosePlace(); }
    [[nodiscard]] std::uint8_t StatusFlags() const override;
    bool HasPower(std::uint32_t tick) override;

private:
    const bool m_lies;
    FirmwareStore m_store;
    std::uint32_t m_blocks = 0;
    std::uint32_t m_lastBlock = 0; // the count at which power goes; 0: never
    std::uint32_t m_backAfterMs = 0;
    std::optional<std::uint32_t> m_darkSince;
};

} // namespace kalvio::simulator
