// A thousand runs of the regulator, drawn by number, against a record of them. The record was made while an
// independent regulator agreed with every step of every run. Set-ups and transfer functions use exact
// operations only (no library functions that round), so that the record holds wherever doubles are computed
// as written.

#include "preprocessor/RegulatorWatcher.h"
#include "support/RegulationRig.h"

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

namespace kalvio::test {
namespace {

using namespace NPreProcessor;
using Function = std::function<double(double)>;

// One drawn run: what the regulator is told, and what the unit makes of the source.
class Drawn {
public:
    explicit Drawn(unsigned run) : m_random(run) {
        details.sourceMinimum = Chance(0.3) ? 0.0 : Real(-5e4, 5e4);
        details.sourceMaximum = details.sourceMinimum + Power(0, 20);
        m_range = details.sourceMaximum - details.sourceMinimum;
        start = Chance(0.1) ? details.sourceMinimum : Chance(0.1) ? details.sourceMaximum : Source();
        transfer = Transfer();
        mismatch = Real(0.8, 1.2);
        DrawTask();
    }

    RegulationDetails details;
    double start = 0.0;
    Function transfer;
    double mismatch = 1.0; // of channel B

private:
    double Real(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_random() >> 11U) * 0x1p-53);
    }
    int Int(int low, int high) {
        return low + static_cast<int>(m_random() % static_cast<std::uint64_t>(high - low + 1));
    }
    bool Chance(double p) { return Real(0, 1) < p; }
    double Power(int low, int high) { // of 2
        const double fraction = Real(1, 2);
        return std::ldexp(fraction, Int(low, high - 1));
    }
    double Source() { return Real(details.sourceMinimum, details.sourceMaximum); }

    Function Transfer() {
        const double sign = Chance(0.4) ? -1.0 : 1.0;
        const double gain = sign * Power(-10, 10);
        const double offset = Chance(0.3) ? 0.0 : Real(-1, 1) * gain * m_range;
        const double middle = Source();
        const double width = Real(0.02, 1.0) * m_range;
        const double noise = Real(0, 0.5) * gain * width;
        const auto part = [=](double s) { return (s - middle) / width; };
        switch (Int(0, 7)) {
        case 0: // linear
            return [=](double s) { return gain * s + offset; };
        case 1: // square law
            return [=](double s) { return gain * s * s + offset; };
        case 2: // saturating
            return [=](double s) { return gain * width * (part(s) / (1.0 + std::fabs(part(s)))) + offset; };
        case 3: // flat
            return [=](double) { return offset; };
        case 4: // resonant
            return [=](double s) { return gain * width / (1.0 + part(s) * part(s)) + offset; };
        case 5: // wavy
            return [=](double s) {
                const double turn = part(s) - 2.0 * std::floor((part(s) + 1.0) / 2.0);
                return gain * width * (4.0 * turn * (1.0 - std::fabs(turn))) + offset;
            };
        case 6: // a step
            return [=](double s) { return s < middle ? offset : offset + gain * width; };
        default: // noisy, the same for the same source
            return [=](double s) {
                const double phase = s * 12345.678;
                return gain * s + offset + noise * (phase - std::floor(phase));
            };
        }
    }

    void DrawTask() {
        RegulationDetails& d = details;
        d.algorithm = Int(0, 3);
        d.trend = Int(0, 2);
        d.direction = Chance(0.05) ? kUseHistory : Int(0, 2);
        d.initialStep = Chance(0.5) ? kAutomaticStep : Real(0.0, 0.3) * m_range;
        d.resultA = kResultRmsA;
        d.resultB = kResultRmsB;
        if (d.algorithm == kMinimum || d.algorithm == kMaximum) {
            d.lower = Power(-13, -1);
            d.sensitivity = Chance(0.1) ? 0.0 : Real(0, 1);
            d.resultA = Chance(0.2) ? kResultPhase : kResultRmsA;
            return;
        }
        constexpr int kModes[] = {kChannelA, kChannelB, kChannelBoth, kChannelEither};
        d.channelMode = kModes[Int(0, 3)];
        const double reached = transfer(Source());
        d.target = Chance(0.2) ? reached * Real(0.5, 2.0) : reached;
        const double width = Chance(0.1) ? 0.0 : std::fabs(d.target) * Power(-20, -3);
        d.lower = d.target - width;
        d.upper = d.target + width;
    }

    std::mt19937_64 m_random;
    double m_range = 0.0;
};

class RegulationRecordTest : public RegulationRig {
protected:
    RegulationRecordTest() { host.application.regulationDetails = &provider; }

    // The run in one line: its number, outcome, number of steps, and what the steps come to.
    CString Run(unsigned number) {
        constexpr std::size_t kMostSteps = 60;
        const Drawn drawn(number);
        provider.details = drawn.details;
        provider.details.sourceSettings = &source;
        provider.details.sourceCtrlID = kControl;
        provider.details.secondSourceCtrlID = drawn.details.channelMode == kChannelBoth ? kSecondControl : -1;
        provider.details.timeout = 3600;
        source.Set(kControl, drawn.start);
        source.Set(kSecondControl, 0.0);
        measure = [&] {
            const double value = drawn.transfer(source.Get(kControl));
            Put(drawn.details.resultA, value);
            Put(kResultRmsB, value * drawn.mismatch);
        };
        StepRecord record;
        std::uint64_t sum = 0xCBF29CE484222325;
        const auto add = [&sum](std::uint64_t word) {
            sum = (sum ^ word) * 0x100000001B3;
            sum ^= sum >> 29U;
        };
        CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
        watcher.Start(1);
        while (watcher.GetStatus() == Working && record.steps.size() < kMostSteps) {
            MeasureOnce();
            MeasureOnce();
            const RegulationStep step = record.steps.empty() ? RegulationStep{} : record.steps.back();
            for (const double value : {step.source, step.result, step.nextSource, source.Get(kControl),
                                       source.Get(kSecondControl)}) {
                add(std::bit_cast<std::uint64_t>(value));
            }
            add(static_cast<std::uint64_t>(step.rule));
            add(static_cast<std::uint64_t>(step.outcome));
        }
        return Format("%u %d %zu %016llx", number, watcher.GetStatus(), record.steps.size(),
                      static_cast<unsigned long long>(sum));
    }

    FixedDetails provider;
    FakeSource source;
};

} // namespace

TEST_F(RegulationRecordTest, EveryRunGoesAsRecorded) {
    std::ifstream record(std::filesystem::path(__FILE__).parent_path() / "recorded_runs.txt");
    CString line;
    unsigned runs = 0;
    for (; std::getline(record, line); ++runs) {
        ASSERT_EQ(Run(runs), line);
    }
    EXPECT_EQ(runs, 1000U);
}

} // namespace kalvio::test
