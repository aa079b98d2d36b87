#pragma once

// The devices that a scan found, as a table and as JSON.

#include "peripheral_network/bus/KvNetStatus.h"

#include <nlohmann/json_fwd.hpp>

#include <span>
#include <string>

namespace kalvio::bench {

std::string DeviceTable(std::span<const CKvNetStatus> devices);
nlohmann::ordered_json DevicesJson(std::span<const CKvNetStatus> devices);

} // namespace kalvio::bench
