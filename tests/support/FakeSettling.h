#pragma once

// Settling parameters that a test sets result by result.

#include "host/SettlingQueries.h"

#include <cmath>
#include <map>

namespace kalvio::test {

struct SettlingParameters {
    unsigned long settlingTime = 30; // ms
    int numResults = 3;
    double tolerance = 0.025; // a fraction
    int toleranceType = 1;    // 0 none, 1 normal, 2 exponential
    bool averaging = false;
};

// Set before other threads start; then any thread may ask.
class FakeSettling final : public SettlingQueries {
public:
    SettlingParameters defaults; // of every result that For was not asked for

    // The result's own parameters, which begin as the defaults of this moment.
    SettlingParameters& For(int resultID) { return m_own.try_emplace(resultID, defaults).first->second; }

    [[nodiscard]] unsigned long GetSettlingTime(int resultID) const override {
        return Of(resultID).settlingTime;
    }
    [[nodiscard]] int GetNumResults(int resultID) const override { return Of(resultID).numResults; }
    [[nodiscard]] double GetTolerance(int resultID) const override { return Of(resultID).tolerance; }
    [[nodiscard]] int GetToleranceType(int resultID) const override { return Of(resultID).toleranceType; }
    [[nodiscard]] int GetAveraging(int resultID) const override { return Of(resultID).averaging ? 1 : 0; }
    [[nodiscard]] int IsWithinTolerance(int resultID, double value, double reference,
                                        int distance) const override {
        const SettlingParameters& own = Of(resultID);
        const double factor = own.toleranceType == 2 ? std::ldexp(1.0, distance - 1) : 1.0;
        const double allowed = std::fabs(own.tolerance * factor * reference);
        return own.toleranceType == 0 || std::fabs(value - reference) <= allowed ? 1 : 0;
    }

private:
    [[nodiscard]] const SettlingParameters& Of(int resultID) const {
        const auto found = m_own.find(resultID);
        return found != m_own.end() ? found->second : defaults;
    }

    std::map<int, SettlingParameters> m_own;
};

} // namespace kalvio::test
