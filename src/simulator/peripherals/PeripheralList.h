#pragma once

// Peripherals from a line of text: `kind@address` with options as `:name=value`, joined by commas, or
// `none`.
//
//   switcher@3,switcher@4:hw=C,loader@9:class=31,keda@8:rate=96000:fault=slow
//
// Every kind takes hw and fw (a letter A to P) and fault (a name of Misbehaving.h, or `twin`: two of them at
// one address). A loader takes class (two hex digits), a KEDA adapter rate (hertz of the digital output),
// device (hertz of the device under test's own clock), spi (mode 0 to 3) and i2c (two hex digits).

#include "simulator/Peripheral.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::simulator {

// What a simulated unit of a program has unless it is told otherwise.
inline constexpr const char* kDefaultPeripherals = "switcher@1,switcher@2,keda@8";

struct PeripheralList {
    std::vector<std::shared_ptr<Peripheral>> peripherals;
    std::string error; // a sentence without a full stop; the list is then empty
};

PeripheralList ParsePeripherals(std::string_view text);

} // namespace kalvio::simulator
