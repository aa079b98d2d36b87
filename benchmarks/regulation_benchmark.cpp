// How many settled readings each regulation takes on a fixed set of transfer functions, beside a plain
// bisection and a Brent search on the same functions. In virtual time; prints one table.

#include "VirtualClock.h"

#include "host/HostApplication.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/RegulationDetails.h"
#include "preprocessor/RegulationObserver.h"
#include "preprocessor/RegulatorWatcher.h"
#include "settling/SettlingDetails.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>

namespace {

using namespace kalvio;
using namespace kalvio::benchmarks;
using namespace NPreProcessor;

constexpr double kMinimumSource = 0.0; // storage units
constexpr double kMaximumSource = 100'000.0;
constexpr double kStartSource = 20'000.0;  // of an absolute regulation; extrema are sought from the minimum
constexpr double kTargetSource = 37'000.0; // the target is what it gives
constexpr double kTolerance = 0.005;       // of the target
constexpr double kStoppingRatio = 0.01;    // of an extremum; met within that of all that the function covers
constexpr double kSensitivity = 0.5;
constexpr std::uint32_t kReadingMs = 20; // between two results of the unit
constexpr int kMostReadings = 100;

struct Transfer {
    const char* name;
    double (*value)(double source);
};

constexpr double kResonance = 63'000.0;

const Transfer kTransfers[] = {
    {"linear", [](double s) { return 0.5 * s; }},
    {"square-law", [](double s) { return s * s / 1e5; }},
    {"saturating", [](double s) { return 4e4 * std::tanh(s / 4e4); }},
    {"noisy", [](double s) { return 0.5 * s; }}, // see Noise
    {"steep", [](double s) { return 1e4 + 5e4 / (1.0 + std::exp((4e4 - s) / 1e3)); }},
    {"flat", [](double s) { return 3e4 + 0.05 * s; }},
    {"resonant", [](double s) { return 5e4 / (1.0 + std::pow((s - kResonance) / 2e4, 2)); }},
};

// 0.1 % either way, the same in every run of the program.
class Noise {
public:
    double operator()() {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        return 0.001 * (static_cast<double>(m_state >> 11) / 4503599627370496.0 - 1.0);
    }

private:
    std::uint64_t m_state = 1;
};

// What is measured at a source; counts nothing.
class Device {
public:
    explicit Device(const Transfer& transfer)
        : m_transfer(transfer), m_noisy(std::string(transfer.name) == "noisy") {}
    double Exact(double source) const { return m_transfer.value(source); }
    double Measure(double source) { return Exact(source) * (1.0 + (m_noisy ? m_noise() : 0.0)); }

private:
    const Transfer& m_transfer;
    bool m_noisy;
    Noise m_noise;
};

// What a search is to find, and whether it did.
struct Goal {
    RegulationAlgorithm algorithm;
    double target;
    double allowed;

    Goal(RegulationAlgorithm sought, const Device& device) : algorithm(sought) {
        double lowest = device.Exact(kMinimumSource);
        double highest = lowest;
        for (double s = kMinimumSource; s <= kMaximumSource; s += 10.0) {
            lowest = std::min(lowest, device.Exact(s));
            highest = std::max(highest, device.Exact(s));
        }
        target = IsExtremum() ? (algorithm == kMaximum ? highest : lowest) : device.Exact(kTargetSource);
        allowed = IsExtremum() ? kStoppingRatio * (highest - lowest) : kTolerance * target;
    }
    [[nodiscard]] bool IsExtremum() const { return algorithm == kMaximum || algorithm == kMinimum; }
    [[nodiscard]] bool IsBetter(double a, double b) const { return algorithm == kMinimum ? a < b : a > b; }
    // Smaller is better, for searches that look for a smallest value.
    [[nodiscard]] double Cost(double value) const { return algorithm == kMaximum ? -value : value; }
    [[nodiscard]] bool IsMetBy(double result) const { return std::fabs(result - target) <= allowed; }
};

struct Outcome {
    int readings = 0;
    bool met = false;
    std::string words;
    std::uint32_t virtualMs = 0;
};

// A host whose only source makes the RMS amplitude.
class Bench final : public CSettingsData, public RegulationDetailsProvider, public RegulationObserver {
public:
    Bench(Device& device, const Goal& goal)
        : m_device(device), m_goal(goal), m_source(goal.IsExtremum() ? kMinimumSource : kStartSource) {
        m_application.settling = &m_settling;
        m_application.regulationDetails = this;
        InstallHostApplication(&m_application);
        InstallRegulationObserver(this);
        preprocessor::SetThreaded(false);
    }
    ~Bench() override {
        InstallRegulationObserver(nullptr);
        InstallHostApplication(nullptr);
    }

    Outcome Run() {
        CRegulatorWatcher watcher(nullptr, nullptr, nullptr);
        const std::uint32_t start = m_clock.TickCount();
        watcher.Start(1);
        while (watcher.GetStatus() == Working && m_readings < kMostReadings) {
            m_clock.Advance(kReadingMs);
            WriteResult(m_application.analyserResults.rmsA, m_device.Measure(m_source));
            NotifyNewData(kResultRmsA, 1);
            preprocessor::RunPendingWakeUp();
        }
        return {m_readings, m_goal.IsMetBy(m_device.Exact(m_source)), Words(watcher.GetStatus()),
                m_clock.TickCount() - start};
    }

    bool OnMessenger(CPhyValueMessenger* messenger) override {
        (messenger->get ? messenger->value : m_source) = messenger->get ? m_source : messenger->value;
        return true;
    }
    using CSettingsData::OnMessenger;

    int GetRegulationDetails(RegulationDetails& d) override {
        d.resultA = kResultRmsA;
        d.sourceSettings = this;
        d.sourceMinimum = kMinimumSource;
        d.sourceMaximum = kMaximumSource;
        d.algorithm = m_goal.algorithm;
        d.trend = kTrendIncreasing;
        d.timeout = 3600;
        if (m_goal.IsExtremum()) {
            d.lower = kStoppingRatio;
            d.sensitivity = kSensitivity;
            return 1;
        }
        d.target = m_goal.target;
        d.lower = m_goal.target - m_goal.allowed;
        d.upper = m_goal.target + m_goal.allowed;
        return 1;
    }

    void OnRegulationStep(const RegulationStep& step) override { m_readings = step.iteration; }

private:
    static const char* Words(EResult status) {
        switch (status) {
        case Succeeded:
            return "succeeded";
        case SourceLimit:
            return "source limit";
        case StepTooSmall:
            return "step too small";
        case MonotonicFailed:
            return "monotonic failed";
        case NotConverged:
            return "not converged";
        case Working:
            return "still working";
        default:
            return "failed";
        }
    }

    VirtualClock m_clock;
    CHostApplication m_application;
    CSettlingDetails m_settling;
    Device& m_device;
    const Goal& m_goal;
    double m_source;
    int m_readings = 0;
};

// Halves the range: towards the target, or, for an extremum, towards the better of two readings.
Outcome Bisect(Device& device, const Goal& goal) {
    Outcome outcome;
    double low = kMinimumSource;
    double high = kMaximumSource;
    const auto read = [&](double source) {
        ++outcome.readings;
        return device.Measure(source);
    };
    while (outcome.readings < kMostReadings && high - low > 1.0) {
        const double middle = (low + high) / 2.0;
        const double value = read(middle);
        outcome.met = goal.IsMetBy(device.Exact(middle));
        if (!goal.IsExtremum() && goal.IsMetBy(value)) {
            break;
        }
        const double beyond = middle + (high - low) / 100.0;
        const bool goUp = goal.IsExtremum() ? goal.IsBetter(read(beyond), value) : value < goal.target;
        (goUp ? low : high) = middle;
        if (goal.IsExtremum() && high - low < kStoppingRatio * (kMaximumSource - kMinimumSource)) {
            break;
        }
    }
    return outcome;
}

// Brent's root search by inverse interpolation and bisection.
Outcome BrentRoot(Device& device, const Goal& goal) {
    Outcome outcome;
    const auto error = [&](double source) {
        ++outcome.readings;
        outcome.met = goal.IsMetBy(device.Exact(source));
        return device.Measure(source) - goal.target;
    };
    const auto isMet = [&](double fault) { return goal.IsMetBy(goal.target + fault); };
    double a = kMinimumSource;
    double b = kMaximumSource;
    double fa = error(a);
    double fb = isMet(fa) ? fa : error(b);
    if (isMet(fa) || isMet(fb) || fa * fb > 0.0) {
        return outcome;
    }
    double c = a;
    double fc = fa;
    double d = b - a;
    bool bisected = true;
    while (outcome.readings < kMostReadings) {
        if (std::fabs(fa) < std::fabs(fb)) {
            std::swap(a, b);
            std::swap(fa, fb);
        }
        double s = b - fb * (b - a) / (fb - fa);
        if (fa != fc && fb != fc) {
            s = a * fb * fc / ((fa - fb) * (fa - fc)) + b * fa * fc / ((fb - fa) * (fb - fc)) +
                c * fa * fb / ((fc - fa) * (fc - fb));
        }
        const double edge = (3.0 * a + b) / 4.0;
        const bool outside = s < std::min(edge, b) || s > std::max(edge, b);
        const double allowed = std::fabs(bisected ? b - c : c - d) / 2.0;
        bisected = outside || std::fabs(s - b) >= allowed;
        s = bisected ? (a + b) / 2.0 : s;
        const double fs = error(s);
        if (isMet(fs)) {
            return outcome;
        }
        d = std::exchange(c, b);
        fc = fb;
        (fa * fs < 0.0 ? b : a) = s;
        (fa * fs < 0.0 ? fb : fa) = fs;
    }
    return outcome;
}

// Brent's search for a smallest value by parabolas and golden sections.
Outcome BrentExtremum(Device& device, const Goal& goal) {
    constexpr double kGolden = 0.3819660112501051;
    Outcome outcome;
    const auto cost = [&](double source) {
        ++outcome.readings;
        return goal.Cost(device.Measure(source));
    };
    double low = kMinimumSource;
    double high = kMaximumSource;
    double x = low + kGolden * (high - low);
    double w = x;
    double v = x;
    double fx = cost(x);
    double fw = fx;
    double fv = fx;
    double last = 0.0;
    double step = 0.0;
    const double nearEnough = kStoppingRatio * (high - low) / 2.0;
    while (outcome.readings < kMostReadings) {
        const double middle = (low + high) / 2.0;
        if (std::fabs(x - middle) <= 2.0 * nearEnough - (high - low) / 2.0) {
            break;
        }
        const double r = (x - w) * (fx - fv);
        const double q = (x - v) * (fx - fw);
        const double below = 2.0 * (q - r);
        const double parabola = below == 0.0 ? high : -((x - v) * q - (x - w) * r) / below;
        const bool takeParabola = std::fabs(last) > nearEnough &&
                                  std::fabs(parabola) < std::fabs(last / 2.0) && x + parabola > low &&
                                  x + parabola < high;
        last = takeParabola ? step : (x >= middle ? low : high) - x;
        step = takeParabola ? parabola : kGolden * last;
        const double u = x + (std::fabs(step) >= nearEnough ? step : std::copysign(nearEnough, step));
        const double fu = cost(u);
        if (fu <= fx) {
            (u >= x ? low : high) = x;
            v = std::exchange(w, std::exchange(x, u));
            fv = std::exchange(fw, std::exchange(fx, fu));
        } else {
            (u < x ? low : high) = u;
            if (fu <= fw || w == x) {
                v = std::exchange(w, u);
                fv = std::exchange(fw, fu);
            } else if (fu <= fv || v == x || v == w) {
                v = u;
                fv = fu;
            }
        }
    }
    outcome.met = goal.IsMetBy(device.Exact(x));
    return outcome;
}

const char* NameOf(RegulationAlgorithm algorithm) {
    switch (algorithm) {
    case kMonotonic:
        return "monotonic";
    case kNonMonotonic:
        return "non-monotonic";
    case kMaximum:
        return "maximum";
    case kMinimum:
        return "minimum";
    }
    return "";
}

const char* Met(const Outcome& outcome) {
    return outcome.met ? "met" : "missed";
}

void Compare(const Transfer& transfer, RegulationAlgorithm algorithm) {
    Device device(transfer);
    const Goal goal(algorithm, device);
    const Outcome ours = Bench(device, goal).Run();
    Device again(transfer); // with the same noise
    const Outcome bisection = Bisect(again, goal);
    Device third(transfer);
    const Outcome brent = goal.IsExtremum() ? BrentExtremum(third, goal) : BrentRoot(third, goal);
    std::printf("%-11s %-14s %8d %8u  %-16s %-7s %8d %-7s %8d %-7s\n", transfer.name, NameOf(algorithm),
                ours.readings, ours.virtualMs, ours.words.c_str(), Met(ours), bisection.readings,
                Met(bisection), brent.readings, Met(brent));
}

} // namespace

int main() {
    std::printf(
        "Settled readings until the result is within %.1f %% of the target, or an extremum is found (met: "
        "within %.0f %% of all that the function covers).\nSources %.0f to %.0f, from %.0f or, for extrema, "
        "from the minimum; trend increasing. One result every %u virtual ms.\n\n",
        100.0 * kTolerance, 100.0 * kStoppingRatio, kMinimumSource, kMaximumSource, kStartSource, kReadingMs);
    std::printf("%-11s %-14s %8s %8s  %-16s %-7s %8s %-7s %8s %-7s\n", "function", "regulation", "readings",
                "ms", "outcome", "", "bisect", "", "Brent", "");
    for (const Transfer& transfer : kTransfers) {
        for (const RegulationAlgorithm algorithm : {kMonotonic, kNonMonotonic, kMaximum, kMinimum}) {
            Compare(transfer, algorithm);
        }
    }
    return 0;
}
