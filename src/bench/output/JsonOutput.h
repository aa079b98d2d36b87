#pragma once

// JSON as this program prints it.

#include <nlohmann/json.hpp>

#include <string>

namespace kalvio::bench {

inline constexpr int kJsonIndent = 2;

// Texts that are no UTF-8 (the calibration memories hold any bytes) get a replacement character; without
// `indent` all stands on one line.
inline std::string DumpJson(const nlohmann::ordered_json& json, int indent = kJsonIndent) {
    return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace kalvio::bench
