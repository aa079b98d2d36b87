#pragma once

// One block of DSP results.

#include "hardware/DSPWord.h"

#include <array>
#include <cstddef>

inline constexpr int kDspMapWords = 15;
inline constexpr int kDspMapBytes = 45;

// Not shared between threads; copy it to hand it over.
class KALVIO_API CDSPMap {
public:
    CDSPMap();
    virtual ~CDSPMap() = default;
    CDSPMap(const CDSPMap&) = default;
    CDSPMap& operator=(const CDSPMap&) = default;

    // Zeroes words first to last (clipped to the block) and, as asked, the peak value and both read flags.
    void Reset(int first, int last, int resetPeak, int resetFlags);
    [[nodiscard]] DSPWord GetAt(int index) const; // zero for an index outside the block
    // Takes 45 bytes; 1, or 0 and no change for any other length.
    int SetDSPWords(const std::uint8_t* bytes, int length);
    void SetPeakValue(DSPWord peak) { m_peak = peak; }
    void SetPeakValue(long peak) { m_peak = LongToDSPWord(peak); }
    [[nodiscard]] long GetPeakValueAsLong() const { return DSPWordToLong(m_peak); }
    [[nodiscard]] DSPWord GetPeakValueAsDSPWord() const { return m_peak; }
    [[nodiscard]] int GetResultsRead() const { return m_resultsRead; }
    void SetResultsRead(int read) { m_resultsRead = read; }
    [[nodiscard]] int GetPeakRead() const { return m_peakRead; }
    void SetPeakRead(int read) { m_peakRead = read; }

private:
    std::array<DSPWord, kDspMapWords> m_words{};
    DSPWord m_peak{};
    int m_resultsRead = 0;
    int m_peakRead = 0;
};
