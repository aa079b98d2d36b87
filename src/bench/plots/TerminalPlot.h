#pragma once

// Draws a plot with letters.

#include "bench/plots/Plot.h"

namespace kalvio::bench {

// The first series of the plot as a small grid: o for points, @ for the last, - for the bands' edges. Empty
// when there are no points.
std::string DrawTerminal(const Plot& plot, int columns = 60, int rows = 14);

} // namespace kalvio::bench
