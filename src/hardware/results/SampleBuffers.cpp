#include "hardware/results/SampleBuffers.h"

#include "hardware/ByteAllocation.h"

namespace kalvio {

namespace {

using Pair = std::array<std::vector<std::uint8_t>, 2>;

void Free(Pair& pair) {
    for (auto& buffer : pair) {
        std::vector<std::uint8_t>().swap(buffer);
    }
}

bool Allocate(Pair& pair, std::uint32_t samples) {
    bool allocated = true;
    for (auto& buffer : pair) {
        allocated = AllocateBytes(buffer, std::size_t{samples} * kBytesPerSample) && allocated;
    }
    return allocated;
}

std::uint8_t* Memory(Pair& pair, int channel) {
    const bool exists = channel >= 0 && static_cast<std::size_t>(channel) < pair.size();
    if (!exists || pair[static_cast<std::size_t>(channel)].empty()) {
        return nullptr;
    }
    return pair[static_cast<std::size_t>(channel)].data();
}

} // namespace

int SampleBuffers::SetDemoSize(std::uint32_t samples) {
    FreeDemo();
    m_demoSize = samples;
    return Allocate(m_demo, samples) ? 1 : 0;
}

int SampleBuffers::SetSampleSize(std::uint32_t samples) {
    FreeSamples();
    m_sampleSize = samples;
    const bool gotSamples = Allocate(m_sample, samples);
    const bool gotCta = Allocate(m_cta, samples);
    return gotSamples && gotCta ? 1 : 0;
}

std::uint8_t* SampleBuffers::Demo(int channel) {
    return Memory(m_demo, channel);
}

std::uint8_t* SampleBuffers::Sample(int channel) {
    return Memory(m_sample, channel);
}

std::uint8_t* SampleBuffers::Cta(int channel) {
    return Memory(m_cta, channel);
}

void SampleBuffers::FreeDemo() {
    Free(m_demo);
    m_demoSize = 0;
}

void SampleBuffers::FreeSamples() {
    Free(m_sample);
    Free(m_cta);
    m_sampleSize = 0;
}

} // namespace kalvio
