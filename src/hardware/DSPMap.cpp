#include "hardware/DSPMap.h"

#include <algorithm>

CDSPMap::CDSPMap() {
    Reset(0, kDspMapWords - 1, 1, 1);
}

void CDSPMap::Reset(int first, int last, int resetPeak, int resetFlags) {
    for (int i = std::max(first, 0); i <= std::min(last, kDspMapWords - 1); ++i) {
        m_words[static_cast<std::size_t>(i)] = {};
    }
    if (resetPeak != 0) {
        m_peak = {};
    }
    if (resetFlags != 0) {
        m_resultsRead = 0;
        m_peakRead = 0;
    }
}

DSPWord CDSPMap::GetAt(int index) const {
    return index >= 0 && index < kDspMapWords ? m_words[static_cast<std::size_t>(index)] : DSPWord{};
}

int CDSPMap::SetDSPWords(const std::uint8_t* bytes, int length) {
    if (length != kDspMapBytes || bytes == nullptr) {
        return 0;
    }
    for (DSPWord& word : m_words) {
        std::copy_n(bytes, std::size(word.bytes), word.bytes);
        bytes += std::size(word.bytes);
    }
    return 1;
}
