#pragma once

// Everything that a virtual unit is, shared by the parts through which it is reached.

#include "simulator/UnitBoards.h"
#include "simulator/commands/CommandCarrier.h"
#include "simulator/commands/DriverPort.h"

#include <mutex>
#include <string_view>

namespace kalvio::simulator {

struct UnitState {
    UnitState(UnitClock unitClock, UnitOptions unitOptions);

    // Each of these is called with the lock held.

    // Lets unit time pass and tells what time it is: never earlier than before, though callers may
    // overtake each other between the clock and the lock.
    std::uint32_t PassTime(std::uint32_t tick);
    // Lets the measurement follow what the peripherals do to the signals.
    void FollowSignalPath(std::uint32_t tick);
    [[nodiscard]] bool CanOpen(std::string_view name);
    Transfer Handle(DeviceHandle device, const DriverRequest& request, std::uint32_t tick);
    void SetDefaultCalibration(CalibrationMemory memory);

    const UnitClock clock;
    mutable std::mutex lock; // guards everything below
    UnitOptions options;
    std::uint32_t lastTick;
    UnitBoards boards;
    CommandCarrier carrier;
    CommandEndpoint endpoint;
    DriverPort port;
    DeviceHandle handle = DeviceHandle::None;
    std::uint32_t lastHandle = 0;
    std::uint32_t requestCount = 0;
    Log<RequestRecord> requests;

private:
    void Note(const DriverRequest& request, const Transfer& transfer);
};

} // namespace kalvio::simulator
