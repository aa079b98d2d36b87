#pragma once

// What a program decides about its reference host before it makes one.

#include "platform/DeviceDriver.h"
#include "reference_host/ports/PortOptions.h"
#include "simulator/DeviceUnderTest.h"
#include "simulator/peripherals/PeripheralList.h"

#include <functional>
#include <memory>
#include <string>

namespace kalvio::reference_host {

enum class UnitKind {
    Simulated, // the virtual unit
    None,      // no unit: the program's user interface goes on without hardware
    Absent,    // a unit that is not plugged in: the access dialog asks
};

struct ReferenceHostOptions {
    UnitKind unit = UnitKind::Simulated;
    simulator::DeviceUnderTest device{}; // between the virtual unit's generator and its analyser
    // What stands on the virtual unit's bus, as simulator/peripherals/PeripheralList.h writes it down.
    std::string peripherals = simulator::kDefaultPeripherals;
    PortOptions ports{};
    std::string registryFile{}; // empty: memory only
    int securityLevel = 4;      // 0 to 4; 3 and 4 may write calibration
    // Whether the pre-processor runs on its thread. Without it the host's turns do its work, for programs
    // that drive everything themselves on a clock that moves only when told.
    bool threaded = true;
    // Stands between the library and the unit, for example to write down what passes; empty, or null
    // returned: nothing stands there. The driver that it gets lives longer than what it makes.
    std::function<std::unique_ptr<DeviceDriver>(DeviceDriver& unit)> wrapDriver{};
};

} // namespace kalvio::reference_host
