#include "hardware/link/QuietLock.h"

#include "platform/UserInterface.h"

#include <utility>
#include <vector>

namespace kalvio {

namespace {

thread_local std::vector<CString> waitingBoxes;

} // namespace

void QuietScope::ShowWaitingBoxes() {
    thisThread.boxesWait = false;
    const std::vector<CString> texts = std::exchange(waitingBoxes, {});
    for (const CString& text : texts) {
        ShowMessage(text);
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
    if (thisThread.quietScopes == 0) {
        ShowMessage(text);
        return;
    }
    waitingBoxes.push_back(text);
    thisThread.boxesWait = true;
}

} // namespace kalvio
