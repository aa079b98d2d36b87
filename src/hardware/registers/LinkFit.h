#pragma once

// The links fitted on the analogue board.

#include <atomic>
#include <cstdint>

namespace kalvio {

// Set by bring-up, read by anyone.
class LinkFit {
public:
    // From what register 'q' reads back. Without a unit it reads zero: 150 ohm, AC coupled, 192 kHz.
    void Take(std::uint8_t links) {
        m_is150R.store((links & kNot150R) == 0);
        m_isDcCoupled.store((links & kDcCoupled) != 0);
        m_is192k.store((links & kNot192k) == 0);
    }
    [[nodiscard]] bool Is150R() const { return m_is150R.load(); }
    [[nodiscard]] bool IsDcCoupled() const { return m_isDcCoupled.load(); }
    [[nodiscard]] bool Is192k() const { return m_is192k.load(); }

private:
    static constexpr std::uint8_t kNot150R = 0x01;
    static constexpr std::uint8_t kDcCoupled = 0x02;
    static constexpr std::uint8_t kNot192k = 0x10;

    std::atomic<bool> m_is150R{false};
    std::atomic<bool> m_isDcCoupled{false};
    std::atomic<bool> m_is192k{false};
};

} // namespace kalvio
