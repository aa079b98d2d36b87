#pragma once

// What a running script asks of the program around it.

#include "platform/Automation.h"
#include "platform/Text.h"

#include <cstdint>

namespace kalvio::reference_host {

enum class PauseEnd { Done, Interrupted };

// How a regulation ended that a script waited for.
struct RegulationEnd {
    bool interrupted = false;
    bool succeeded = false;
    CString text;
};

// User-interface thread.
class ScriptHost {
public:
    virtual ~ScriptHost() = default;
    // Lets the program go on for so long.
    virtual PauseEnd Pause(std::uint32_t milliseconds) = 0;
    virtual RegulationEnd WaitForRegulation() = 0;
};

} // namespace kalvio::reference_host
