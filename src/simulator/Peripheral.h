#pragma once

// A device on the unit's peripheral bus. It gets bytes and gives bytes; who talks when and whether an
// answer is a good one is for the bus to judge.

#include "simulator/Bytes.h"
#include "simulator/signals/SignalPath.h"

namespace kalvio::simulator {

// What a peripheral does about a frame: nothing (no bytes), or an answer after so many milliseconds.
struct PeripheralReply {
    ByteVector bytes{};
    std::uint32_t delayMs = 0;
};

// Called with the unit's lock held, so it must not call the unit. It guards its own state: tests look into
// it from other threads meanwhile.
class Peripheral {
public:
    Peripheral() = default;
    virtual ~Peripheral() = default;
    Peripheral(const Peripheral&) = delete;
    Peripheral& operator=(const Peripheral&) = delete;

    // One frame as it runs over the bus, whoever it is for, whatever is wrong with it; unit time in
    // milliseconds.
    virtual PeripheralReply Answer(ByteView frame, std::uint32_t tick) = 0;
    [[nodiscard]] virtual std::uint8_t Address() const = 0;
    // Bends the way of the signals, for a device that stands in it.
    virtual void Route(SignalPath&) const {}
};

} // namespace kalvio::simulator
