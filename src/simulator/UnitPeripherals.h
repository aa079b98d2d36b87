#pragma once

// What hangs on the peripheral bus of a virtual unit. A peripheral is an object that whoever plugged it in
// keeps hold of and looks into directly. Any thread.

#include "simulator/Peripheral.h"

#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace kalvio::simulator {

struct UnitState;

class UnitPeripherals {
public:
    explicit UnitPeripherals(std::shared_ptr<UnitState> state);

    // Puts a peripheral on the bus; the unit shares it. A second one at the same address is a collision
    // waiting to happen. Null does nothing.
    void Attach(std::shared_ptr<Peripheral> peripheral);
    // Takes one off; one that is not there does nothing.
    void Detach(const Peripheral& peripheral);
    // Makes a peripheral of that kind and puts it on the bus.
    template<typename Kind, typename... Arguments>
    std::shared_ptr<Kind> Plug(Arguments&&... arguments) {
        auto peripheral = std::make_shared<Kind>(std::forward<Arguments>(arguments)...);
        Attach(peripheral);
        return peripheral;
    }

    // A peripheral that is no more than a function from a sound frame for it, or for all, to its answer; it
    // takes the place of whatever stands at that address. It is called with the unit's lock held and must
    // not call the unit. An empty function leaves the address empty.
    using PeripheralFunction = std::function<std::vector<std::uint8_t>(std::span<const std::uint8_t> frame)>;
    void AttachPeripheral(std::uint8_t address, PeripheralFunction function);

    // Sound frames sent to an address so far; broadcasts count at 255.
    [[nodiscard]] std::uint32_t PeripheralAttempts(std::uint8_t address) const;
    // Exchanges in which more than one peripheral answered.
    [[nodiscard]] std::uint32_t PeripheralCollisions() const;

private:
    std::shared_ptr<UnitState> m_state;
};

} // namespace kalvio::simulator
