#include "simulator/boards/CalibrationEeprom.h"

#include <algorithm>

namespace kalvio::simulator {

namespace {

constexpr std::size_t kAddressBytes = 2;
constexpr std::uint8_t kErasedByte = 0xFF;
constexpr std::uint8_t kDamage = 0x01; // the bit that a damaged read flips

} // namespace

CalibrationEeprom::CalibrationEeprom(FaultPlan& faults)
    : m_faults(faults), m_bytes(kEepromBytes, kErasedByte) {}

UnitError CalibrationEeprom::Read(ByteSpan into, const I2cTransaction& transaction) {
    for (std::uint8_t& byte : into) {
        byte = m_bytes[m_pointer];
        m_pointer = (m_pointer + 1) % kEepromBytes;
    }
    if (into.size() > 1 && m_faults.Strike(FaultKind::CorruptMemoryRead, transaction.command)) {
        into[into.size() / 2] ^= kDamage;
    }
    return UnitError::None;
}

UnitError CalibrationEeprom::Write(ByteView bytes, const I2cTransaction& transaction) {
    if (bytes.size() < kAddressBytes || bytes.size() > kAddressBytes + kEepromPageBytes) {
        return UnitError::I2cTransfer;
    }
    m_pointer = ReadBig(bytes, 0, kAddressBytes) % kEepromBytes;
    const ByteView data = bytes.subspan(kAddressBytes);
    if (!data.empty() && !m_faults.Strike(FaultKind::WriteProtect, transaction.command)) {
        WritePage(data);
    }
    return UnitError::None;
}

void CalibrationEeprom::WritePage(ByteView data) {
    const std::size_t page = m_pointer - m_pointer % kEepromPageBytes;
    for (const std::uint8_t byte : data) {
        m_bytes[m_pointer] = byte;
        m_pointer = page + (m_pointer + 1) % kEepromPageBytes;
    }
}

void CalibrationEeprom::Put(std::size_t offset, ByteView bytes) {
    if (offset >= kEepromBytes) {
        return;
    }
    const ByteView fitting = bytes.first(std::min(bytes.size(), kEepromBytes - offset));
    std::copy(fitting.begin(), fitting.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

} // namespace kalvio::simulator
