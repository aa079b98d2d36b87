#include "hardware/QuietLock.h"

#include "platform/UserInterface.h"

#include <utility>
#include <vector>

namespace kalvio {

namespace {

// One thread's quiet locks and the boxes that wait for them.
struct Quietness {
    int held = 0;
    std::vector<CString> waiting;
};

Quietness& OfThisThread() {
    thread_local Quietness quietness;
    return quietness;
}

void ShowWaiting(Quietness& quietness) {
    const std::vector<CString> texts = std::exchange(quietness.waiting, {});
    for (const CString& text : texts) {
        ShowMessage(text);
    }
}

} // namespace

void QuietLock::Lock() {
    m_section.Lock();
    ++OfThisThread().held;
}

bool QuietLock::try_lock() {
    const bool locked = m_section.try_lock();
    OfThisThread().held += locked ? 1 : 0;
    return locked;
}

void QuietLock::Unlock() {
    m_section.Unlock();
    Quietness& quietness = OfThisThread();
    if (--quietness.held == 0 && !quietness.waiting.empty()) {
        ShowWaiting(quietness);
    }
}

void ShowMessageWhenQuiet(const CString& text) {
    Quietness& quietness = OfThisThread();
    if (quietness.held != 0) {
        quietness.waiting.push_back(text);
    } else {
        ShowMessage(text);
    }
}

} // namespace kalvio
