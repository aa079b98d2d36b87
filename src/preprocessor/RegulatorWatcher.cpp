#include "preprocessor/RegulatorWatcher.h"

#include "preprocessor/PreProcessor.h"
#include "preprocessor/regulator/RegulatorWatch.h"

#include <mutex>

CRegulatorWatcher::CRegulatorWatcher(CWnd* owner, CEvent* done, int* status) {
    const kalvio::LockGuard hold(kalvio::preprocessor::Lock());
    m_watch = std::make_unique<CRegulatorWatch>(owner, done, status);
}

CRegulatorWatcher::~CRegulatorWatcher() {
    std::unique_ptr<CRegulator> last; // deleted after the lock is released
    const kalvio::LockGuard hold(kalvio::preprocessor::Lock());
    last = m_watch->Release();
    m_watch.reset();
}

NPreProcessor::EResult CRegulatorWatcher::GetStatus() const {
    return m_watch->Status();
}

CWatch* CRegulatorWatcher::Watch() const {
    return m_watch.get();
}
