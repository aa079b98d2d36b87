#include "bench/plots/PlotAxis.h"

#include "platform/Text.h"

#include <algorithm>
#include <cmath>

namespace kalvio::bench {

namespace {

constexpr double kMargin = 0.05;
constexpr double kSmallestSpan = 1e-9; // of the magnitude; less cannot be told apart

} // namespace

void PlotAxis::Include(double value) {
    if (!std::isfinite(value)) {
        return;
    }
    m_low = m_empty ? value : std::min(m_low, value);
    m_high = m_empty ? value : std::max(m_high, value);
    m_empty = false;
}

void PlotAxis::Settle() {
    const double magnitude = std::max(std::fabs(m_low), std::fabs(m_high));
    if (m_high - m_low <= magnitude * kSmallestSpan) {
        const double half = magnitude == 0.0 ? 1.0 : magnitude * 0.1;
        m_low -= half;
        m_high += half;
        return;
    }
    const double margin = (m_high - m_low) * kMargin;
    m_low -= margin;
    m_high += margin;
}

void PlotAxis::SettleLogarithmic() {
    constexpr double kDecade = 10.0;
    m_logarithmic = !m_empty && m_low > 0.0 && m_high / m_low > kDecade;
    if (!m_logarithmic) {
        Settle();
        return;
    }
    const double margin = std::pow(m_high / m_low, kMargin);
    m_low /= margin;
    m_high *= margin;
}

double PlotAxis::Place(double value) const {
    return m_logarithmic ? std::log(value / m_low) / std::log(m_high / m_low)
                         : (value - m_low) / (m_high - m_low);
}

double PlotAxis::Step(int wanted) const {
    const double rough = (m_high - m_low) / wanted;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (rough <= factor * power) {
            return factor * power;
        }
    }
    return 10.0 * power;
}

std::vector<double> PlotAxis::LogarithmicTicks() const {
    std::vector<double> ticks;
    for (double power = std::pow(10.0, std::floor(std::log10(m_low))); power <= m_high; power *= 10.0) {
        for (const double factor : {1.0, 2.0, 5.0}) {
            if (factor * power >= m_low && factor * power <= m_high) {
                ticks.push_back(factor * power);
            }
        }
    }
    return ticks;
}

std::vector<double> PlotAxis::Ticks(int wanted) const {
    if (m_logarithmic) {
        return LogarithmicTicks();
    }
    const double step = Step(wanted);
    std::vector<double> ticks;
    const double first = std::ceil(m_low / step);
    const double last = std::floor(m_high / step);
    for (double number = first; number <= last; number += 1.0) {
        ticks.push_back(number * step);
    }
    return ticks;
}

std::string PlotAxis::Label(double value, int wanted) const {
    if (m_logarithmic) {
        return Format("%g", value);
    }
    const double digits = -std::floor(std::log10(Step(wanted)) + kSmallestSpan);
    const int places = static_cast<int>(std::clamp(digits, 0.0, 9.0));
    return Format("%.*f", places, value == 0.0 ? 0.0 : value);
}

} // namespace kalvio::bench
