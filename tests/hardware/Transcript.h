#pragma once

// Transcripts: what was asked of the hardware object and all that came of it. Below a request stands its
// outcome:
//   > +MS COMMAND PARAMETERS : DATA < BYTES    commands as the unit saw them, so long after the request
//   trace, message, box, ask, hint, notice     what the host was told
//   = RESULT OUT-VALUES (MS ms)                with the time it took; on the line before when there is room
// Before the name "quietly" leaves commands and traces out, "tracing" the commands, and "briefly" counts
// them. An out value or a buffer that the operation left alone still shows 0x77 in every byte.

#include "support/Replay.h"
#include "support/UnitRig.h"

#include <map>
#include <memory>
#include <string>

namespace kalvio::test {

// What requests act on: a fresh rig with each "unit" request.
struct Stage {
    std::unique_ptr<UnitRig> rig;
    int rigs = 0; // made so far
};

using Request = std::function<std::string(Stage& stage, RequestWords& words)>;
[[nodiscard]] const std::map<std::string, Request>& Requests();

// Carries a request out; its outcome, in whole lines.
[[nodiscard]] std::string PlayRequest(Stage& stage, std::string_view request);

} // namespace kalvio::test
