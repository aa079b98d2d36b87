#pragma once

// The memories and registers of a virtual unit, past the wire. Spaces as the commands name them: 'X', 'S',
// 'C', 'I'; DSP 'X', 'Y'. What does not exist reads 0 and ignores writes. Any thread.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace kalvio::simulator {

struct UnitState;

enum class CalibrationMemory : std::uint8_t { MainBoard = 0x52, AnalogueBoard = 0x54 };

class UnitMemories {
public:
    explicit UnitMemories(std::shared_ptr<UnitState> state);

    [[nodiscard]] std::uint8_t PeekMicro(char space, std::uint16_t address) const;
    void PokeMicro(char space, std::uint16_t address, std::uint8_t value);
    [[nodiscard]] std::uint32_t PeekDsp(int dsp, char space, std::uint32_t address) const;
    void PokeDsp(int dsp, char space, std::uint32_t address, std::uint32_t value);
    // The value last written to an analogue register 'p' to 'w'.
    [[nodiscard]] std::uint8_t PeekRegister(char reg) const;
    [[nodiscard]] std::array<std::uint8_t, 8> MainBoardRelays() const;
    [[nodiscard]] std::vector<std::uint8_t> ReadCalibration(CalibrationMemory memory) const; // 4096 bytes
    void WriteCalibration(CalibrationMemory memory, std::size_t offset, std::span<const std::uint8_t> bytes);
    // Fills both copies of a memory with a valid image of the unit's own making.
    void SetDefaultCalibration(CalibrationMemory memory);

private:
    std::shared_ptr<UnitState> m_state;
};

} // namespace kalvio::simulator
