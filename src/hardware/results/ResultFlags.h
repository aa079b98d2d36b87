#pragma once

// Which results have arrived: read-and-clear flags.

#include "hardware/EResIndex.h"
#include "host/Measurement.h"
#include "platform/Export.h"

#include <array>
#include <atomic>

namespace kalvio {

// Any thread; every flag is one atomic, read-and-clear one exchange.
class ResultFlags {
public:
    void Set(EResIndex index) { m_flags[static_cast<std::size_t>(index)].store(1); }
    int Take(EResIndex index) { return m_flags[static_cast<std::size_t>(index)].exchange(0); }
    // Slots 0 to 39, channels 0 and 1.
    void SetFft(int slot, int channel) { m_fft[Slot(slot, channel)].store(1); }
    int TakeFft(int slot, int channel) { return m_fft[Slot(slot, channel)].exchange(0); }
    void Clear();

private:
    static std::size_t Slot(int slot, int channel) {
        return 2 * static_cast<std::size_t>(slot) + static_cast<std::size_t>(channel);
    }
    std::array<std::atomic<int>, kResultFlagCount> m_flags{};
    std::array<std::atomic<int>, 2 * kFftDetectorSlots> m_fft{};
};

} // namespace kalvio
