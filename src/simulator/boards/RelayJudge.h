#pragma once

// Judges from outside whether relays of the analogue board are spared: a bit that a write changed may
// not be changed by the next write to that register within 120 ms. As the host's guard knows only the
// last write to each register, an older toggle is not held against it. Exact with a clock that stands
// still while a request is made.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kalvio::simulator {

inline constexpr std::uint32_t kRelayRestMs = 120;

// By which way a register was written; each way spares other registers.
enum class WriteSource { RegisterWrite, GeneratorRecord, AutoRangeRecord };

class RelayJudge {
public:
    // A write to register 'p' to 'w' (one that changes nothing counts as a write too).
    void Note(char reg, std::uint8_t changed, std::uint32_t tick, WriteSource source);
    // A fresh start: what came before is not held against it.
    void Forget();
    [[nodiscard]] const std::vector<std::string>& Violations() const { return m_violations; }

private:
    struct LastWrite {
        std::uint8_t changed = 0;
        std::uint32_t tick = 0;
    };
    std::array<LastWrite, 8> m_last{};
    std::vector<std::string> m_violations;
};

} // namespace kalvio::simulator
