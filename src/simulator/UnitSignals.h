#pragma once

// What a virtual unit puts out and what it measures. Any thread.

#include "simulator/DeviceUnderTest.h"

#include <memory>

namespace kalvio::simulator {

struct UnitState;

class UnitSignals {
public:
    explicit UnitSignals(std::shared_ptr<UnitState> state);

    void SetDeviceUnderTest(DeviceUnderTest device);
    void SetResultCadence(std::uint32_t milliseconds);
    // What the generator of a channel (0 = A, 1 = B) was last told.
    [[nodiscard]] Stimulus GetStimulus(int channel) const;

private:
    std::shared_ptr<UnitState> m_state;
};

} // namespace kalvio::simulator
