// What the pictures of plots hold.

#include "bench/plots/SvgPlot.h"

#include <gtest/gtest.h>

namespace kalvio::bench {
namespace {

Plot Named(const char* title, const char* xLabel, const char* yLabel) {
    Plot plot;
    plot.title = title;
    plot.xLabel = xLabel;
    plot.yLabel = yLabel;
    return plot;
}

bool Has(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

TEST(SvgPlot, StepsAreNumberedAndColouredByPhaseBeforeAThinPath) {
    Plot plot = Named("a & b", "Hz", "V");
    plot.xMayBeLogarithmic = true;
    plot.series.push_back({"steps", {{100.0, 1.0, 0}, {2000.0, 2.0, 1}, {50000.0, 3.0, 1}}, true});
    plot.marks.push_back({"end", 2000.0});
    const std::string svg = DrawSvg(plot);
    EXPECT_TRUE(Has(svg, ">a &amp; b<"));
    EXPECT_TRUE(Has(svg, ">3</text>"));
    EXPECT_TRUE(Has(svg, ">steps, phase 2<"));
    EXPECT_LT(svg.find("<polyline"), svg.find("<circle")) << "the path lies behind";
    // A decade and more: 100, 200, 500, 1000, ... instead of equal distances.
    for (const char* tick : {">100<", ">200<", ">500<", ">1000<", ">20000<", ">50000<"}) {
        EXPECT_TRUE(Has(svg, tick)) << tick;
    }
    plot.series[0].points = {{1000.0, 1.0, 0}, {9000.0, 2.0, 0}};
    EXPECT_TRUE(Has(DrawSvg(plot), ">4000<")) << "less than a decade";
}

TEST(SvgPlot, AQuantityOfAnotherUnitHasAPanelAndNothingSaysSo) {
    Plot plot = Named("t", "ms", "V");
    plot.series.push_back({"rms", {{10.0, 1.0}, {20.0, 2.0}}});
    EXPECT_FALSE(Has(DrawSvg(plot), "no data"));
    plot.further.push_back(Named("", "", "Hz"));
    plot.further[0].series.push_back({"freq", {{10.0, 1000.0}}});
    const std::string two = DrawSvg(plot);
    EXPECT_TRUE(Has(two, ">V<") && Has(two, ">Hz<") && Has(two, ">freq<"));
    EXPECT_EQ(two.find(">ms<"), two.rfind(">ms<")) << "one axis of time";
    plot.series[0].points.clear();
    plot.further.clear();
    EXPECT_TRUE(Has(DrawSvg(plot), ">no data<"));
}

} // namespace
} // namespace kalvio::bench
