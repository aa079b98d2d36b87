#pragma once

// A lock that is never held over a message box.

#include "platform/Export.h"
#include "platform/Sync.h"
#include "platform/Text.h"

namespace kalvio {

// A recursive lock. Boxes that the hardware layer wants to show while the calling thread holds any quiet
// lock wait until it has released the last one, and come up then, in order. Any thread.
class QuietLock {
public:
    void Lock();
    void Unlock();
    // The names that std::scoped_lock asks for.
    void lock() { Lock(); }
    bool try_lock();
    void unlock() { Unlock(); }

private:
    CCriticalSection m_section;
};

// An OK box: at once, or as soon as this thread holds no quiet lock any more.
void ShowMessageWhenQuiet(const CString& text);

} // namespace kalvio
