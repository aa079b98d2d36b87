#pragma once

// A virtual analyser unit behind the driver interface. It knows the unit through bytes alone: requests
// come in, bytes go out, and anything malformed is refused and noted where a test can see it. Past the
// wire it is reached through its parts, each of which can also be taken alone. Any thread.

#include "platform/DeviceDriver.h"
#include "simulator/UnitFaults.h"
#include "simulator/UnitMemories.h"
#include "simulator/UnitOptions.h"
#include "simulator/UnitPeripherals.h"
#include "simulator/UnitRecords.h"
#include "simulator/UnitSignals.h"

namespace kalvio::simulator {

class VirtualUnit final : public DeviceDriver,
                          public UnitMemories,
                          public UnitRecords,
                          public UnitFaults,
                          public UnitSignals,
                          public UnitPeripherals {
public:
    explicit VirtualUnit(UnitClock clock, UnitOptions options = {});
    ~VirtualUnit() override;
    VirtualUnit(const VirtualUnit&) = delete;
    VirtualUnit& operator=(const VirtualUnit&) = delete;

    DeviceHandle Open(std::string_view name) override;
    DriverReply Control(DeviceHandle device, const DriverRequest& request) override;
    void Close(DeviceHandle device) override;

    // Whether it is plugged in, and the release number that its descriptor shows.
    void SetPresent(bool present);
    void SetReleaseNumber(std::uint16_t release);
    [[nodiscard]] bool IsOpen() const;
    [[nodiscard]] bool IsInitialised() const; // between the Initialise and the Terminate command

private:
    explicit VirtualUnit(const std::shared_ptr<UnitState>& state);

    std::shared_ptr<UnitState> m_state;
};

} // namespace kalvio::simulator
