#pragma once

// A device on the unit's I2C bus.

#include "simulator/Bytes.h"
#include "simulator/UnitError.h"

namespace kalvio::simulator {

// What a device may know of the command that reaches it.
struct I2cTransaction {
    std::uint32_t command = 0;
    std::uint32_t tick = 0;
};

class I2cDevice {
public:
    virtual ~I2cDevice() = default;
    virtual UnitError Read(ByteSpan into, const I2cTransaction& transaction) = 0;
    virtual UnitError Write(ByteView bytes, const I2cTransaction& transaction) = 0;
};

} // namespace kalvio::simulator
