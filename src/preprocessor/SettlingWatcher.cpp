#include "preprocessor/SettlingWatcher.h"

#include "preprocessor/PreProcessor.h"

#include <mutex>

using kalvio::preprocessor::Lock;

CSettlingWatcher::CSettlingWatcher(CWnd* owner, CEvent* done, int* status)
    : m_watch(std::make_unique<CSettlingWatch>(owner, done, status)) {}

CSettlingWatcher::~CSettlingWatcher() = default;

int CSettlingWatcher::AddSignal(int resultID, int detector) {
    const kalvio::LockGuard guard(Lock());
    return m_watch->AddSignal(resultID, detector);
}

NPreProcessor::EResult CSettlingWatcher::GetStatus(Status* out, int n) {
    const kalvio::LockGuard guard(Lock());
    const auto& signals = m_watch->Signals();
    for (int i = 0; i < n; ++i) {
        const auto index = static_cast<std::size_t>(i);
        if (index < signals.size()) {
            const CSettlingWatch::Signal& signal = signals[index];
            out[i] = {signal.filter->ResultId(), signal.filter->Detector(), signal.value, signal.status};
        } else {
            out[i].resultID = 0;
        }
    }
    return m_watch->State();
}

void CSettlingWatcher::RemoveAllSignals() {
    const kalvio::LockGuard guard(Lock());
    m_watch->RemoveAllSignals();
}

bool CSettlingWatcher::GetVerdict(int index, SettlingVerdict& verdict) {
    const kalvio::LockGuard guard(Lock());
    const auto& signals = m_watch->Signals();
    if (index < 0 || static_cast<std::size_t>(index) >= signals.size()) {
        return false;
    }
    verdict = signals[static_cast<std::size_t>(index)].filter->Verdict();
    return true;
}
