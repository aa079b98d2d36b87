#pragma once

// Checks of the network document's archive: channel arrays and adapters.

#include "platform/Archive.h"
#include "reference_host/configuration/Problem.h"

namespace kalvio::reference_host {

// Reads the archive and lists what no network could hold: devices beyond the bus, channels that no device
// has, arrays of mixed devices or of one name, adapters twice or under another's address.
void CheckNetwork(CArchive& archive, ProblemList& problems);

} // namespace kalvio::reference_host
