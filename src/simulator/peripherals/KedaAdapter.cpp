#include "simulator/peripherals/KedaAdapter.h"

#include "simulator/peripherals/BusFrame.h"

#include <algorithm>

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kCommandUnitStatus = 0xC0;
constexpr std::uint8_t kCommandSpi = 0xCA;
constexpr std::uint8_t kCommandI2c = 0xCB;
constexpr std::uint8_t kCommandRates = 0xCD;
constexpr std::uint8_t kHalfFirmware = 0x02;
constexpr std::uint8_t kControlI2c = 0x01; // of the control mode
constexpr std::uint8_t kControlPhase = 0x02;
constexpr std::uint8_t kControlPolarity = 0x04;
constexpr std::uint8_t kRateCodeBits = 0x07; // of clocks 2
constexpr std::size_t kLongestTransfer = 10;

// Registers that one command writes.
struct RegisterGroup {
    std::uint8_t command;
    std::size_t first;
    std::size_t count;
};

constexpr RegisterGroup kGroups[] = {
    {0xC1, kKedaRelays, 1},    {0xC2, kKedaIo, 1},        {0xC3, kKedaGenRouting, 4},
    {0xC4, kKedaGenFormat, 3}, {0xC5, kKedaGenClocks, 2}, {0xC6, kKedaAnaRouting, 2},
    {0xC7, kKedaAnaFormat, 3}, {0xC8, kKedaAnaClocks, 2}, {0xC9, kKedaControlMode, 1},
    {0xCE, kKedaDelays, 1},
};

const RegisterGroup* FindGroup(std::uint8_t command) {
    const auto* found = std::find_if(std::begin(kGroups), std::end(kGroups),
                                     [command](const auto& group) { return group.command == command; });
    return found == std::end(kGroups) ? nullptr : found;
}

} // namespace

KedaAdapter::KedaAdapter(std::uint8_t address, KedaAdapterOptions options)
    : BusDevice(address, options.identity),
      m_clocks(options.clocks),
      m_spi(options.spiMode),
      m_i2c(options.i2cAddress) {}

std::optional<DeviceAnswer> KedaAdapter::Obey(std::uint8_t command, ByteView data, std::uint32_t) {
    if (const RegisterGroup* group = FindGroup(command)) {
        if (data.size() != group->count) {
            return Refuse(AboutCommand(command, "wrong number of data bytes"));
        }
        std::copy(data.begin(), data.end(), m_registers.begin() + static_cast<std::ptrdiff_t>(group->first));
        return DeviceAnswer{};
    }
    if (command == kCommandUnitStatus && data.empty()) {
        return UnitStatus();
    }
    if (command == kCommandRates && data.empty()) {
        return RateCodes();
    }
    if (command == kCommandSpi) {
        return SendSpi(data);
    }
    if (command == kCommandI2c) {
        return SendI2c(data);
    }
    if (command == kCommandWriteSector && data.size() == kFirmwareRecordBytes) {
        return DeviceAnswer{{}, m_store.Write(data) ? kSectorStored : kSectorRefused};
    }
    return Refuse(AboutCommand(command, "unknown"));
}

void KedaAdapter::PowerUp(std::uint32_t) {
    m_registers = kKedaPowerUp;
    m_store.LosePlace();
}

std::uint8_t KedaAdapter::StatusFlags() const {
    return m_store.IsHalf() ? kHalfFirmware : std::uint8_t{0};
}

DeviceAnswer KedaAdapter::UnitStatus() const {
    const KedaFrameRates rates = FollowClocks(m_registers, m_clocks);
    KedaRegisters told = m_registers;
    const auto tell = [&told](std::size_t clocks, double rateHz) {
        told[clocks + 1] =
            static_cast<std::uint8_t>((told[clocks + 1] & ~kRateCodeBits) | FrameRateCode(rateHz));
    };
    tell(kKedaGenClocks, rates.generatorHz);
    tell(kKedaAnaClocks, rates.analyserHz);
    return {{told.begin(), told.end()}, {}};
}

DeviceAnswer KedaAdapter::RateCodes() const {
    const KedaFrameRates rates = FollowClocks(m_registers, m_clocks);
    return {
        {static_cast<std::uint8_t>(FrameRateCode(rates.analyserHz) << 4 | FrameRateCode(rates.generatorHz))},
        {}};
}

std::optional<DeviceAnswer> KedaAdapter::SendSpi(ByteView data) {
    const std::uint8_t mode = m_registers[kKedaControlMode];
    if ((mode & kControlI2c) != 0 || data.size() > kLongestTransfer) {
        return Refuse(AboutCommand(kCommandSpi, "no such transfer in this mode"));
    }
    return DeviceAnswer{m_spi.Transfer(data, {(mode & kControlPhase) != 0, (mode & kControlPolarity) != 0}),
                        {}};
}

// Without an acknowledgement the adapter stays silent.
std::optional<DeviceAnswer> KedaAdapter::SendI2c(ByteView data) {
    if ((m_registers[kKedaControlMode] & kControlI2c) == 0 || data.empty() ||
        data.size() > kLongestTransfer + 1) {
        return Refuse(AboutCommand(kCommandI2c, "no such transfer in this mode"));
    }
    if (!m_i2c.Write(data)) {
        return Refuse(AboutCommand(kCommandI2c, "not acknowledged"));
    }
    return DeviceAnswer{};
}

void KedaAdapter::Route(SignalPath& path) const {
    const std::scoped_lock guard(m_lock);
    if (m_on) {
        RouteThrough(m_registers, path);
    }
}

KedaRegisters KedaAdapter::Registers() const {
    const std::scoped_lock guard(m_lock);
    return m_registers;
}

void KedaAdapter::SetClockSource(const KedaClockSource& source) {
    const std::scoped_lock guard(m_lock);
    m_clocks = source;
}

KedaFrameRates KedaAdapter::FrameRates() const {
    const std::scoped_lock guard(m_lock);
    return FollowClocks(m_registers, m_clocks);
}

ControlRegisters KedaAdapter::SpiRegisters() const {
    const std::scoped_lock guard(m_lock);
    return m_spi.Registers();
}

ControlRegisters KedaAdapter::I2cRegisters() const {
    const std::scoped_lock guard(m_lock);
    return m_i2c.Registers();
}

FirmwareStore::Sectors KedaAdapter::Firmware() const {
    const std::scoped_lock guard(m_lock);
    return m_store.Written();
}

} // namespace kalvio::simulator
