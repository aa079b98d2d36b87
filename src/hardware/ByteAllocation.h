#pragma once

// Large buffers are taken through one place, so that running out of memory is a result and not an exception.

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kalvio {

// Gives the buffer so many zero bytes; false (and an empty buffer) when memory ran out. Any thread.
[[nodiscard]] bool AllocateBytes(std::vector<std::uint8_t>& buffer, std::size_t count);

// Says whether an allocation of so many bytes may go ahead.
using AllocationGate = bool (*)(std::size_t count);
// Installs a gate, or none with null; returns the one before. Install while no other thread uses the library.
AllocationGate InstallAllocationGate(AllocationGate gate);

} // namespace kalvio
