#pragma once

// Writes to the processor's I/O ports, which programs bring: the library itself touches no port.

#include "platform/Export.h"

#include <cstdint>

namespace kalvio {

struct PortWrite {
    std::uint16_t port = 0; // address
    std::uint32_t value = 0;
    int bytes = 1; // 1, 2 or 4: the width of the access
};

// User-interface thread.
class KALVIO_API PortOutput {
public:
    virtual ~PortOutput() = default;
    // Writes the value with one access of its width; false when that was not possible.
    virtual bool Write(const PortWrite& write) = 0;
    // Told of a write that was asked for while ports are not enabled; nothing is to be written.
    virtual void Refused(const PortWrite& write) = 0;
};

} // namespace kalvio
