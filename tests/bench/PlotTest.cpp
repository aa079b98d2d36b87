#include "bench/OutcomeTexts.h"
#include "bench/PlotAxis.h"
#include "bench/SvgPlot.h"
#include "bench/TerminalPlot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stack>

namespace kalvio::bench {
namespace {

// Whether every element is closed in its turn, attributes are quoted and text holds no bare mark.
bool IsWellFormed(const std::string& xml) {
    std::stack<std::string> open;
    for (std::size_t at = 0; at < xml.size();) {
        if (xml[at] == '&' && xml.find(';', at) > at + 5)
            return false;
        if (xml[at] != '<') {
            ++at;
            continue;
        }
        const std::size_t end = xml.find('>', at);
        if (end == std::string::npos)
            return false;
        const std::string tag = xml.substr(at + 1, end - at - 1);
        const std::string name = tag.substr(0, tag.find_first_of(" /", 1));
        if (std::count(tag.begin(), tag.end(), '"') % 2 != 0 || tag.find('<') != std::string::npos)
            return false;
        if (tag.front() == '/') {
            if (open.empty() || "/" + open.top() != tag)
                return false;
            open.pop();
        } else if (tag.back() != '/') {
            open.push(name);
        }
        at = end + 1;
    }
    return open.empty();
}

Plot MakePlot() {
    Plot plot;
    plot.title = "A < B & \"C\"";
    plot.xLabel = "x";
    plot.yLabel = "y";
    plot.series = {{"s>", {{0.0, 1.0}, {10.0, 2.0}, {20.0, std::nan("")}}}};
    plot.bands = {{"band", 1.9, 2.1}};
    plot.marks = {{"mark", 12.0}};
    return plot;
}

TEST(SvgPlot, IsWellFormedAndShowsEveryPart) {
    const std::string svg = DrawSvg(MakePlot());
    EXPECT_TRUE(IsWellFormed(svg)) << svg;
    EXPECT_NE(svg.find("A &lt; B &amp; &quot;C&quot;"), std::string::npos);
    for (const char* part : {">s&gt;<", ">band<", ">mark<", "<polyline", "stroke-dasharray"})
        EXPECT_NE(svg.find(part), std::string::npos) << part;
    EXPECT_EQ(svg.find("nan"), std::string::npos) << "a point that is not finite is left out";
}

TEST(SvgPlot, PlotsOfNothingAndOfOnePointAreDrawn) {
    for (const Plot& plot : {Plot(), Plot{"", "", "", {{"one", {{5.0, 5.0}}}}, {}, {}}}) {
        const std::string svg = DrawSvg(plot);
        EXPECT_TRUE(IsWellFormed(svg));
        EXPECT_EQ(svg.find("nan"), std::string::npos);
        EXPECT_EQ(svg.find("inf"), std::string::npos);
    }
}

TEST(PlotAxis, TicksAreRoundAndInside) {
    PlotAxis axis;
    axis.Include(0.12);
    axis.Include(0.93);
    axis.Include(std::numeric_limits<double>::infinity());
    axis.Settle();
    const std::vector<double> ticks = axis.Ticks(5);
    ASSERT_EQ(ticks.size(), 4U);
    EXPECT_NEAR(ticks.front(), 0.2, 1e-12);
    EXPECT_NEAR(ticks.back(), 0.8, 1e-12);
    EXPECT_EQ(axis.Label(ticks.front(), 5), "0.2");
    EXPECT_NEAR(axis.Place(axis.Low()), 0.0, 1e-12);
    EXPECT_NEAR(axis.Place(axis.High()), 1.0, 1e-12);
}

TEST(TerminalPlot, PointsStandWhereTheyBelong) {
    Plot plot;
    plot.yLabel = "up";
    plot.xLabel = "along";
    plot.series = {{"s", {{0.0, 0.0}, {1.0, 1.0}}}};
    EXPECT_EQ(DrawTerminal(plot, 20, 5), "up\n"
                                         "        1.05 |                  @ \n"
                                         "             |                    \n"
                                         "        0.50 |                    \n"
                                         "             |                    \n"
                                         "       -0.05 | o                  \n"
                                         "             +--------------------\n"
                                         "              -0.1    along    1.1\n");
    EXPECT_EQ(DrawTerminal(Plot()), "");
}

TEST(VerdictText, NamesTheRuleThatDecided) {
    SettlingVerdict verdict;
    verdict.count = 3;
    verdict.needed = 3;
    verdict.values = {2.0 * kStepsPerVolt, 1.8 * kStepsPerVolt, 1.0 * kStepsPerVolt};
    verdict.tolerance = 0.025;
    verdict.toleranceType = 1;
    verdict.disagreeing = 1;
    verdict.deviation = 0.2 * kStepsPerVolt;
    verdict.allowed = 0.05 * kStepsPerVolt;
    EXPECT_EQ(VerdictText(NPreProcessor::NotSettled, verdict, kUnitVolt, {}),
              "the value 1 back differs by 0.2000 V, allowed 0.0500 V (2.5 % of the newest): newest first "
              "2.0000 V, 1.8000 V, 1.0000 V");
    verdict.stable = true;
    verdict.count = 1;
    verdict.toleranceType = 2;
    EXPECT_EQ(VerdictText(NPreProcessor::Settled, verdict, kUnitVolt, {}),
              "the 1 newest agree (2.5 % of the newest, doubled for each step further back): newest first "
              "2.0000 V");
    verdict = {};
    verdict.needed = 4;
    EXPECT_EQ(VerdictText(NPreProcessor::None, verdict, kUnitVolt, {}),
              "too few values, 0 of 4 and one more to compare: newest first none");
}

TEST(RegulationText, EveryOutcomeIsOneLine) {
    EXPECT_EQ(RegulationText(NPreProcessor::Succeeded), "Regulation successful!");
    EXPECT_EQ(RegulationText(NPreProcessor::SourceLimit), "Regulation failed: Reached source limit");
    EXPECT_EQ(RegulationText(NPreProcessor::None), "No regulation was started");
    EXPECT_STREQ(WordOf(NPreProcessor::Aborted), "aborted");
    EXPECT_STREQ(WordOf(static_cast<NPreProcessor::EResult>(99)), "failed");
}

} // namespace
} // namespace kalvio::bench
