// The sample buffers: the unit's while it is present, the demo buffers otherwise.

#include "hardware/Hardware.h"

#include <mutex>

void CHardware::LockSampleBuffer() {
    m_sampleBufferLock.Lock();
}

void CHardware::UnlockSampleBuffer() {
    m_sampleBufferLock.Unlock();
}

std::uint32_t CHardware::GetBufferSize() const {
    const std::scoped_lock lock(m_sampleBufferLock);
    return IsUnitPresent() ? m_buffers.SampleSize() : m_buffers.DemoSize();
}

int CHardware::SetBufferSize(std::uint32_t samples) {
    const std::scoped_lock lock(m_sampleBufferLock);
    if (samples == GetBufferSize()) {
        return 1;
    }
    return IsUnitPresent() ? m_buffers.SetSampleSize(samples) : m_buffers.SetDemoSize(samples);
}

std::uint8_t* CHardware::GetSampleBuffer(ChannelNumber channel) {
    const std::scoped_lock lock(m_sampleBufferLock);
    return IsUnitPresent() ? m_buffers.Sample(channel) : m_buffers.Demo(channel);
}

std::uint8_t* CHardware::GetDemoSampleBuffer(ChannelNumber channel) {
    const std::scoped_lock lock(m_sampleBufferLock);
    return m_buffers.Demo(channel);
}

std::uint8_t* CHardware::GetCTABuffer(ChannelNumber channel) {
    const std::scoped_lock lock(m_sampleBufferLock);
    return m_buffers.Cta(channel);
}
