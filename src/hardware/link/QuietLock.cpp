#include "hardware/link/QuietLock.h"

#include "platform/UserInterface.h"

#include <utility>
#include <vector>

namespace kalvio {

namespace {

// One thread's quiet scopes. Constant at first and at a fixed place, so that counting them, which every
// register write does, costs no call.
struct Quietness {
    int scopes = 0;
    bool boxesWait = false;
};
[[gnu::tls_model("initial-exec")]] constinit thread_local Quietness ofThisThread;
thread_local std::vector<CString> waitingBoxes;

void ShowWaiting() {
    ofThisThread.boxesWait = false;
    const std::vector<CString> texts = std::exchange(waitingBoxes, {});
    for (const CString& text : texts) {
        ShowMessage(text);
    }
}

} // namespace

void QuietScope::Begin() {
    ++ofThisThread.scopes;
}

void QuietScope::End() {
    Quietness& quietness = ofThisThread;
    if (--quietness.scopes == 0 && quietness.boxesWait) {
        ShowWaiting();
    }
}

bool QuietLock::try_lock() {
    if (!m_lock.try_lock()) {
        return false;
    }
    QuietScope::Begin();
    return true;
}

void ShowMessageWhenQuiet(const CString& text) {
    if (ofThisThread.scopes == 0) {
        ShowMessage(text);
        return;
    }
    waitingBoxes.push_back(text);
    ofThisThread.boxesWait = true;
}

} // namespace kalvio
