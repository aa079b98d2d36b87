#include "simulator/boards/RelayJudge.h"

#include <cstdio>
#include <string_view>

namespace kalvio::simulator {

namespace {

// Bit 0 of 'p', 'q', 't' and 'u' alone drives no relay that needs rest when it is written directly.
bool IsSpared(char reg, std::uint8_t changed, WriteSource source) {
    const auto among = [reg](std::string_view registers) {
        return registers.find(reg) != std::string_view::npos;
    };
    switch (source) {
    case WriteSource::RegisterWrite:
        return among("r") || (among("pqtu") && changed != 0x01);
    case WriteSource::GeneratorRecord:
        return among("tuv");
    case WriteSource::AutoRangeRecord:
        return among("pqr");
    }
    return false;
}

std::string Sentence(char reg, unsigned bits, std::uint32_t rested, std::uint32_t tick) {
    char text[120];
    std::snprintf(text, sizeof text, "register '%c': bits 0x%02X toggled back after %u ms, at tick %u", reg,
                  bits, rested, tick);
    return text;
}

} // namespace

void RelayJudge::Note(char reg, std::uint8_t changed, std::uint32_t tick, WriteSource source) {
    LastWrite& last = m_last[static_cast<std::size_t>(reg - 'p')];
    const unsigned back = static_cast<unsigned>(changed & last.changed);
    const std::uint32_t rested = tick - last.tick;
    if (back != 0 && rested < kRelayRestMs && IsSpared(reg, changed, source)) {
        m_violations.push_back(Sentence(reg, back, rested, tick));
    }
    last = {changed, tick};
}

void RelayJudge::Forget() {
    m_last = {};
}

} // namespace kalvio::simulator
