#include "hardware/calibration/CalibrationMemory.h"

#include "platform/Clock.h"
#include "platform/formats/Endian.h"

#include <algorithm>
#include <array>
#include <limits>

namespace kalvio {

namespace {

constexpr std::uint8_t kOneAddressByte = 1;
constexpr std::size_t kMostAddressBytes = 2;
constexpr std::size_t kMostPageBytes = std::numeric_limits<std::uint8_t>::max();

// Calls `work(address, page)` for each whole page and gives the memory its time after each.
template<typename Bytes, typename Work>
bool ForEachPage(std::uint16_t offset, Bytes bytes, std::size_t pageSize, Work work) {
    for (std::size_t at = 0; pageSize != 0 && at + pageSize <= bytes.size(); at += pageSize) {
        if (!work(static_cast<std::uint16_t>(offset + at), bytes.subspan(at, pageSize))) {
            return false;
        }
        Sleep(kMemoryPageMs);
    }
    return true;
}

} // namespace

bool CalibrationMemory::Read(std::uint16_t offset, std::span<std::uint8_t> bytes) {
    return ForEachPage(offset, bytes, m_pageSize, [this](std::uint16_t address, auto page) {
        return SetAddress(address) && m_access.GetBlock(m_device, page.data(), m_pageSize) == 0;
    });
}

bool CalibrationMemory::Write(std::uint16_t offset, std::span<const std::uint8_t> bytes) {
    return ForEachPage(offset, bytes, m_pageSize,
                       [this](std::uint16_t address, auto page) { return WritePage(address, page); });
}

bool CalibrationMemory::SetAddress(std::uint16_t address) {
    if (m_addressBytes == kOneAddressByte) {
        return m_access.PutByte(m_device, static_cast<std::uint8_t>(address)) == 0;
    }
    std::array<std::uint8_t, kMostAddressBytes> bytes{};
    PutBig16(bytes.data(), address);
    return m_access.PutBlock(m_device, bytes.data(), bytes.size(), false) == 0;
}

bool CalibrationMemory::WritePage(std::uint16_t address, std::span<const std::uint8_t> page) {
    std::array<std::uint8_t, kMostAddressBytes + kMostPageBytes> bytes{};
    PutBig16(bytes.data(), address);
    std::copy(page.begin(), page.end(), bytes.begin() + kMostAddressBytes);
    const std::size_t unused = m_addressBytes == kOneAddressByte ? 1 : 0; // the high address byte
    const auto length = static_cast<std::uint32_t>(kMostAddressBytes - unused + page.size());
    return m_access.PutBlock(m_device, bytes.data() + unused, length, true) == 0;
}

} // namespace kalvio
