#include "hardware/results/ResultFlags.h"

namespace kalvio {

void ResultFlags::Clear() {
    for (auto& flag : m_flags) {
        flag.store(0);
    }
    for (auto& flag : m_fft) {
        flag.store(0);
    }
}

} // namespace kalvio
