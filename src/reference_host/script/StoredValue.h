#pragma once

// What a calibration table really holds after a script wrote to it: an entry takes a value modulo its width,
// and without a unit nothing reaches a memory.

#include "platform/Automation.h"
#include "platform/Text.h"

#include <span>

namespace kalvio::reference_host {

// One line when the call of an automation name that writes to a calibration table did something else than its
// arguments say; empty for a call that did as asked or failed, and for every other name. User-interface
// thread.
[[nodiscard]] CString StoredOtherwise(CCmdTarget& object, const DispatchEntry& entry,
                                      std::span<const VARIANT> arguments, const VARIANT& answer);

} // namespace kalvio::reference_host
