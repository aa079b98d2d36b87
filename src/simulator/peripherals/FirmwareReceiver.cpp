#include "simulator/peripherals/FirmwareReceiver.h"

#include "simulator/peripherals/BusFrame.h"

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kHalfFirmware = 0x02;

} // namespace

std::optional<DeviceAnswer> FirmwareReceiver::Obey(std::uint8_t command, ByteView data, std::uint32_t tick) {
    if (command != kCommandWriteSector || data.size() != kFirmwareRecordBytes) {
        return Refuse(AboutCommand(command, "unknown"));
    }
    if (++m_blocks == m_lastBlock) {
        m_darkSince = tick;
        m_on = true; // as it comes back
        PowerUp(tick);
        return std::nullopt;
    }
    const bool stored = m_lies || m_store.Write(data);
    return DeviceAnswer{{}, stored ? kSectorStored : kSectorRefused};
}

std::uint8_t FirmwareReceiver::StatusFlags() const {
    return m_store.IsHalf() ? kHalfFirmware : std::uint8_t{0};
}

bool FirmwareReceiver::HasPower(std::uint32_t tick) {
    if (m_darkSince && m_backAfterMs != 0 && tick - *m_darkSince >= m_backAfterMs) {
        m_darkSince.reset();
    }
    return !m_darkSince;
}

FirmwareStore::Sectors FirmwareReceiver::Firmware() const {
    const std::scoped_lock guard(m_lock);
    return m_store.Written();
}

bool FirmwareReceiver::IsHalf() const {
    const std::scoped_lock guard(m_lock);
    return m_store.IsHalf();
}

std::uint32_t FirmwareReceiver::BlocksSeen() const {
    const std::scoped_lock guard(m_lock);
    return m_blocks;
}

void FirmwareReceiver::LosePowerAtBlock(std::uint32_t n, std::uint32_t backAfterMs) {
    const std::scoped_lock guard(m_lock);
    m_lastBlock = m_blocks + n;
    m_backAfterMs = backAfterMs;
}

void FirmwareReceiver::PowerOn() {
    const std::scoped_lock guard(m_lock);
    m_darkSince.reset();
}

} // namespace kalvio::simulator
