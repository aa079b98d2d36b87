#pragma once

#include <atomic>

namespace kalvio {

// The clock of the DSPs, which runs faster once bring-up has ended. Any thread.
class DspClock {
public:
    void Raise() { m_factor.store(kRaisedFactor); }
    [[nodiscard]] double CycleNanoseconds() const { return kFirstCycle / m_factor.load(); }

private:
    static constexpr double kFirstCycle = 19.929846; // nanoseconds
    static constexpr double kRaisedFactor = 54.0 / 49.0;
    std::atomic<double> m_factor{1.0};
};

} // namespace kalvio
