#pragma once

// Draws a plot as a scalable picture.

#include "bench/plots/Plot.h"

namespace kalvio::bench {

// A whole SVG document. Text is escaped; points that are not finite are left out.
std::string DrawSvg(const Plot& plot);

} // namespace kalvio::bench
