#include "preprocessor/regulator/ErrorChoice.h"

#include "host/SettingsData.h"

#include <cmath>

using kalvio::preprocessor::ErrorChoice;

namespace {

// Both channels: the one farthest outside drives. Either: the nearest. Otherwise the first that is outside.
bool Outranks(double error, double chosen, int channelMode) {
    switch (channelMode) {
    case kChannelBoth:
        return std::fabs(error) > std::fabs(chosen);
    case kChannelEither:
        return std::fabs(error) < std::fabs(chosen);
    default:
        return false;
    }
}

} // namespace

ErrorChoice kalvio::preprocessor::ChooseError(std::span<const double> values, int channelMode, double lower,
                                              double upper) {
    ErrorChoice choice{.succeeded = true};
    for (const double value : values) {
        const bool low = lower - value > 0.0;
        if (!low && upper - value >= 0.0) {
            if (channelMode == kChannelEither) {
                return {.succeeded = true, .result = value};
            }
            // A channel inside the window must not stand in for one that is outside and drives.
            if (choice.succeeded) {
                choice.result = value;
            }
            continue;
        }
        const double error = low ? lower - value : upper - value;
        if (choice.succeeded || Outranks(error, choice.error, channelMode)) {
            choice = {.succeeded = false, .result = value, .error = error};
        }
    }
    return choice;
}
