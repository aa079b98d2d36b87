#include "simulator/peripherals/FirmwareStore.h"

#include <algorithm>

namespace kalvio::simulator {

namespace {

constexpr std::size_t kBlockBytes = 32;
constexpr std::size_t kSectorBytes = 512 * kBlockBytes;
constexpr std::uint8_t kBootSector = 0;
constexpr std::uint8_t kSettingsSector = 4;

} // namespace

bool FirmwareStore::Write(ByteView record) {
    const auto sector = static_cast<std::uint8_t>(record[0] >> 4);
    const std::size_t offset = (ReadBig(record, 0, 2) & 0x0FFF) * kBlockBytes;
    if (sector == kBootSector || sector == kSettingsSector || offset >= kSectorBytes) {
        return false;
    }
    if (offset != 0 && m_open != sector) {
        return false;
    }
    ByteVector& bytes = m_sectors[sector];
    if (offset != 0 && bytes.size() != offset && bytes.size() != offset + kBlockBytes) {
        return false;
    }
    m_open = sector;
    bytes.resize(offset + kBlockBytes);
    std::copy(record.begin() + 2, record.end(), bytes.end() - kBlockBytes);
    return true;
}

bool FirmwareStore::IsHalf() const {
    return std::any_of(m_sectors.begin(), m_sectors.end(),
                       [](const auto& sector) { return sector.second.size() != kSectorBytes; });
}

} // namespace kalvio::simulator
