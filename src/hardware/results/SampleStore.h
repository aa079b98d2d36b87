#pragma once

// The sample buffers behind their lock: the unit's while it is present, the demo buffers otherwise.

#include "hardware/CommandSet.h"
#include "hardware/link/FairLock.h"
#include "hardware/results/SampleBuffers.h"

#include <cstdint>

namespace kalvio {

// Any thread. Who goes on using a buffer holds the lock meanwhile.
class SampleStore {
public:
    explicit SampleStore(const CommandSet& commands) : m_commands(commands) {}

    mutable FairLock lock; // a leaf

    [[nodiscard]] std::uint32_t Size() const; // in samples
    int SetSize(std::uint32_t samples);       // 0 when memory ran out
    bool MakeDemoBuffers();
    void Free();
    // Null when there is none.
    std::uint8_t* Samples(int channel);
    std::uint8_t* DemoSamples(int channel);
    std::uint8_t* CtaSamples(int channel);

private:
    const CommandSet& m_commands;
    SampleBuffers m_buffers KALVIO_GUARDED_BY(lock);
};

} // namespace kalvio
