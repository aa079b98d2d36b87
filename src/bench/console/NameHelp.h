#pragma once

// What a name of the automation is: kind, types, limits and choices.

#include "bench/ReferenceHostNames.h"
#include "reference_host/script/ScriptNames.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kalvio::bench {

// "REG_Timeout  property, long", "HW_DSPGetMem(long, long, long)  method, gives long".
std::string NameLine(const DispatchEntry& entry);
// The line, and below it title, help, limits and choices of the moment.
std::string NameHelpText(const ScriptTarget& target);
nlohmann::ordered_json NameHelpJson(const ScriptTarget& target);

} // namespace kalvio::bench
