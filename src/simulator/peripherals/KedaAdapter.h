#pragma once

// A KEDA adapter: its register groups, live frame clocks, the control port with devices behind it, and its
// place in the way of the signals. In standby every path is bypassed.

#include "simulator/peripherals/BusDevice.h"
#include "simulator/peripherals/ControlPort.h"
#include "simulator/peripherals/FirmwareStore.h"
#include "simulator/peripherals/KedaClocks.h"

namespace kalvio::simulator {

struct KedaAdapterOptions {
    DeviceIdentity identity{0x21, 0, 3};
    KedaClockSource clocks{};
    SpiMode spiMode{};
    std::uint8_t i2cAddress = 0x1A; // 7 bits
};

class KedaAdapter final : public BusDevice {
public:
    explicit KedaAdapter(std::uint8_t address, KedaAdapterOptions options = {});

    void Route(SignalPath& path) const override;

    // As written, without the live rate codes.
    [[nodiscard]] KedaRegisters Registers() const;
    void SetClockSource(const KedaClockSource& source);
    [[nodiscard]] KedaFrameRates FrameRates() const;
    [[nodiscard]] ControlRegisters SpiRegisters() const;
    [[nodiscard]] ControlRegisters I2cRegisters() const;
    [[nodiscard]] FirmwareStore::Sectors Firmware() const;

protected:
    std::optional<DeviceAnswer> Obey(std::uint8_t command, ByteView data, std::uint32_t tick) override;
    void PowerUp(std::uint32_t tick) override;
    [[nodiscard]] std::uint8_t StatusFlags() const override;

private:
    [[nodiscard]] DeviceAnswer UnitStatus() const;
    [[nodiscard]] DeviceAnswer RateCodes() const;
    std::optional<DeviceAnswer> SendSpi(ByteView data);
    std::optional<DeviceAnswer> SendI2c(ByteView data);

    KedaRegisters m_registers = kKedaPowerUp;
    KedaClockSource m_clocks;
    SpiRegisterFile m_spi;
    I2cRegisterFile m_i2c;
    FirmwareStore m_store;
};

} // namespace kalvio::simulator
