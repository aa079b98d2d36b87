#pragma once

// A serial memory on the unit's I2C bus, read and written page by page.

#include "hardware/MemoryAccess.h"
#include "platform/Export.h"

#include <cstdint>
#include <span>

namespace kalvio {

inline constexpr std::uint32_t kMemoryPageMs = 10; // the memory's own time for one page

// The device and its geometry. User-interface thread.
class CalibrationMemory {
public:
    CalibrationMemory(MemoryAccess& access, std::uint8_t device, std::uint8_t pageSize,
                      std::uint8_t addressBytes)
        : m_access(access), m_device(device), m_pageSize(pageSize), m_addressBytes(addressBytes) {}

    // Both carry whole pages, as many as fit the bytes; the first failure ends the work and gives false.
    bool Read(std::uint16_t offset, std::span<std::uint8_t> bytes);
    bool Write(std::uint16_t offset, std::span<const std::uint8_t> bytes); // checked writes

private:
    bool SetAddress(std::uint16_t address);
    bool WritePage(std::uint16_t address, std::span<const std::uint8_t> page);

    MemoryAccess& m_access;
    std::uint8_t m_device;
    std::uint8_t m_pageSize;
    std::uint8_t m_addressBytes; // 1, or 2 with the high byte first
};

} // namespace kalvio
