#include "hardware/LevelConversions.h"

#include <cmath>

namespace {

constexpr double kVoltsAtZeroDbu = 0.7745966692415; // 1 mW in 600 ohms
constexpr double kWattsAtZeroDbm = 0.001;

} // namespace

double ConvertdBuToV(double dBu) {
    return std::pow(10.0, dBu / 20.0) * kVoltsAtZeroDbu;
}

double ConvertdBVToV(double dBV) {
    return std::pow(10.0, dBV / 20.0);
}

double ConvertdBmToV(double dBm, double ohms) {
    return std::sqrt(std::pow(10.0, dBm / 10.0) * ohms * kWattsAtZeroDbm);
}

double ConvertWToV(double watts, double ohms) {
    const double volts = std::sqrt(std::abs(watts) * ohms);
    return watts < 0.0 ? -volts : volts;
}
