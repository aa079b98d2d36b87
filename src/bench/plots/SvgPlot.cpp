#include "bench/plots/SvgPlot.h"

#include "bench/plots/PlotAxis.h"
#include "platform/Text.h"
#include "platform/formats/Xml.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <vector>

namespace kalvio::bench {

namespace {

constexpr double kWidth = 800.0;
constexpr double kLeft = 80.0;
constexpr double kRight = 780.0;
constexpr double kFirstTop = 60.0;
constexpr double kPanelHeight = 340.0; // of one panel alone; several share a little more
constexpr double kSeveralHeight = 220.0;
constexpr double kPanelGap = 24.0;
constexpr double kAxisSpace = 50.0; // below the last panel: numbers and label
constexpr int kXTicks = 8;
constexpr int kYTicks = 6;
constexpr double kLegendStep = 16.0;
constexpr double kDot = 3.0;
constexpr double kNumberedDot = 7.0;
constexpr std::array kColors{"#1f5fa8", "#c0392b", "#2e7d32", "#8e44ad", "#b9770e", "#117a8b"};
constexpr const char* kBandColor = "#2e7d32";

const char* ColorOf(std::size_t number) {
    return kColors[number % kColors.size()];
}

// The panels of a plot, the first one its own.
std::vector<const Plot*> PanelsOf(const Plot& plot) {
    std::vector<const Plot*> panels{&plot};
    for (const Plot& further : plot.further) {
        panels.push_back(&further);
    }
    return panels;
}

class SvgWriter {
public:
    explicit SvgWriter(const Plot& plot) : m_plot(plot), m_panels(PanelsOf(plot)) {
        for (const Plot* panel : m_panels) {
            for (const PlotSeries& series : panel->series) {
                for (const PlotPoint& point : series.points) {
                    m_x.Include(point.x);
                }
            }
        }
        m_empty = m_x.IsEmpty();
        for (const PlotMark& mark : plot.marks) {
            m_x.Include(mark.x);
        }
        if (plot.xMayBeLogarithmic) {
            m_x.SettleLogarithmic();
        } else {
            m_x.Settle();
        }
        m_height = m_panels.size() == 1 ? kPanelHeight : kSeveralHeight;
    }

    std::string Draw() {
        const double bottom = kFirstTop + PanelStep() * static_cast<double>(m_panels.size()) - kPanelGap;
        const double legend = kLegendStep * static_cast<double>(LegendLines());
        const double height = bottom + kAxisSpace + legend + kLegendStep;
        m_text = Format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%g\" height=\"%g\" "
                        "viewBox=\"0 0 %g %g\" font-family=\"sans-serif\" font-size=\"12\">\n",
                        kWidth, height, kWidth, height);
        m_text += "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
        DrawText(kWidth / 2.0, 24.0, "text-anchor=\"middle\" font-size=\"16\"", m_plot.title);
        m_legend = bottom + kAxisSpace + kLegendStep;
        for (std::size_t i = 0; i < m_panels.size(); ++i) {
            DrawPanel(*m_panels[i], kFirstTop + PanelStep() * static_cast<double>(i));
        }
        DrawXAxis(bottom);
        return m_text + "</svg>\n";
    }

private:
    [[nodiscard]] double PanelStep() const { return m_height + kPanelGap; }
    [[nodiscard]] double X(double value) const { return kLeft + m_x.Place(value) * (kRight - kLeft); }
    [[nodiscard]] double Y(double value) const { return m_top + m_height * (1.0 - m_y.Place(value)); }

    void DrawLine(double x1, double y1, double x2, double y2, const char* style) {
        m_text +=
            Format("<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" %s/>\n", x1, y1, x2, y2, style);
    }

    void DrawText(double x, double y, const char* style, const std::string& text) {
        m_text += Format("<text x=\"%.1f\" y=\"%.1f\" %s>%s</text>\n", x, y, style, XmlText(text).c_str());
    }

    void DrawPanel(const Plot& panel, double top) {
        m_top = top;
        m_y = PlotAxis();
        for (const PlotSeries& series : panel.series) {
            for (const PlotPoint& point : series.points) {
                m_y.Include(point.y);
            }
        }
        for (const PlotBand& band : panel.bands) {
            m_y.Include(band.low);
            m_y.Include(band.high);
        }
        m_y.Settle();
        DrawBands(panel);
        DrawGrid();
        DrawMarks(&panel == m_panels.front());
        for (const PlotSeries& series : panel.series) {
            DrawSeries(series);
        }
        const double middle = m_top + m_height / 2.0;
        DrawText(18.0, middle,
                 Format("text-anchor=\"middle\" transform=\"rotate(-90 18 %g)\"", middle).c_str(),
                 panel.yLabel);
        if (m_empty) {
            DrawText((kLeft + kRight) / 2.0, middle,
                     "text-anchor=\"middle\" font-size=\"20\" fill=\"#888888\"", "no data");
        }
    }

    void DrawBands(const Plot& panel) {
        for (const PlotBand& band : panel.bands) {
            const double height = std::max(Y(band.low) - Y(band.high), 1.0);
            m_text += Format("<rect x=\"%g\" y=\"%.1f\" width=\"%g\" height=\"%.1f\" fill=\"%s\" "
                             "fill-opacity=\"0.15\"/>\n",
                             kLeft, Y(band.high), kRight - kLeft, height, kBandColor);
            DrawLegendLine(kBandColor, band.name);
        }
    }

    void DrawGrid() {
        for (const double x : m_x.Ticks(kXTicks)) {
            DrawLine(X(x), m_top, X(x), m_top + m_height, "stroke=\"#dddddd\"");
        }
        for (const double y : m_y.Ticks(kYTicks)) {
            DrawLine(kLeft, Y(y), kRight, Y(y), "stroke=\"#dddddd\"");
            if (!m_empty) {
                DrawText(kLeft - 6.0, Y(y) + 4.0, "text-anchor=\"end\"", m_y.Label(y, kYTicks));
            }
        }
        m_text += Format("<rect x=\"%g\" y=\"%g\" width=\"%g\" height=\"%g\" fill=\"none\" "
                         "stroke=\"#444444\"/>\n",
                         kLeft, m_top, kRight - kLeft, m_height);
    }

    // Through all panels; the name stands above the first, where no point is.
    void DrawMarks(bool named) {
        for (const PlotMark& mark : m_plot.marks) {
            DrawLine(X(mark.x), m_top, X(mark.x), m_top + m_height,
                     "stroke=\"#c0392b\" stroke-dasharray=\"6 4\"");
            if (named) {
                DrawText(X(mark.x), m_top - 6.0,
                         X(mark.x) > kWidth / 2.0 ? "text-anchor=\"end\" fill=\"#c0392b\""
                                                  : "text-anchor=\"start\" fill=\"#c0392b\"",
                         mark.name);
            }
        }
    }

    // A thin path behind, the points in front.
    void DrawSeries(const PlotSeries& series) {
        const char* const color = ColorOf(m_series);
        std::string path;
        std::string dots;
        int number = 0;
        for (const PlotPoint& point : series.points) {
            ++number;
            if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
                continue;
            }
            path += Format("%.1f,%.1f ", X(point.x), Y(point.y));
            dots += series.numbered ? NumberedDot(point, number) : Dot(point, color);
        }
        m_text += Format("<polyline points=\"%s\" fill=\"none\" stroke=\"%s\" stroke-width=\"%g\" "
                         "stroke-opacity=\"0.5\"/>\n",
                         path.c_str(), series.numbered ? "#888888" : color, series.numbered ? 0.5 : 1.0);
        m_text += dots;
        if (!series.numbered) {
            DrawLegendLine(color, series.name);
            ++m_series;
            return;
        }
        std::set<int> phases;
        for (const PlotPoint& point : series.points) {
            phases.insert(point.phase);
        }
        for (const int phase : phases) {
            DrawLegendLine(ColorOf(static_cast<std::size_t>(phase)),
                           Format("%s, phase %d", series.name.c_str(), phase + 1));
        }
    }

    [[nodiscard]] std::string Dot(const PlotPoint& point, const char* color) const {
        return Format("<circle cx=\"%.1f\" cy=\"%.1f\" r=\"%g\" fill=\"%s\"/>\n", X(point.x), Y(point.y),
                      kDot, color);
    }
    // The number stands within its own point.
    [[nodiscard]] std::string NumberedDot(const PlotPoint& point, int number) const {
        return Format(
            "<circle cx=\"%.1f\" cy=\"%.1f\" r=\"%g\" fill=\"%s\" stroke=\"white\"/>"
            "<text x=\"%.1f\" y=\"%.1f\" font-size=\"8\" fill=\"white\" text-anchor=\"middle\">%d</text>\n",
            X(point.x), Y(point.y), kNumberedDot, ColorOf(static_cast<std::size_t>(point.phase)), X(point.x),
            Y(point.y) + 3.0, number);
    }

    void DrawXAxis(double bottom) {
        for (const double x : m_x.Ticks(kXTicks)) {
            if (!m_empty) {
                DrawText(X(x), bottom + 18.0, "text-anchor=\"middle\"", m_x.Label(x, kXTicks));
            }
        }
        DrawText((kLeft + kRight) / 2.0, bottom + 40.0, "text-anchor=\"middle\"", m_plot.xLabel);
    }

    [[nodiscard]] std::size_t LegendLines() const {
        std::size_t lines = 0;
        for (const Plot* panel : m_panels) {
            lines += panel->series.size() + panel->bands.size();
        }
        return lines + 1; // a search has phases
    }

    void DrawLegendLine(const char* color, const std::string& name) {
        m_text += Format("<rect x=\"%g\" y=\"%.1f\" width=\"10\" height=\"10\" fill=\"%s\"/>\n", kLeft,
                         m_legend - 9.0, color);
        DrawText(kLeft + 16.0, m_legend, Format("fill=\"%s\"", color).c_str(), name);
        m_legend += kLegendStep;
    }

    const Plot& m_plot;
    const std::vector<const Plot*> m_panels;
    PlotAxis m_x;
    PlotAxis m_y; // of the panel that is drawn
    double m_top = kFirstTop;
    double m_height = kPanelHeight;
    double m_legend = 0.0;    // base of the next line
    std::size_t m_series = 0; // drawn so far
    bool m_empty = false;
    std::string m_text;
};

} // namespace

std::string DrawSvg(const Plot& plot) {
    return SvgWriter(plot).Draw();
}

} // namespace kalvio::bench
