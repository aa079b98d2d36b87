#pragma once

// What the unit says of itself.

#include "hardware/Hardware.h"

#include <nlohmann/json_fwd.hpp>

namespace kalvio::bench {

// What is not known is null: without a unit everything but that there is none.
nlohmann::ordered_json InfoJson(CHardware& hardware);
// The same as a table.
std::string InfoTable(CHardware& hardware);

} // namespace kalvio::bench
