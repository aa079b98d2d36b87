#pragma once

// What the process has one of: lock, filter lists, watch list, gate and thread of the pre-processor.

#include "platform/Sync.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/thread/NotificationGate.h"
#include "preprocessor/thread/PreProcessorThread.h"
#include "preprocessor/thread/SignalList.h"
#include "preprocessor/thread/WatchList.h"

#include <atomic>
#include <cstdint>

namespace kalvio::preprocessor {

struct State {
    NotificationGate gate;
    SignalList single{kSingleListTimeoutMs};
    SignalList block{kBlockListTimeoutMs};
    PreProcessorThread thread;
    std::atomic<bool> threaded{true};
    WatchList watches KALVIO_UNDER_PREPROCESSOR_LOCK;
    std::uint32_t lastTick KALVIO_UNDER_PREPROCESSOR_LOCK = 0;

    // The list that holds results of this id.
    [[nodiscard]] SignalList& ListOf(int resultID);
};

// Never destroyed: a thread that was abandoned may still use it while the process ends.
[[nodiscard]] State& GetState();

} // namespace kalvio::preprocessor
