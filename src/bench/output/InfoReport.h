#pragma once

// What the unit says of itself.

#include "hardware/Hardware.h"

#include <nlohmann/json_fwd.hpp>

namespace kalvio::bench {

// Without a unit, only that there is none; what it does not know of itself is left out.
nlohmann::ordered_json InfoJson(CHardware& hardware);
// The same as a table.
std::string InfoTable(CHardware& hardware);

} // namespace kalvio::bench
