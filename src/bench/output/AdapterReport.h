#pragma once

// The whole state of one KEDA adapter, as a table or in JSON.

#include "adapters/KEDAAdapter.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kalvio::bench {

// Both tell the settings as they are in `shown`; where `image` (may be null) has another value, it is told
// beside them.
nlohmann::ordered_json AdapterJson(CKEDAAdapter& shown, CKEDAAdapter* image);
std::string AdapterTable(CKEDAAdapter& shown, CKEDAAdapter* image);

} // namespace kalvio::bench
