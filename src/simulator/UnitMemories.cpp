#include "simulator/UnitMemories.h"

#include "simulator/UnitState.h"

#include <mutex>
#include <utility>

namespace kalvio::simulator {

namespace {

// The DSP that has such a word; null when there is none.
DspMemory* FindDsp(UnitState& state, int dsp, char space, std::uint32_t address) {
    const bool exists = (dsp == 0 || dsp == 1) &&
                        DspMemory::Check(static_cast<std::uint8_t>(space), address, 1) == UnitError::None;
    return exists ? &state.boards.dsps[static_cast<std::size_t>(dsp)] : nullptr;
}

} // namespace

UnitMemories::UnitMemories(std::shared_ptr<UnitState> state) : m_state(std::move(state)) {}

std::uint8_t UnitMemories::PeekMicro(char space, std::uint16_t address) const {
    const std::scoped_lock guard(m_state->lock);
    std::uint8_t value = 0;
    m_state->boards.micro.Read(static_cast<std::uint8_t>(space), address, {&value, 1});
    return value;
}

void UnitMemories::PokeMicro(char space, std::uint16_t address, std::uint8_t value) {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.micro.Write(static_cast<std::uint8_t>(space), address, {&value, 1});
}

std::uint32_t UnitMemories::PeekDsp(int dsp, char space, std::uint32_t address) const {
    const std::scoped_lock guard(m_state->lock);
    const DspMemory* memory = FindDsp(*m_state, dsp, space, address);
    return memory == nullptr ? 0 : memory->Get(static_cast<std::uint8_t>(space), address);
}

void UnitMemories::PokeDsp(int dsp, char space, std::uint32_t address, std::uint32_t value) {
    const std::scoped_lock guard(m_state->lock);
    if (DspMemory* memory = FindDsp(*m_state, dsp, space, address)) {
        memory->Put(static_cast<std::uint8_t>(space), address, value);
    }
}

std::uint8_t UnitMemories::PeekRegister(char reg) const {
    const std::scoped_lock guard(m_state->lock);
    return reg >= kFirstRegister && reg <= kLastRegister ? m_state->boards.analogue.Written(reg)
                                                         : std::uint8_t{0};
}

std::array<std::uint8_t, 8> UnitMemories::MainBoardRelays() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.relays;
}

std::vector<std::uint8_t> UnitMemories::ReadCalibration(CalibrationMemory memory) const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.i2c.Memory(memory).Contents();
}

void UnitMemories::WriteCalibration(CalibrationMemory memory, std::size_t offset,
                                    std::span<const std::uint8_t> bytes) {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.i2c.Memory(memory).Put(offset, bytes);
}

void UnitMemories::SetDefaultCalibration(CalibrationMemory memory) {
    const std::scoped_lock guard(m_state->lock);
    m_state->SetDefaultCalibration(memory);
}

} // namespace kalvio::simulator
