#include "simulator/boards/I2cBus.h"

#include <algorithm>

namespace kalvio::simulator {

namespace {

constexpr std::uint32_t kMainSensor = 72;
constexpr std::uint32_t kAnalogueSensor = 73;

// One register of the analogue board: a byte in, a byte out, again and again.
class RegisterDevice final : public I2cDevice {
public:
    RegisterDevice(AnalogueBoard& board, char reg) : m_board(board), m_register(reg) {}

    UnitError Read(ByteSpan into, const I2cTransaction&) override {
        std::fill(into.begin(), into.end(), m_board.ReadBack(m_register));
        return UnitError::None;
    }

    UnitError Write(ByteView bytes, const I2cTransaction& transaction) override {
        if (bytes.size() != 1) {
            return UnitError::I2cTransfer;
        }
        m_board.Write(m_register, bytes[0], transaction.tick, WriteSource::RegisterWrite);
        return UnitError::None;
    }

private:
    AnalogueBoard& m_board;
    char m_register;
};

// A temperature sensor: a written byte selects one of its registers, register 0 holds the temperature
// as a left-aligned 9-bit number of half degrees; the others read zero.
class TemperatureSensor final : public I2cDevice {
public:
    explicit TemperatureSensor(std::int16_t halfDegrees)
        : m_temperature(static_cast<std::uint16_t>(static_cast<unsigned>(halfDegrees) << 7)) {}

    UnitError Read(ByteSpan into, const I2cTransaction&) override {
        std::uint8_t reading[2] = {};
        if (m_selected == 0) {
            StoreBig(reading, 0, m_temperature, 2);
        }
        for (std::size_t i = 0; i < into.size(); ++i) {
            into[i] = reading[i % 2];
        }
        return UnitError::None;
    }

    UnitError Write(ByteView bytes, const I2cTransaction&) override {
        if (bytes.size() != 1) {
            return UnitError::I2cTransfer;
        }
        m_selected = bytes[0];
        return UnitError::None;
    }

private:
    std::uint16_t m_temperature;
    std::uint8_t m_selected = 0;
};

} // namespace

I2cBus::I2cBus(AnalogueBoard& board, FaultPlan& faults, std::int16_t mainHalfDegrees,
               std::int16_t analogueHalfDegrees)
    : m_mainMemory(faults), m_analogueMemory(faults) {
    for (std::uint32_t i = 0; i < kRegisterCount; ++i) {
        const std::uint32_t address = static_cast<std::uint32_t>(kFirstRegister) + i;
        m_devices[address] = std::make_unique<RegisterDevice>(board, static_cast<char>(address));
    }
    m_devices[kMainSensor] = std::make_unique<TemperatureSensor>(mainHalfDegrees);
    m_devices[kAnalogueSensor] = std::make_unique<TemperatureSensor>(analogueHalfDegrees);
}

CalibrationEeprom& I2cBus::Memory(CalibrationMemory memory) {
    return memory == CalibrationMemory::MainBoard ? m_mainMemory : m_analogueMemory;
}

I2cDevice* I2cBus::Find(std::uint32_t address) {
    if (address == static_cast<std::uint32_t>(CalibrationMemory::MainBoard)) {
        return &m_mainMemory;
    }
    if (address == static_cast<std::uint32_t>(CalibrationMemory::AnalogueBoard)) {
        return &m_analogueMemory;
    }
    const auto found = m_devices.find(address);
    return found == m_devices.end() ? nullptr : found->second.get();
}

UnitError I2cBus::Read(std::uint32_t address, ByteSpan into, const I2cTransaction& transaction) {
    I2cDevice* device = Find(address);
    return device == nullptr ? UnitError::I2cNoDevice : device->Read(into, transaction);
}

UnitError I2cBus::Write(std::uint32_t address, ByteView bytes, const I2cTransaction& transaction) {
    I2cDevice* device = Find(address);
    return device == nullptr ? UnitError::I2cNoDevice : device->Write(bytes, transaction);
}

} // namespace kalvio::simulator
