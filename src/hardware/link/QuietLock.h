#pragma once

// A lock that is never held over a message box.

#include "hardware/link/FairLock.h"
#include "platform/Text.h"

namespace kalvio {

// Boxes that the hardware layer wants to show while the calling thread has quiet scopes wait until the last
// of them ends, and come up then, in order.
class QuietScope {
public:
    QuietScope() { Begin(); }
    ~QuietScope() { End(); }
    QuietScope(const QuietScope&) = delete;
    QuietScope& operator=(const QuietScope&) = delete;

    static void Begin() { ++thisThread.quietScopes; }
    static void End() {
        if (--thisThread.quietScopes == 0 && thisThread.boxesWait) {
            ShowWaitingBoxes();
        }
    }

private:
    static void ShowWaitingBoxes();
};

// A recursive lock; whoever holds it is in a quiet scope. Any thread.
class KALVIO_CAPABILITY("mutex") QuietLock {
public:
    void lock() KALVIO_ACQUIRE() {
        m_lock.lock();
        QuietScope::Begin();
    }
    void unlock() KALVIO_RELEASE() {
        m_lock.unlock();
        QuietScope::End();
    }
    bool try_lock() KALVIO_TRY_ACQUIRE(true);
    // How many callers wait for it now.
    [[nodiscard]] std::uint32_t Waiting() const { return m_lock.Waiting(); }

private:
    FairLock m_lock;
};

// An OK box: at once, or when this thread's last quiet scope ends.
void ShowMessageWhenQuiet(const CString& text);

} // namespace kalvio
