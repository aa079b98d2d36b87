#pragma once

// The background thread: started, told to stop, waited for. Each start has its own run token, so that a
// thread that was abandoned while it hung leaves by itself when it wakes, even if another was started since.

#include "platform/Sync.h"
#include "platform/Thread.h"

#include <atomic>
#include <memory>

namespace kalvio {

class PreProcessorThread {
public:
    // What the body works under; the thread and its owner share it. Any thread.
    struct Run {
        std::atomic<bool> on{true};
        CEvent stop; // set when `on` was cleared, so that the thread need not wait its time out
    };
    using Body = void (*)(Run& run);

    // True when the thread runs, now or already. Any thread.
    bool Start(Body body);

    // Returns when the thread ended, or after `milliseconds` without it. Any thread that holds no lock which
    // the body takes.
    void Stop(std::uint32_t milliseconds);

    [[nodiscard]] bool IsRunning() const; // any thread

private:
    mutable Mutex m_lock;                                       // a leaf
    std::unique_ptr<Thread> m_thread KALVIO_GUARDED_BY(m_lock); // null when no thread runs
    std::shared_ptr<Run> m_run KALVIO_GUARDED_BY(m_lock);
};

} // namespace kalvio
