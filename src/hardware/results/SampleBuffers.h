#pragma once

// Sample memory: real, CTA and demo buffers, one of each per channel, three bytes a sample.

#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kalvio {

inline constexpr std::uint32_t kDemoSamples = 0x80000;
inline constexpr std::uint32_t kBytesPerSample = 3;

// Used by one thread at a time (SampleStore.h). The demo buffers
// and the real ones each remember a size of their own, so that suspending the unit does not leave real
// buffers with a wrong size.
class SampleBuffers {
public:
    // Allocates, zero-filled; 1, or 0 when memory ran out (the size stays the new one).
    int SetDemoSize(std::uint32_t samples);
    int SetSampleSize(std::uint32_t samples);
    [[nodiscard]] std::uint32_t DemoSize() const { return m_demoSize; }
    [[nodiscard]] std::uint32_t SampleSize() const { return m_sampleSize; }
    std::uint8_t* Demo(int channel); // null when there is none
    std::uint8_t* Sample(int channel);
    std::uint8_t* Cta(int channel);
    void FreeDemo();
    void FreeSamples();

private:
    using Pair = std::array<std::vector<std::uint8_t>, 2>;
    Pair m_demo;
    Pair m_sample;
    Pair m_cta;
    std::uint32_t m_demoSize = 0;
    std::uint32_t m_sampleSize = 0;
};

} // namespace kalvio
