#include "preprocessor/Watch.h"

#include "host/HostApplication.h"
#include "preprocessor/PreProcessor.h"

#include <atomic>
#include <mutex>

using kalvio::preprocessor::Lock;

CWatch::CWatch(CWnd* owner, CEvent* done, int* status)
    : m_owner(owner != nullptr ? owner->Handle() : WindowHandle::None), m_done(done), m_status(status) {}

CWatch::~CWatch() = default;

void CWatch::Report(NPreProcessor::EResult result, ReportForm form) {
    // Copies: a handler that runs in this thread may destroy the watch.
    CEvent* const done = m_done;
    int* const status = m_status;
    if (m_owner != WindowHandle::None) {
        const auto deliver = form == ReportForm::Send ? kalvio::NotifyWindow : kalvio::PostToWindow;
        deliver(m_owner, kalvio::kMessageWatchFinished, static_cast<WPARAM>(result), 0);
    }
    if (done != nullptr) {
        done->SetEvent();
    }
    if (status != nullptr) {
        std::atomic_ref<int>(*status).store(result);
    }
}

void CWatcher::Start(int on) {
    const kalvio::LockGuard guard(Lock());
    Watch()->Start(on);
}

void CWatcher::RequestNotification() {
    const kalvio::LockGuard guard(Lock());
    Watch()->RequestNotification();
}

void CWatcher::StartAndRequestNotification() {
    const kalvio::LockGuard guard(Lock());
    Watch()->Start(1);
    Watch()->RequestNotification();
}
