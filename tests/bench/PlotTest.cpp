// What axes make of values, and what the pictures of plots hold.

#include "bench/plots/PlotAxis.h"
#include "bench/plots/SvgPlot.h"
#include "bench/plots/TerminalPlot.h"
#include "platform/Text.h"
#include "support/Golden.h"

#include <cmath>

namespace kalvio::bench {
namespace {

// Ranges with where they end, their round numbers and the labels of these.
TEST(PlotAxis, RangesAndRoundNumbers) {
    std::string all;
    for (const auto& [low, high] :
         {std::pair(0.0, 1.0), std::pair(-1.0, 1.0), std::pair(5.0, 5.0), std::pair(0.0, 0.0),
          std::pair(-3.0, -3.0), std::pair(1.0, 10.0), std::pair(1.0, 10.5), std::pair(20.0, 20000.0),
          std::pair(100.0, 50000.0), std::pair(0.001, 0.0011), std::pair(-7.0, 1234.5), std::pair(1e-6, 1.0),
          std::pair(1.0, 1.0 + 1e-12), std::pair(-1000.0, 0.0), std::pair(0.95, 1.05)}) {
        for (const bool logarithmic : {false, true}) {
            PlotAxis axis;
            for (const double value : {high, std::nan(""), low, 0.5 * (low + high), -std::log(0.0)}) {
                axis.Include(value);
            }
            logarithmic ? axis.SettleLogarithmic() : axis.Settle();
            all += Format("%g to %g: %.9g to %.9g, the middle at %.6f, ends %.6f\n", low, high, axis.Low(),
                          axis.High(), axis.Place(0.5 * (low + high)), axis.Place(high));
            for (const int wanted : {4, 8}) {
                for (const double tick : axis.Ticks(wanted)) {
                    all += " " + axis.Label(tick, wanted);
                }
                all += "\n";
            }
        }
    }
    EXPECT_TRUE(PlotAxis().IsEmpty());
    test::ExpectGolden(__FILE__, "axes.txt", all);
}

Plot Named(const char* title, const char* xLabel, const char* yLabel) {
    Plot plot;
    plot.title = title;
    plot.xLabel = xLabel;
    plot.yLabel = yLabel;
    return plot;
}

// As drawings and as characters: steps on a path, lines with a window and marks, panels below each other,
// nothing.
TEST(Plots, AreDrawnLikeThis) {
    Plot steps = Named("a & b", "Hz", "V");
    steps.xMayBeLogarithmic = true;
    steps.series.push_back({"steps", {{100.0, 1.0, 0}, {2000.0, 2.0, 1}, {50000.0, 3.0, 1}}, true});
    steps.marks.push_back({"end", 2000.0});
    Plot decade = steps;
    decade.series[0].points = {{1000.0, 1.0, 0}, {9000.0, 2.0, 0}, {9500.0, std::nan(""), 1}};
    Plot panels = Named("t", "ms", "V");
    panels.series.push_back({"rms", {{10.0, 1.0}, {20.0, 2.0}, {30.0, std::nan("")}, {40.0, 1.5}}});
    panels.series.push_back({"second", {{15.0, 1.25}}});
    panels.further.push_back(Named("", "", "Hz"));
    panels.further[0].series.push_back({"freq", {{10.0, 1000.0}}});
    Plot nothing = Named("t", "ms", "V");
    nothing.series.push_back({"rms", {}});
    std::string all;
    for (const Plot& plot : {steps, decade, panels, nothing}) {
        all += DrawSvg(plot) + "\n" + DrawTerminal(plot, 60, 12) + DrawTerminal(plot, 1, 1);
    }
    test::ExpectGolden(__FILE__, "plots.txt", all);
}

} // namespace
} // namespace kalvio::bench
