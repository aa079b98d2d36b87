#pragma once

// The analyser's range settings, which move relays of 'p', 'q' and 'r'.

#include "hardware/CommandSet.h"
#include "hardware/GeneratorDetails.h"
#include "hardware/registers/RelayGuard.h"

#include <cstdint>

namespace kalvio {

// User-interface or pre-processor thread.
class AutoRange {
public:
    AutoRange(CommandSet& commands, RelayGuard& relays) : m_commands(commands), m_relays(relays) {}

    // Converts the record's two values to big-endian in place and sends it; waits when a relay would be
    // toggled back too soon. After a failure the shadows are the new ones, the stamps the old.
    std::int16_t Write(WriteAutoRangeDetailsOut& record);

private:
    CommandSet& m_commands;
    RelayGuard& m_relays;
};

} // namespace kalvio
