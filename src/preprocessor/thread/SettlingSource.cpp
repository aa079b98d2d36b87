#include "preprocessor/thread/SettlingSource.h"

#include "host/HostApplication.h"

namespace kalvio {

namespace {

class NoSettling final : public SettlingQueries {
public:
    [[nodiscard]] unsigned long GetSettlingTime(int) const override { return 0; }
    [[nodiscard]] int GetNumResults(int) const override { return 1; }
    [[nodiscard]] double GetTolerance(int) const override { return 0.0; }
    [[nodiscard]] int GetToleranceType(int) const override { return 0; }
    [[nodiscard]] int GetAveraging(int) const override { return 0; }
    [[nodiscard]] int IsWithinTolerance(int, double, double, int) const override { return 1; }
};

} // namespace

const SettlingQueries& CurrentSettlingQueries() {
    static const NoSettling& none = *new NoSettling;
    const SettlingQueries* settling = GetHostApplication().settling;
    return settling != nullptr ? *settling : none;
}

} // namespace kalvio
