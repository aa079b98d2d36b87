#include "simulator/boards/AnalogueBoard.h"

namespace kalvio::simulator {

namespace {

std::size_t Index(char reg) {
    return static_cast<std::size_t>(reg - kFirstRegister);
}

} // namespace

AnalogueBoard::AnalogueBoard(std::uint8_t version, std::uint8_t linkFit)
    : m_version(version), m_linkFit(linkFit) {}

void AnalogueBoard::Write(char reg, std::uint8_t value, std::uint32_t tick, WriteSource source) {
    std::uint8_t& stored = m_values[Index(reg)];
    const auto changed = static_cast<std::uint8_t>(stored ^ value);
    stored = value;
    m_writes.Add({reg, value, changed, tick});
    m_judge.Note(reg, changed, tick, source);
}

void AnalogueBoard::Leave(char reg, std::uint32_t tick, WriteSource source) {
    m_judge.Note(reg, 0, tick, source);
}

std::uint8_t AnalogueBoard::ReadBack(char reg) const {
    if (reg == 'p') {
        return m_version;
    }
    return reg == 'q' ? m_linkFit : Written(reg);
}

std::uint8_t AnalogueBoard::Written(char reg) const {
    return m_values[Index(reg)];
}

} // namespace kalvio::simulator
