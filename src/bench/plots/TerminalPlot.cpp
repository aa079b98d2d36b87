#include "bench/plots/TerminalPlot.h"

#include "bench/plots/PlotAxis.h"
#include "platform/Text.h"

#include <algorithm>
#include <cmath>

namespace kalvio::bench {

namespace {

constexpr int kXTicks = 4;
constexpr int kYTicks = 3;
constexpr int kLabelWidth = 12;

// Of a plot with points.
class Grid {
public:
    Grid(const Plot& plot, int columns, int rows)
        : m_lines(static_cast<std::size_t>(rows), std::string(static_cast<std::size_t>(columns), ' ')) {
        const std::vector<PlotPoint>& points = plot.series.front().points;
        for (const PlotPoint& point : points) {
            m_x.Include(point.x);
            m_y.Include(point.y);
        }
        for (const PlotBand& band : plot.bands) {
            m_y.Include(band.low);
            m_y.Include(band.high);
        }
        m_x.Settle();
        m_y.Settle();
        for (const PlotBand& band : plot.bands) {
            m_lines[Row(band.low)].assign(m_lines.front().size(), '-');
            m_lines[Row(band.high)].assign(m_lines.front().size(), '-');
        }
        for (const PlotPoint& point : points) {
            Set(point, 'o');
        }
        Set(points.back(), '@');
    }

    [[nodiscard]] std::string Text(const Plot& plot) const {
        std::string text = plot.yLabel + "\n";
        for (std::size_t row = 0; row < m_lines.size(); ++row) {
            text += Format("%*s |%s\n", kLabelWidth, LabelOf(row).c_str(), m_lines[row].c_str());
        }
        text += std::string(kLabelWidth + 1, ' ') + "+" + std::string(m_lines.front().size(), '-') + "\n";
        const std::string low = m_x.Label(m_x.Low(), kXTicks);
        const std::string high = m_x.Label(m_x.High(), kXTicks);
        const std::size_t used = low.size() + high.size() + plot.xLabel.size();
        const std::size_t gap = m_lines.front().size() > used ? (m_lines.front().size() - used) / 2 : 1;
        return text + std::string(kLabelWidth + 2, ' ') + low + std::string(gap, ' ') + plot.xLabel +
               std::string(gap, ' ') + high + "\n";
    }

private:
    static std::size_t Cell(double place, std::size_t cells) {
        const double last = static_cast<double>(cells - 1);
        return static_cast<std::size_t>(std::lround(std::clamp(place, 0.0, 1.0) * last));
    }
    [[nodiscard]] std::size_t Row(double y) const { return Cell(1.0 - m_y.Place(y), m_lines.size()); }

    void Set(const PlotPoint& point, char letter) {
        if (std::isfinite(point.x) && std::isfinite(point.y)) {
            m_lines[Row(point.y)][Cell(m_x.Place(point.x), m_lines.front().size())] = letter;
        }
    }

    // The ends and the middle carry numbers.
    [[nodiscard]] std::string LabelOf(std::size_t row) const {
        const std::size_t last = m_lines.size() - 1;
        if (row != 0 && row != last && row != last / 2) {
            return {};
        }
        const double place = 1.0 - static_cast<double>(row) / static_cast<double>(last);
        return m_y.Label(m_y.Low() + place * (m_y.High() - m_y.Low()), kYTicks * 10);
    }

    PlotAxis m_x;
    PlotAxis m_y;
    std::vector<std::string> m_lines;
};

} // namespace

std::string DrawTerminal(const Plot& plot, int columns, int rows) {
    if (plot.series.empty() || plot.series.front().points.empty()) {
        return {};
    }
    return Grid(plot, std::max(columns, 20), std::max(rows, 5)).Text(plot);
}

} // namespace kalvio::bench
