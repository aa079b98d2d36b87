#pragma once

// Which results have arrived, and who is told.

#include "hardware/link/FairLock.h"
#include "hardware/results/ResultFlags.h"
#include "platform/Sync.h"

#include <atomic>

namespace kalvio {

// Any thread; no operation takes the lock.
class ResultArrivals {
public:
    // Around copying a result and reading-and-clearing its flag. A leaf.
    mutable FairLock lock;
    CEvent event; // neither set nor waited for here

    // The flag that a result id has; unknown ids share the first.
    [[nodiscard]] static EResIndex IndexOf(int resultID);
    // 0 to 39; 40 for an unknown detector, -1 without a list.
    [[nodiscard]] static int SlotOf(int detectorID);

    void SetReady(int resultID, EResIndex index, bool notify);
    void SetFftReady(int resultID, int detectorID, bool notify);
    int TakeReady(int resultID, int detectorID); // reading clears
    void Clear() { m_flags.Clear(); }

    void EnableNotifications(bool on) { m_notifies.store(on); }
    [[nodiscard]] bool AreNotificationsEnabled() const { return m_notifies.load(); }

private:
    ResultFlags m_flags;
    std::atomic<bool> m_notifies{false};
};

} // namespace kalvio
