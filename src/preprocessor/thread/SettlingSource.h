#pragma once

// Where settling parameters come from.

#include "host/SettlingQueries.h"

namespace kalvio {

// The host application's settling queries; without any, ones that take every value as settled. Any thread.
[[nodiscard]] const SettlingQueries& CurrentSettlingQueries();

} // namespace kalvio
