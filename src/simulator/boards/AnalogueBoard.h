#pragma once

// The eight registers 'p' to 'w' of the analogue board. 'p' and 'q' read back what the board is, not
// what was written.

#include "simulator/Log.h"
#include "simulator/UnitRecords.h"
#include "simulator/boards/RelayJudge.h"

namespace kalvio::simulator {

inline constexpr char kFirstRegister = 'p';
inline constexpr char kLastRegister = 'w';
inline constexpr std::size_t kRegisterCount = 8;

class AnalogueBoard {
public:
    AnalogueBoard(std::uint8_t version, std::uint8_t linkFit);

    void Write(char reg, std::uint8_t value, std::uint32_t tick, WriteSource source);
    // A record that leaves the register alone, yet counts as its latest write.
    void Leave(char reg, std::uint32_t tick, WriteSource source);

    [[nodiscard]] std::uint8_t ReadBack(char reg) const;
    [[nodiscard]] std::uint8_t Written(char reg) const;

    void StartSession() { m_judge.Forget(); }
    [[nodiscard]] const Log<RegisterWrite>& Writes() const { return m_writes; }
    [[nodiscard]] const std::vector<std::string>& Violations() const { return m_judge.Violations(); }

private:
    std::uint8_t m_version;
    std::uint8_t m_linkFit;
    std::array<std::uint8_t, kRegisterCount> m_values{};
    Log<RegisterWrite> m_writes;
    RelayJudge m_judge;
};

} // namespace kalvio::simulator
