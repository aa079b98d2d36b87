#pragma once

// What filters and helpers ask of the settling parameters. Any thread; each answer is one lock-free read.

#include "platform/Export.h"

namespace kalvio {

class KALVIO_API SettlingQueries {
public:
    virtual ~SettlingQueries() = default;
    [[nodiscard]] virtual unsigned long GetSettlingTime(int resultID) const = 0; // milliseconds
    [[nodiscard]] virtual int GetNumResults(int resultID) const = 0;             // 1 to 10
    [[nodiscard]] virtual double GetTolerance(int resultID) const = 0;           // a fraction
    [[nodiscard]] virtual int GetToleranceType(int resultID) const = 0; // 0 none, 1 normal, 2 exponential
    [[nodiscard]] virtual int GetAveraging(int resultID) const = 0;
    // 1 when the value lies within the tolerance of the reference, `distance` results away.
    [[nodiscard]] virtual int IsWithinTolerance(int resultID, double value, double reference,
                                                int distance) const = 0;
};

} // namespace kalvio
