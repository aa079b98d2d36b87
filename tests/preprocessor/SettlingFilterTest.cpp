#include "preprocessor/SettlingFilter.h"

#include "preprocessor/Supervision.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace kalvio::test {

namespace {

constexpr int kNone = 0;
constexpr int kNormal = 1;
constexpr int kExponential = 2;
constexpr int kUndefinedType = 3;

class SettlingFilterTest : public Supervision {
protected:
    void Set(int numResults, int type, double tolerance, bool averaging = false) {
        settling.defaults = {0, numResults, tolerance, type, averaging};
        filter.LoadParameters();
    }

    void Take(double value) {
        WriteResult(host.application.analyserResults.rmsA, value);
        EXPECT_TRUE(filter.Offer());
        filter.Step();
    }

    CSettlingFilter filter{kBlock, kNoDetector};
};

struct StabilityCase {
    const char* what;
    int numResults;
    int type;
    double tolerance;
    std::vector<double> values;
    bool stable; // after the last
};

} // namespace

TEST_F(SettlingFilterTest, IsStableByNumberTypeAndTolerance) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const StabilityCase cases[] = {
        {"one result: the first fills the window", 1, kNormal, 0.0, {5}, false},
        {"one result: nothing to compare", 1, kNormal, 0.0, {5, 9}, true},
        {"N values are not enough", 3, kNormal, 0.5, {8, 8, 8}, false},
        {"N + 1 values are", 3, kNormal, 0.5, {8, 8, 8, 8}, true},
        {"no test, N values", 3, kNone, 0.0, {1, 2, 3}, false},
        {"no test, N + 1 values", 3, kNone, 0.0, {1, 2, 3, 9}, true},
        {"a deviation equal to the tolerance", 2, kNormal, 0.25, {0, 6, 8}, true},
        {"a deviation just above it", 2, kNormal, 0.25, {0, 5.999, 8}, false},
        {"relative to the latest, not to the older", 2, kNormal, 0.25, {0, 8, 6}, false},
        {"relative to its magnitude", 2, kNormal, 0.25, {0, -6, -8}, true},
        {"zero allows only zero", 2, kNormal, 0.25, {0, 1e-300, 0}, false},
        {"the value that left the window is not compared", 3, kNormal, 0.0, {1, 8, 8, 8}, true},
        {"the oldest in the window is", 3, kNormal, 0.0, {8, 1, 8, 8}, false},
        {"exponential doubles at distance 2", 3, kExponential, 0.125, {0, 6, 7, 8}, true},
        {"exponential at distance 1", 3, kExponential, 0.125, {0, 7, 6, 8}, false},
        {"normal does not double", 3, kNormal, 0.125, {0, 6, 7, 8}, false},
        {"an undefined type compares as normal", 3, kUndefinedType, 0.125, {0, 6, 7, 8}, false},
        {"a value that is no number disagrees with nothing", 2, kNormal, 0.0, {1, 2, nan}, true},
    };
    for (const StabilityCase& row : cases) {
        SCOPED_TRACE(row.what);
        Set(row.numResults, row.type, row.tolerance);
        for (const double value : row.values) {
            Take(value);
        }
        EXPECT_EQ(filter.IsStable(), row.stable);
    }
}

TEST_F(SettlingFilterTest, ResetForgetsValuesAndThePendingOneButNeverDividesByNothing) {
    Set(2, kNone, 0.0, true);
    Take(4);
    Take(6);
    EXPECT_EQ(filter.Value(false), 5.0);
    WriteResult(host.application.analyserResults.rmsA, 9.0);
    ASSERT_TRUE(filter.Offer());
    EXPECT_TRUE(filter.WasTaken());
    filter.Reset();
    EXPECT_FALSE(filter.WasTaken());
    filter.Step();
    EXPECT_FALSE(filter.WasTaken());
    EXPECT_EQ(filter.Value(false), 6.0); // the latest, as nothing is held
    EXPECT_EQ(filter.Value(true), 6.0);
    Take(8);
    EXPECT_FALSE(filter.IsStable());
    EXPECT_EQ(filter.Value(true), 8.0);
}

TEST_F(SettlingFilterTest, VerdictNamesTheNearestOlderValueThatDisagrees) {
    Set(4, kExponential, 0.125);
    for (const double value : {0.0, 1.0, 2.0, 7.0, 8.0}) {
        Take(value);
    }
    const SettlingVerdict verdict = filter.Verdict();
    EXPECT_EQ(std::vector<double>(verdict.values.begin(), verdict.values.begin() + verdict.count),
              (std::vector<double>{8, 7, 2, 1}));
    EXPECT_FALSE(verdict.stable);
    EXPECT_EQ(verdict.disagreeing, 2);
    EXPECT_EQ(verdict.allowed, 2.0);
    EXPECT_EQ(verdict.deviation, 6.0);
    EXPECT_EQ(verdict.needed, 4);
}

namespace {

// What the filter should say, from every value since the reset.
struct Reference {
    SettlingParameters parameters;
    std::vector<double> values;

    [[nodiscard]] std::size_t N() const { return static_cast<std::size_t>(parameters.numResults); }

    [[nodiscard]] bool IsStable() const {
        if (values.size() <= N()) {
            return false;
        }
        const double newest = values.back();
        for (std::size_t back = 1; back < N() && parameters.toleranceType != kNone; ++back) {
            const double growth =
                parameters.toleranceType == kExponential ? std::pow(2.0, static_cast<double>(back) - 1) : 1.0;
            const double older = values[values.size() - 1 - back];
            if (std::fabs(older - newest) > parameters.tolerance * growth * std::fabs(newest)) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] double Average() const {
        const std::size_t held = std::min(values.size(), N());
        return std::accumulate(values.end() - static_cast<std::ptrdiff_t>(held), values.end(), 0.0) /
               static_cast<double>(held);
    }
};

} // namespace

// Values and tolerances are small binary fractions, so that deviations often equal what is allowed and sums
// are exact.
TEST_F(SettlingFilterTest, AgreesWithASlowReference) {
    std::mt19937 random(20240607);
    const auto pick = [&](int low, int high) { return std::uniform_int_distribution<>(low, high)(random); };
    int stableSteps = 0;
    int limitsHit = 0;
    for (int round = 0; round < 2000; ++round) {
        Reference reference{{0, pick(1, 10), pick(0, 16) / 64.0, pick(0, 3), pick(0, 1) == 1}, {}};
        settling.defaults = reference.parameters;
        filter.LoadParameters();
        const int spread = pick(0, 4);
        for (int step = 0; step < 40; ++step) {
            if (pick(0, 30) == 0) {
                filter.Reset();
                reference.values.clear();
            }
            const double value = (pick(0, 1) == 0 ? 8.0 : -8.0) + pick(-spread, spread) / 4.0;
            WriteResult(host.application.analyserResults.rmsA, spread < 4 ? std::fabs(value) : value);
            const double live = ReadResult(host.application.analyserResults.rmsA);
            ASSERT_TRUE(filter.Offer());
            WriteResult(host.application.analyserResults.rmsA, 99.0);
            ASSERT_FALSE(filter.Offer()); // the first one stands
            filter.Step();
            reference.values.push_back(live);

            ASSERT_EQ(filter.IsStable(), reference.IsStable()) << "round " << round << " step " << step;
            ASSERT_EQ(filter.Value(true), reference.Average());
            ASSERT_EQ(filter.Value(false), reference.parameters.averaging ? reference.Average() : live);
            const SettlingVerdict verdict = filter.Verdict();
            ASSERT_EQ(verdict.values[0], live);
            stableSteps += filter.IsStable() ? 1 : 0;
            limitsHit += verdict.deviation > verdict.allowed ? 1 : 0;
        }
    }
    EXPECT_GT(stableSteps, 1000); // both answers were seen often
    EXPECT_GT(limitsHit, 1000);
}

} // namespace kalvio::test
