#pragma once

// What a plot shows; SvgPlot and TerminalPlot draw it.

#include <optional>
#include <string>
#include <vector>

namespace kalvio::bench {

struct PlotPoint {
    double x = 0.0;
    double y = 0.0;
    int phase = 0; // of a search; each phase has a colour of its own
};

struct PlotSeries {
    std::string name;
    std::vector<PlotPoint> points; // in drawing order
    bool numbered = false;         // steps of a search: each point carries its number
};

// A range of y across the whole width.
struct PlotBand {
    std::string name;
    double low = 0.0;
    double high = 0.0;
};

// A moment or place along x.
struct PlotMark {
    std::string name;
    double x = 0.0;
};

struct Plot {
    std::string title;
    std::string xLabel;
    std::string yLabel;
    std::vector<PlotSeries> series;
    std::vector<PlotBand> bands;
    std::vector<PlotMark> marks;
    bool xMayBeLogarithmic = false; // frequencies: logarithmic when they span more than a decade
    std::vector<Plot> further;      // quantities of other units, each below the last under the same x axis
};

} // namespace kalvio::bench
