#pragma once

// Channel arrays and how they stand: the crosspoint table, as text, JSON and comma-separated values.

#include "switching/ChannelArrayList.h"

#include <nlohmann/json_fwd.hpp>

#include <ostream>
#include <string>

namespace kalvio::bench {

// A title line, then the channels side by side with state, device, bus, group and relay (slot of an adapter)
// below each other, sixteen channels a block. Long names are cut.
std::string ArrayTable(const CChannelArray& array);
std::string ArraysTable(const CChannelArrayList& arrays);
nlohmann::ordered_json ArraysJson(const CChannelArrayList& arrays);
// A line of names, then one line a channel.
void WriteArraysCsv(std::ostream& stream, const CChannelArrayList& arrays);

} // namespace kalvio::bench
