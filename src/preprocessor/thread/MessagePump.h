#pragma once

namespace kalvio {

// Lets the host handle its pending messages once and gives the processor away, between two looks of a wait.
// The calling thread's messages.
void PumpOnce();

} // namespace kalvio
