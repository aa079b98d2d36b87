#pragma once

// What a calibration table needs of the unit.

#include "platform/Export.h"

#include <cstdint>

namespace kalvio {

// Statuses are those of the command layer: 0 for success. User-interface thread.
class KALVIO_API MemoryAccess {
public:
    virtual ~MemoryAccess() = default;
    [[nodiscard]] virtual bool IsUnitPresent() const = 0;
    virtual std::int16_t PutByte(std::uint8_t device, std::uint8_t value) = 0; // unchecked
    virtual std::int16_t PutBlock(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t length,
                                  bool checked) = 0;
    virtual std::int16_t GetBlock(std::uint8_t device, std::uint8_t* bytes, std::uint32_t length) = 0;
    virtual std::int16_t ReadStatusRegister(std::uint16_t address, std::uint8_t& value) = 0; // micro 'X'
    virtual std::int16_t ReadAnalogueRegister(char reg, std::uint8_t& value) = 0;            // 'p' to 'w'
};

} // namespace kalvio
