#include "preprocessor/SettledResult.h"

#include "hardware/Hardware.h"
#include "host/HostApplication.h"
#include "platform/Clock.h"
#include "preprocessor/thread/MessagePump.h"
#include "preprocessor/thread/SettlingSource.h"

#include <algorithm>
#include <cstdint>

namespace {

using namespace kalvio;

// The caller's variables of one settling check: the values so far, oldest first, and their sum.
struct History {
    double* values;
    int& count;
    double& sum;

    void Append(double value) {
        values[count] = value;
        ++count;
        sum += value;
    }

    void DropOldest() {
        sum -= values[0];
        std::copy(values + 1, values + count, values);
        --count;
    }
};

// Whether every older value agrees with the newest.
bool Agrees(const History& history, int resultID) {
    const SettlingQueries& settling = CurrentSettlingQueries();
    const int newest = history.count - 1;
    for (int lag = 1; lag <= newest; ++lag) {
        if (settling.IsWithinTolerance(resultID, history.values[newest - lag], history.values[newest], lag) ==
            0) {
            return false;
        }
    }
    return true;
}

// Enters a value; true when the history now holds as many values as are needed and they agree.
bool Enter(History history, int resultID, double value) {
    const int needed = std::max(CurrentSettlingQueries().GetNumResults(resultID), 1);
    // After a success the history is still full, and its size is the caller's.
    while (history.count >= needed) {
        history.DropOldest();
    }
    history.Append(value);
    if (history.count == needed && !Agrees(history, resultID)) {
        history.DropOldest();
    }
    return history.count >= needed;
}

bool IsSettlingTimeOver(int resultID, unsigned long startTick) {
    return GetTickCount() - static_cast<std::uint32_t>(startTick) >=
           CurrentSettlingQueries().GetSettlingTime(resultID);
}

// Copies the result and takes its ready flag as one step; false when there is nothing new.
bool TakeReading(CHardware* hardware, int resultID, int detector, const double* field, bool withoutFlag,
                 double& value) {
    if (hardware == nullptr || field == nullptr) {
        return false;
    }
    hardware->LockResults();
    value = ReadResult(*field);
    const bool taken = withoutFlag || hardware->IsResultReady(resultID, detector) != 0;
    hardware->UnlockResults();
    return taken;
}

} // namespace

int GetSettledResult(CHardware* hardware, int resultID, int detector, const double* field, double* history,
                     int* count, unsigned long startTick, int* reads, double* sum, double* value,
                     int takeWithoutFlag, int pump) {
    if (!IsSettlingTimeOver(resultID, startTick) ||
        !TakeReading(hardware, resultID, detector, field, takeWithoutFlag != 0, *value)) {
        if (pump != 0) {
            PumpOnce();
        }
        return 0;
    }
    ++*reads;
    if (IsInvalidResult(*value) || !Enter({history, *count, *sum}, resultID, *value)) {
        return 0;
    }
    if (CurrentSettlingQueries().GetAveraging(resultID) != 0) {
        *value = *sum / *count;
    }
    return 1;
}
