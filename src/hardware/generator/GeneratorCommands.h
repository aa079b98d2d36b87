#pragma once

// What the host's generator document pushes into the unit.

#include "hardware/CommandSet.h"
#include "hardware/GeneratorDetails.h"
#include "hardware/registers/RelayGuard.h"

#include <array>
#include <cstdint>

namespace kalvio {

struct VideoSyncDetails {
    std::uint8_t mode = 0;
    std::uint8_t standardA = 0;
    std::uint8_t standardB = 0;
    std::array<std::uint16_t, 8> settings{}; // 5 to 8, then 1 to 4, as they go out
};

// User-interface or pre-processor thread. Each operation is one general command; its status.
class GeneratorCommands {
public:
    GeneratorCommands(CommandSet& commands, RelayGuard& relays) : m_commands(commands), m_relays(relays) {}

    // Waits when a relay of 't', 'u' or 'v' would be toggled back too soon. Counts as written even if it
    // fails.
    std::int16_t SendDetails(const DSPGeneratorDetails& dsp, const MicroGeneratorDetails& micro);
    std::int16_t WriteDivisors(const std::array<std::uint16_t, 5>& divisors);
    // Remembers the standards whatever the result: the unit is told whether they changed.
    std::int16_t SetVideoSync(const VideoSyncDetails& details);

private:
    CommandSet& m_commands;
    RelayGuard& m_relays;
};

} // namespace kalvio
