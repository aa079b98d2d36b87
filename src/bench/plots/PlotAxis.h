#pragma once

// The range of one axis of a plot and the round numbers along it.

#include <string>
#include <vector>

namespace kalvio::bench {

class PlotAxis {
public:
    // Takes a value into the range; what is not finite is left out.
    void Include(double value);
    // Widens the range a little, and one of a single value to something that can be drawn. Call once all
    // values are in.
    void Settle();
    // The same, and places go by logarithms when the values are positive and span more than a decade.
    void SettleLogarithmic();
    [[nodiscard]] bool IsEmpty() const { return m_empty; }

    [[nodiscard]] double Low() const { return m_low; }
    [[nodiscard]] double High() const { return m_high; }
    // Where a value lies: 0 at the low end, 1 at the high end.
    [[nodiscard]] double Place(double value) const;
    // Round numbers within the range, about `wanted` of them.
    [[nodiscard]] std::vector<double> Ticks(int wanted) const;
    // A number with as many places as the distance of the ticks asks for.
    [[nodiscard]] std::string Label(double value, int wanted) const;

private:
    [[nodiscard]] double Step(int wanted) const;
    [[nodiscard]] std::vector<double> LogarithmicTicks() const;

    double m_low = 0.0;
    double m_high = 0.0;
    bool m_empty = true;
    bool m_logarithmic = false;
};

} // namespace kalvio::bench
