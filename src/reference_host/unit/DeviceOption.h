#pragma once

// The --dut option: what stands between the simulated unit's generator and its analyser.

#include "simulator/DeviceUnderTest.h"

#include <string>
#include <string_view>

namespace kalvio::reference_host {

// Takes "gain=2,resonance=1000:10,noise=0.001" into the device; each word changes one figure, the others
// stay. Empty when all was well, else what was wrong; the device is then unchanged.
std::string ParseDeviceOption(std::string_view text, simulator::DeviceUnderTest& device);

// The words, for help.
std::string DeviceOptionHelp();

} // namespace kalvio::reference_host
