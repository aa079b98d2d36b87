#pragma once

// What the user is told of a command that failed.

#include "hardware/ExchangeOutcome.h"
#include "platform/Text.h"

#include <cstdint>

namespace kalvio {

// A failed address check is always told, anything else when the settings ask for it; the box waits until the
// thread is quiet. The failure's code as a status. Any thread.
std::int16_t ReportFailure(const ExchangeOutcome& outcome, const char* functionName, const CString& detail);

} // namespace kalvio
