#include "hardware/results/SampleStore.h"

#include "hardware/link/Holding.h"

namespace kalvio {

std::uint32_t SampleStore::Size() const {
    const Holding hold(lock);
    return m_commands.IsActive() ? m_buffers.SampleSize() : m_buffers.DemoSize();
}

int SampleStore::SetSize(std::uint32_t samples) {
    const Holding hold(lock);
    const bool real = m_commands.IsActive();
    if (samples == (real ? m_buffers.SampleSize() : m_buffers.DemoSize())) {
        return 1;
    }
    return real ? m_buffers.SetSampleSize(samples) : m_buffers.SetDemoSize(samples);
}

bool SampleStore::MakeDemoBuffers() {
    const Holding hold(lock);
    return m_buffers.SetDemoSize(kDemoSamples) != 0;
}

void SampleStore::Free() {
    const Holding hold(lock);
    m_buffers.FreeSamples();
    m_buffers.FreeDemo();
}

std::uint8_t* SampleStore::Samples(int channel) {
    const Holding hold(lock);
    return m_commands.IsActive() ? m_buffers.Sample(channel) : m_buffers.Demo(channel);
}

std::uint8_t* SampleStore::DemoSamples(int channel) {
    const Holding hold(lock);
    return m_buffers.Demo(channel);
}

std::uint8_t* SampleStore::CtaSamples(int channel) {
    const Holding hold(lock);
    return m_buffers.Cta(channel);
}

} // namespace kalvio
