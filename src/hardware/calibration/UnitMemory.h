#pragma once

// The unit as the calibration tables see it.

#include "hardware/CommandSet.h"
#include "hardware/MemoryAccess.h"

namespace kalvio {

// User-interface thread.
class UnitMemory final : public MemoryAccess {
public:
    explicit UnitMemory(CommandSet& commands) : m_commands(commands) {}

    [[nodiscard]] bool IsUnitPresent() const override { return m_commands.IsActive(); }
    std::int16_t PutByte(std::uint8_t device, std::uint8_t value) override {
        return m_commands.MicroPutMem(kSpaceI2c, device, value, 0);
    }
    std::int16_t PutBlock(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t length,
                          bool checked) override {
        return m_commands.MicroPutMemBlock(kSpaceI2c, device, length, bytes, checked ? 1 : 0);
    }
    std::int16_t GetBlock(std::uint8_t device, std::uint8_t* bytes, std::uint32_t length) override {
        return m_commands.MicroGetMemBlock(kSpaceI2c, device, length, bytes, 0);
    }
    std::int16_t ReadStatusRegister(std::uint16_t address, std::uint8_t& value) override {
        return m_commands.MicroGetMem(kSpaceX, address, value);
    }
    std::int16_t ReadAnalogueRegister(char reg, std::uint8_t& value) override {
        return m_commands.MicroGetMem(kSpaceI2c, static_cast<std::uint8_t>(reg), value);
    }

private:
    CommandSet& m_commands;
};

} // namespace kalvio
