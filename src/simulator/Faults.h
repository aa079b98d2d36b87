#pragma once

// Faults that a virtual unit can be told to show. They stack: each waits for its own occurrence.
//
// A failed request moves no data and leaves the frame as it was, as a broken link would; resets take a
// pending frame away. Stale input survives the reset of an endpoint or a pipe: only reads and a reset of
// the whole device remove it. A silent or slow command is carried out, a refused one is not.

#include <cstdint>

namespace kalvio::simulator {

enum class FaultKind {
    FailWrite,             // the k-th bulk write fails
    FailRead,              // the k-th bulk read fails
    FailReset,             // the k-th reset (endpoint vendor request, pipe or device reset) fails
    FailAny,               // the k-th driver request of any kind fails
    FailLastError,         // the k-th read of the driver's last error fails
    FailDescriptor,        // the k-th read of the device descriptor fails
    ShortDescriptor,       // the k-th read of the device descriptor returns fewer than 18 bytes
    WrongEcho,             // the k-th response echoes another command code
    Refuse,                // the k-th response refuses with `value` as the unit error code
    ShortAnswer,           // the k-th response or in-data read delivers half of its bytes and reports success
    StaleInput,            // `value` stale reads of input stand before the k-th command's response
    Silence,               // the k-th command gets no response: its read fails with the time-out error
    Disconnect,            // from the k-th request on, every request fails; opening fails too
    SlowAnswer,            // the k-th response comes `value` milliseconds late
    CorruptPeripheralEcho, // the k-th peripheral-bus reply carries a wrong echo byte
    PeripheralStatus,      // the k-th peripheral-bus exchange answers the status word `value`
    WriteProtect,          // calibration memories ignore writes from the k-th on
    CorruptMemoryRead,     // the k-th calibration-memory page read returns one damaged byte
};

// One fault. `occurrence` counts from 1, among the events of its kind after the fault was added;
// `repeat` events in a row show it (0: all from there on; Disconnect and WriteProtect always last).
// A request belongs to the command whose header was sent last.
struct Fault {
    FaultKind kind = FaultKind::FailAny;
    std::uint32_t occurrence = 1;
    std::uint32_t repeat = 1;
    std::uint32_t value = 0;
    std::uint32_t command = 0; // when not 0, only commands of this code count
};

} // namespace kalvio::simulator
