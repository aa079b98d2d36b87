#include "support/ReferenceRegulator.h"

#include <cmath>

namespace kalvio::test {

int ReferenceRegulator::Evaluate(const std::vector<double>& values) {
    if (direction < 0) {
        direction = setup.direction;
    }
    iteration += 1;
    int outcome = 0;
    if (setup.algorithm == Maximum || setup.algorithm == Minimum) {
        R = setup.phase ? values[0] + 180.0 : values[0];
        outcome = RunExtremum();
    } else {
        outcome = Absolute(values);
    }
    if (outcome == Working) {
        previous = {S, R};
        S = next;
    }
    return outcome;
}

int ReferenceRegulator::Absolute(const std::vector<double>& values) {
    bool chosen = false;
    double e = 0.0;
    for (const double v : values) {
        double own = 0.0;
        if (setup.lower - v > 0) {
            own = setup.lower - v;
        } else if (setup.upper - v >= 0) {
            if (setup.mode == 5) {
                return Succeeded;
            }
            if (!chosen) {
                R = v;
            }
            continue;
        } else {
            own = setup.upper - v;
        }
        bool take = !chosen;
        if (chosen && setup.mode == 2) {
            take = std::abs(own) > std::abs(e);
        }
        if (chosen && setup.mode == 5) {
            take = std::abs(own) < std::abs(e);
        }
        if (take) {
            chosen = true;
            R = v;
            e = own;
        }
    }
    if (!chosen) {
        return Succeeded;
    }
    return setup.algorithm == Monotonic ? RunMonotonic(e) : RunNonMonotonic();
}

bool ReferenceRegulator::Crossed() const {
    const double T = setup.target;
    if (R <= T && T < previous.r) {
        return true;
    }
    return R > T && T > previous.r;
}

int ReferenceRegulator::RunMonotonic(double e) {
    enum { Proportional, HalfWay, Secant, Bisect } rule = Secant;
    const bool high = e < 0;
    const double T = setup.target;
    if (previousError <= std::abs(e) && iteration > 24) {
        return NotConverged;
    }
    previousError = std::abs(e);

    if (iteration == 1) {
        const double p = S * R;
        rule = HalfWay;
        if (p > 0 && setup.trend != 1) {
            rule = Proportional;
        }
        if (p < 0 && setup.trend != 0) {
            rule = Proportional;
        }
    } else if (!bracketed) {
        if (Crossed()) {
            bracketed = true;
            if (high) {
                A = {S, R};
            } else {
                B = {S, R};
            }
        } else if (high) {
            if (S == A.s) {
                return SourceLimit;
            }
            if (A.r < R) {
                B = {S, R};
            } else {
                B = A;
                A = {S, R};
            }
        } else {
            if (S == B.s) {
                return SourceLimit;
            }
            if (B.r <= R) {
                A = B;
                B = {S, R};
            } else {
                A = {S, R};
            }
        }
    } else {
        double d = 0.0;
        if (high) {
            d = R - A.r;
            if (d < 0) {
                A = {S, R};
            }
        } else {
            d = R - B.r;
            if (d > 0) {
                B = {S, R};
            }
        }
        if (std::abs(d / e) < 0.3) {
            rule = Bisect;
        }
    }

    double wanted = 0.0;
    if (rule == Proportional) {
        wanted = (T - R) * S / R;
        if (S >= setup.maximum && wanted > 0) {
            wanted = -wanted;
        } else if (S <= setup.minimum && wanted < 0) {
            wanted = -wanted;
        }
    } else if (rule == HalfWay) {
        const bool up = (setup.trend == 1 && high) || (setup.trend != 1 && !high);
        if (up) {
            wanted = (setup.maximum - S) / 2;
            if (wanted <= 0) {
                wanted = (setup.minimum - S) / 2;
            }
        } else {
            wanted = (setup.minimum - S) / 2;
            if (wanted >= 0) {
                wanted = (setup.maximum - S) / 2;
            }
        }
    } else if (rule == Bisect) {
        wanted = (A.s + B.s) / 2 - S;
    } else {
        if (A.s == B.s) {
            return StepTooSmall;
        }
        const double slope = (A.r - B.r) / (A.s - B.s);
        if (slope == 0) {
            return MonotonicFailed;
        }
        wanted = (T - R) / slope;
    }
    if (iteration == 1) {
        (high ? A : B) = {S, R};
    }
    if (wanted == 0) {
        return StepTooSmall;
    }
    MakeStep(wanted);
    if (step == 0) {
        return SourceLimit;
    }
    return StepCheck();
}

int ReferenceRegulator::RunNonMonotonic() {
    for (;;) {
        double wanted = step;
        if (iteration == 1) {
            double span = 0.0;
            if (direction == 0 || (direction == 2 && R < setup.target)) {
                span = setup.maximum - S;
                direction = 0;
            } else if (direction == 1 || (direction == 2 && R > setup.target)) {
                span = setup.minimum - S;
                direction = 1;
            }
            wanted = setup.initialStep;
            if (setup.automatic) {
                wanted = span != 0 ? span / 4 : (setup.maximum - setup.minimum) / 4;
            } else if (direction == 1) {
                wanted = -wanted;
            }
        } else {
            const bool now = Crossed();
            if (now) {
                wanted = -(step / 2);
            } else if (bracketed) {
                wanted = step / 2;
            }
            bracketed = now;
        }
        MakeStep(wanted);
        if (step != 0) {
            return StepCheck();
        }
        if (phase > 1) {
            return SourceLimit;
        }
        if (direction == 0 || direction == 1) {
            direction = 1 - direction;
        }
        S = S0;
        phase += 1;
        iteration = 1;
    }
}

bool ReferenceRegulator::Better(double candidate, double than) const {
    return setup.algorithm == Maximum ? candidate > than : candidate < than;
}

int ReferenceRegulator::RunExtremum() {
    if (phase > 1) {
        return Refine();
    }
    double wanted = step;
    if (iteration == 1) {
        double span = 0.0;
        if (direction == 0 || direction == 2) {
            span = setup.maximum - S;
            direction = 0;
        } else if (direction == 1) {
            span = setup.minimum - S;
        }
        wanted = setup.initialStep;
        if (setup.automatic) {
            wanted = span != 0 ? span / 10 : (setup.maximum - setup.minimum) / 10;
        } else if (direction == 1) {
            wanted = -wanted;
        }
        bestMoved = true;
        previous = B = M = {S, R};
    } else {
        if (bestMoved) {
            bestMoved = false;
            A = {S, R};
        }
        bool moved = false;
        if (setup.algorithm == Maximum) {
            if (R > M.r) {
                moved = true;
            } else if (R < setup.sensitivity * M.r) {
                phase += 1;
            }
        } else {
            if (R < M.r) {
                moved = true;
            } else if (setup.sensitivity != 0 && R > M.r / setup.sensitivity) {
                phase += 1;
            }
        }
        if (moved) {
            bestMoved = true;
            M = {S, R};
            B = previous;
        }
    }
    MakeStep(wanted);
    if (step == 0) {
        if (iteration == 1) {
            return StepTooSmall;
        }
        phase += 1;
    }
    if (phase < 2) {
        return Working;
    }
    if (bestMoved) {
        A = {S, R};
    }
    if (Better(B.r, A.r)) {
        const Point other = A;
        A = B;
        B = other;
    }
    search = 0;
    iteration = 1;
    return Refine();
}

int ReferenceRegulator::Refine() {
    if (search == 3) {
        return Succeeded;
    }
    const Point probe{S, R};
    const bool better = setup.algorithm == Maximum ? R >= M.r : R < M.r;
    bool straightToStep = false;
    while (search != 0 && !straightToStep) {
        if (search == 1) {
            if (!better) {
                search = 2;
                A = probe;
                next = (M.s + B.s) / 2;
                straightToStep = true;
            } else {
                search = 0;
                B = A;
                A = M;
                M = probe;
            }
        } else {
            search = 0;
            if (better) {
                A = M;
                M = probe;
            } else {
                B = probe;
                if (Better(B.r, A.r)) {
                    const Point other = A;
                    A = B;
                    B = other;
                }
            }
        }
    }
    bool finish = false;
    if (!straightToStep) {
        if (M.s == A.s) {
            search = 2;
            next = (B.s + M.s) / 2;
        } else {
            search = 1;
            next = (M.s + A.s) / 2;
        }
        finish = iteration > 2 && std::abs((M.r - B.r) / M.r) < setup.lower;
    }
    if (!finish) {
        step = next - S;
        finish = StepCheck() == Succeeded;
    }
    if (!finish) {
        return Working;
    }
    if (M.s == S) {
        return Succeeded;
    }
    next = M.s;
    step = M.s - S;
    search = 3;
    return Working;
}

void ReferenceRegulator::MakeStep(double wanted) {
    next = S + wanted;
    if (setup.maximum - next < 0 || setup.maximum - next < 1.0) {
        next = setup.maximum;
    } else if (next - setup.minimum < 0 || next - setup.minimum < 1.0) {
        next = setup.minimum;
    }
    step = next - S;
}

int ReferenceRegulator::StepCheck() const {
    if (std::abs(step) > 1.0) {
        return Working;
    }
    if (setup.algorithm == Maximum || setup.algorithm == Minimum) {
        return Succeeded;
    }
    return setup.lower == setup.upper ? Succeeded : StepTooSmall;
}

} // namespace kalvio::test
