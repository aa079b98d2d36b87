#pragma once

// A serial memory of 4096 bytes as such parts behave: two address bytes set the pointer, data behind
// them is written within one 32-byte page (wrapping inside it), reads count the pointer up.

#include "simulator/FaultPlan.h"
#include "simulator/boards/I2cDevice.h"

namespace kalvio::simulator {

inline constexpr std::size_t kEepromBytes = 4096;
inline constexpr std::size_t kEepromPageBytes = 32;

class CalibrationEeprom final : public I2cDevice {
public:
    explicit CalibrationEeprom(FaultPlan& faults);

    UnitError Read(ByteSpan into, const I2cTransaction& transaction) override;
    UnitError Write(ByteView bytes, const I2cTransaction& transaction) override;

    [[nodiscard]] const ByteVector& Contents() const { return m_bytes; }
    // Writes past the wire; what would lie beyond the end is dropped.
    void Put(std::size_t offset, ByteView bytes);

private:
    void WritePage(ByteView data);

    FaultPlan& m_faults;
    ByteVector m_bytes;
    std::size_t m_pointer = 0;
};

} // namespace kalvio::simulator
