#include "bench/plots/SvgPlot.h"

#include "bench/plots/PlotAxis.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace kalvio::bench {

namespace {

constexpr double kWidth = 800.0;
constexpr double kHeight = 480.0;
constexpr double kLeft = 80.0;
constexpr double kRight = 780.0;
constexpr double kTop = 50.0;
constexpr double kBottom = 420.0;
constexpr int kXTicks = 8;
constexpr int kYTicks = 6;
constexpr double kLegendStep = 16.0;
constexpr std::array kColors{"#1f5fa8", "#c0392b", "#2e7d32", "#8e44ad", "#b9770e", "#117a8b"};

std::string Escape(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

class SvgWriter {
public:
    explicit SvgWriter(const Plot& plot) : m_plot(plot) {
        for (const PlotSeries& series : plot.series) {
            for (const PlotPoint& point : series.points) {
                m_x.Include(point.x);
                m_y.Include(point.y);
            }
        }
        for (const PlotBand& band : plot.bands) {
            m_y.Include(band.low);
            m_y.Include(band.high);
        }
        for (const PlotMark& mark : plot.marks)
            m_x.Include(mark.x);
        m_x.Settle();
        m_y.Settle();
    }

    std::string Draw() {
        m_text = Format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%g\" height=\"%g\" "
                        "viewBox=\"0 0 %g %g\" font-family=\"sans-serif\" font-size=\"12\">\n",
                        kWidth, kHeight, kWidth, kHeight);
        m_text += "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
        DrawBands();
        DrawGrid();
        DrawMarks();
        for (std::size_t i = 0; i < m_plot.series.size(); ++i)
            DrawSeries(m_plot.series[i], kColors[i % kColors.size()]);
        DrawLabels();
        DrawLegend();
        return m_text + "</svg>\n";
    }

private:
    [[nodiscard]] double X(double value) const { return kLeft + m_x.Place(value) * (kRight - kLeft); }
    [[nodiscard]] double Y(double value) const { return kBottom - m_y.Place(value) * (kBottom - kTop); }

    void DrawLine(double x1, double y1, double x2, double y2, const char* style) {
        m_text +=
            Format("<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" %s/>\n", x1, y1, x2, y2, style);
    }

    void DrawText(double x, double y, const char* style, const std::string& text) {
        m_text += Format("<text x=\"%.1f\" y=\"%.1f\" %s>%s</text>\n", x, y, style, Escape(text).c_str());
    }

    void DrawBands() {
        for (const PlotBand& band : m_plot.bands) {
            const double height = std::max(Y(band.low) - Y(band.high), 1.0);
            m_text += Format("<rect x=\"%g\" y=\"%.1f\" width=\"%g\" height=\"%.1f\" fill=\"#2e7d32\" "
                             "fill-opacity=\"0.15\"/>\n",
                             kLeft, Y(band.high), kRight - kLeft, height);
        }
    }

    void DrawGrid() {
        for (const double x : m_x.Ticks(kXTicks)) {
            DrawLine(X(x), kTop, X(x), kBottom, "stroke=\"#dddddd\"");
            DrawText(X(x), kBottom + 18.0, "text-anchor=\"middle\"", m_x.Label(x, kXTicks));
        }
        for (const double y : m_y.Ticks(kYTicks)) {
            DrawLine(kLeft, Y(y), kRight, Y(y), "stroke=\"#dddddd\"");
            DrawText(kLeft - 6.0, Y(y) + 4.0, "text-anchor=\"end\"", m_y.Label(y, kYTicks));
        }
        m_text += Format("<rect x=\"%g\" y=\"%g\" width=\"%g\" height=\"%g\" fill=\"none\" "
                         "stroke=\"#444444\"/>\n",
                         kLeft, kTop, kRight - kLeft, kBottom - kTop);
    }

    void DrawMarks() {
        for (const PlotMark& mark : m_plot.marks) {
            DrawLine(X(mark.x), kTop, X(mark.x), kBottom, "stroke=\"#c0392b\" stroke-dasharray=\"6 4\"");
            DrawText(X(mark.x) - 4.0, kTop + 14.0, "text-anchor=\"end\" fill=\"#c0392b\"", mark.name);
        }
    }

    void DrawSeries(const PlotSeries& series, const char* color) {
        std::string path;
        std::string dots;
        for (const PlotPoint& point : series.points) {
            if (!std::isfinite(point.x) || !std::isfinite(point.y))
                continue;
            path += Format("%.1f,%.1f ", X(point.x), Y(point.y));
            dots += Format("<circle cx=\"%.1f\" cy=\"%.1f\" r=\"3\" fill=\"%s\"/>\n", X(point.x), Y(point.y),
                           color);
        }
        m_text += Format("<polyline points=\"%s\" fill=\"none\" stroke=\"%s\" stroke-width=\"1.5\" "
                         "stroke-opacity=\"0.6\"/>\n",
                         path.c_str(), color);
        m_text += dots;
    }

    void DrawLabels() {
        DrawText(kWidth / 2.0, 24.0, "text-anchor=\"middle\" font-size=\"16\"", m_plot.title);
        DrawText((kLeft + kRight) / 2.0, kBottom + 42.0, "text-anchor=\"middle\"", m_plot.xLabel);
        const double middle = (kTop + kBottom) / 2.0;
        DrawText(18.0, middle,
                 Format("text-anchor=\"middle\" transform=\"rotate(-90 18 %g)\"", middle).c_str(),
                 m_plot.yLabel);
    }

    void DrawLegend() {
        double y = kBottom - 10.0 - kLegendStep * static_cast<double>(LegendLines() - 1);
        for (std::size_t i = 0; i < m_plot.series.size(); ++i, y += kLegendStep)
            DrawLegendLine(y, kColors[i % kColors.size()], m_plot.series[i].name);
        for (const PlotBand& band : m_plot.bands) {
            DrawLegendLine(y, "#2e7d32", band.name);
            y += kLegendStep;
        }
    }

    [[nodiscard]] std::size_t LegendLines() const { return m_plot.series.size() + m_plot.bands.size(); }

    void DrawLegendLine(double y, const char* color, const std::string& name) {
        // The white rim keeps the name readable where it stands over a line.
        constexpr const char* kStyle =
            "text-anchor=\"end\" fill=\"%s\" stroke=\"#fff\" stroke-width=\"5\" paint-order=\"stroke\"";
        DrawText(kRight - 10.0, y, Format(kStyle, color).c_str(), name);
    }

    const Plot& m_plot;
    PlotAxis m_x;
    PlotAxis m_y;
    std::string m_text;
};

} // namespace

std::string DrawSvg(const Plot& plot) {
    return SvgWriter(plot).Draw();
}

} // namespace kalvio::bench
