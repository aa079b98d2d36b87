#pragma once

// A slow, literal regulator to hold the library's against: one step a call, every quantity under the name
// that the description of the algorithms gives it. Shares no code with the library.

#include <vector>

namespace kalvio::test {

class ReferenceRegulator {
public:
    enum Algorithm { Monotonic = 0, NonMonotonic = 1, Minimum = 2, Maximum = 3 };
    enum Outcome {
        Working = 1,
        Succeeded = 3,
        SourceLimit = 5,
        StepTooSmall = 6,
        MonotonicFailed = 7,
        NotConverged = 8
    };

    struct Setup {
        int algorithm = Monotonic;
        int trend = 0;     // 0 increasing, 1 decreasing, 2 unknown
        int direction = 0; // 0 up, 1 down, 2 unknown, 3 history
        int mode = 0;      // 0 A, 1 B, 2 both, 5 either
        double lower = 0.0;
        double upper = 0.0;
        double target = 0.0;
        double minimum = 0.0;
        double maximum = 0.0;
        bool automatic = true;
        double initialStep = 0.0;
        double sensitivity = 0.0;
        bool phase = false; // the first signal is the phase
    };

    ReferenceRegulator(const Setup& given, double source) : setup(given), S(source), S0(source) {}

    // The signals have settled on these values: what comes of it, with `next` set while it works.
    int Evaluate(const std::vector<double>& values);

    double next = 0.0;

private:
    struct Point {
        double s = 0.0;
        double r = 0.0;
    };

    int Absolute(const std::vector<double>& values);
    int RunMonotonic(double e);
    int RunNonMonotonic();
    int RunExtremum();
    int Refine();
    void MakeStep(double wanted);
    int StepCheck() const;
    bool Better(double candidate, double than) const;
    bool Crossed() const;

    Setup setup;
    double S;
    double R = 0.0;
    double S0;
    Point previous, A, B, M;
    double step = 0.0;
    double previousError = 0.0;
    int iteration = 0;
    int phase = 1;
    int search = 0;
    int direction = -1;
    bool bracketed = false;
    bool bestMoved = false;
};

} // namespace kalvio::test
