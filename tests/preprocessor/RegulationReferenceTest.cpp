#include "preprocessor/RegulatorWatcher.h"
#include "support/ReferenceRegulator.h"
#include "support/RegulationRig.h"

#include <cmath>
#include <random>

namespace kalvio::test {
namespace {

using namespace NPreProcessor;
using Case = ReferenceRegulator::Setup;

// Draws setups and transfer functions.
class Draw {
public:
    explicit Draw(unsigned seed) : m_random(seed) {}

    double Real(double low, double high) { return std::uniform_real_distribution<>(low, high)(m_random); }
    int Int(int low, int high) { return std::uniform_int_distribution<>(low, high)(m_random); }
    bool Chance(double p) { return Real(0, 1) < p; }

    std::function<double(double)> Function(double minimum, double maximum) {
        const double gain = std::pow(10.0, Real(-3, 3)) * (Chance(0.4) ? -1.0 : 1.0);
        const double offset = Chance(0.3) ? 0.0 : Real(-1, 1) * std::fabs(gain) * (maximum - minimum);
        const double middle = Real(minimum, maximum);
        const double width = Real(0.02, 1.0) * (maximum - minimum);
        switch (Int(0, 7)) {
        case 0: // linear
            return [=](double s) { return gain * s + offset; };
        case 1: // square law
            return [=](double s) { return gain * s * s + offset; };
        case 2: // saturating
            return [=](double s) { return gain * width * std::tanh((s - middle) / width) + offset; };
        case 3: // flat
            return [=](double) { return offset; };
        case 4: // resonant
            return
                [=](double s) { return gain * width / (1.0 + std::pow((s - middle) / width, 2)) + offset; };
        case 5: // wavy
            return [=](double s) { return gain * width * std::sin((s - middle) / width) + offset; };
        case 6: // a step
            return [=](double s) { return s < middle ? offset : offset + gain * width; };
        default: { // noisy, the same for the same source
            const double noise = Real(0, 0.5) * std::fabs(gain) * width;
            return [=](double s) { return gain * s + offset + noise * std::sin(s * 12345.678); };
        }
        }
    }

    Case Range() {
        Case setup;
        setup.minimum = Chance(0.3) ? 0.0 : Real(-5e4, 5e4);
        setup.maximum = setup.minimum + std::pow(10.0, Real(0, 6));
        return setup;
    }

    double Start(const Case& setup) {
        return Chance(0.1) ? setup.minimum : Chance(0.1) ? setup.maximum : Real(setup.minimum, setup.maximum);
    }

    Case Regulation(Case setup, const std::function<double(double)>& function) {
        setup.algorithm = Int(0, 3);
        setup.trend = Int(0, 2);
        setup.direction = Chance(0.05) ? 3 : Int(0, 2);
        setup.automatic = Chance(0.5);
        setup.initialStep =
            setup.automatic ? kAutomaticStep : Real(0.0, 0.3) * (setup.maximum - setup.minimum);
        if (setup.algorithm >= 2) {
            setup.lower = std::pow(10.0, Real(-4, -0.5));
            setup.sensitivity = Chance(0.1) ? 0.0 : Real(0, 1);
            return setup;
        }
        constexpr int kModes[] = {0, 1, 2, 5};
        setup.mode = kModes[Int(0, 3)];
        setup.target = function(Real(setup.minimum, setup.maximum)) * (Chance(0.2) ? Real(0.5, 2.0) : 1.0);
        const double width = Chance(0.1) ? 0.0 : std::fabs(setup.target) * std::pow(10.0, Real(-6, -1));
        setup.lower = setup.target - width;
        setup.upper = setup.target + width;
        return setup;
    }

private:
    std::mt19937 m_random;
};

class RegulationReferenceTest : public RegulationRig {
protected:
    RegulationReferenceTest() { host.application.regulationDetails = &provider; }

    void Hand(const Case& setup, bool phase) {
        RegulationDetails& d = provider.details;
        d = AmplitudeDetails(source);
        d.resultA = phase ? kResultPhase : kResultRmsA;
        d.channelMode = setup.mode;
        d.lower = setup.lower;
        d.upper = setup.upper;
        d.target = setup.target;
        d.secondSourceCtrlID = setup.mode == kChannelBoth ? kSecondControl : -1;
        d.sourceMinimum = setup.minimum;
        d.sourceMaximum = setup.maximum;
        d.initialStep = setup.initialStep;
        d.algorithm = setup.algorithm;
        d.trend = setup.trend;
        d.direction = setup.direction;
        d.sensitivity = setup.sensitivity;
        d.timeout = 3600;
    }

    static std::vector<double> Watched(const Case& setup, double a, double b) {
        switch (setup.mode) {
        case 0:
            return {a};
        case 1:
            return {b};
        default:
            return {a, b};
        }
    }

    FixedDetails provider;
    FakeSource source;
};

} // namespace

// Thousands of random runs, step by step, through the regulator itself.
TEST_F(RegulationReferenceTest, EveryStepAgreesWithTheReference) {
    constexpr int kRuns = 6000;
    constexpr std::size_t kMostSteps = 60;
    std::map<int, int> outcomes;
    CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
    for (unsigned run = 0; run < kRuns; ++run) {
        SCOPED_TRACE(run);
        Draw draw(run);
        const Case range = draw.Range();
        const double start = draw.Start(range);
        const auto a = draw.Function(range.minimum, range.maximum);
        const double mismatch = draw.Real(0.8, 1.2);
        Case setup = draw.Regulation(range, a);
        setup.phase = setup.algorithm >= 2 && draw.Chance(0.2);
        Hand(setup, setup.phase);
        source.Set(kControl, start);
        measure = [&] {
            const double value = a(source.Get(kControl));
            Put(setup.phase ? kResultPhase : kResultRmsA, value);
            Put(kResultRmsB, value * mismatch);
        };

        ReferenceRegulator reference(setup, start);
        StepRecord record;
        watcher.Start(1);
        double at = start;
        int expected = ReferenceRegulator::Working;
        while (expected == ReferenceRegulator::Working && record.steps.size() < kMostSteps) {
            MeasureOnce();
            MeasureOnce();
            expected = reference.Evaluate(Watched(setup, a(at), a(at) * mismatch));
            ASSERT_EQ(watcher.GetStatus(), expected);
            if (expected == ReferenceRegulator::Working) {
                at = reference.next;
            }
            ASSERT_EQ(source.Get(kControl), at);
            if (setup.mode == kChannelBoth && record.steps.size() > 1) {
                ASSERT_EQ(source.Get(kSecondControl), at);
            }
            ASSERT_EQ(record.steps.back().nextSource, at);
        }
        watcher.Start(0);
        ++outcomes[expected];
    }
    for (const int outcome : {Succeeded, SourceLimit, StepTooSmall, MonotonicFailed, NotConverged}) {
        EXPECT_GT(outcomes[outcome], 10) << outcome; // the runs reach what they are to compare
    }
}

} // namespace kalvio::test
