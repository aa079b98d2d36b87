#pragma once

// This program speaks of the reference host's classes by their plain names.

namespace kalvio::reference_host {}

namespace kalvio::bench {
using namespace reference_host;
}
