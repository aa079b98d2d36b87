#pragma once

// What a plot shows; SvgPlot and TerminalPlot draw it.

#include <optional>
#include <string>
#include <vector>

namespace kalvio::bench {

struct PlotPoint {
    double x = 0.0;
    double y = 0.0;
};

struct PlotSeries {
    std::string name;
    std::vector<PlotPoint> points; // in drawing order
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
};

} // namespace kalvio::bench
