#include "host/HostApplication.h"

#include "host/ViewUpdates.h"
#include "platform/Thread.h"

namespace {

constexpr int kProtectedVersion = 5; // the first code of a system that keeps programs from its I/O ports

std::atomic<CHostApplication*> installedApplication{nullptr};

// Never destroyed, so that a thread that was abandoned at the end of the process still finds it.
CHostApplication& PlainApplication() {
    static auto& plain = *new CHostApplication;
    return plain;
}

} // namespace

CHostApplication::CHostApplication() : m_views(std::make_unique<kalvio::ViewUpdates>()) {}

CHostApplication::~CHostApplication() = default;

bool CHostApplication::CheckSecurityLevel(int) {
    return false;
}

int CHostApplication::GetOLEDisplay() {
    return 0;
}

int CHostApplication::GetWindowsVersion() {
    return kProtectedVersion;
}

std::unique_ptr<kalvio::CommunicationsControl> CHostApplication::CreateCommunicationsControl(CWnd&, int) {
    return nullptr;
}

void CHostApplication::DoMessageLoop() {
    kalvio::PumpMessages();
}

void CHostApplication::SetThreadName(const CString& name) {
    kalvio::SetCurrentThreadName(name);
}

CTypedFrameWnd* CHostApplication::CreateSettingsWindow(int show, CView* view, CTypedFrameWnd* frame,
                                                       const CPoint* where) {
    if (view == nullptr || frame == nullptr) {
        return nullptr;
    }
    if (where != nullptr) {
        const CRect& now = frame->GetWindowRect();
        frame->MoveWindow(
            {where->x, where->y, where->x + now.right - now.left, where->y + now.bottom - now.top});
    }
    frame->ShowWindow(show != 0);
    return frame;
}

CTypedFrameWnd* CHostApplication::FindSettingsWindow(int type) {
    return FindWindow(type);
}

CTypedFrameWnd* CHostApplication::FindWindow(int type) {
    return kalvio::FindOpenFrame(type);
}

CTypedFrameWnd* CHostApplication::FindSettingsWindow(int type, int panel) {
    CTypedFrameWnd* const oldest = FindSettingsWindow(type);
    if (oldest == nullptr || oldest->Panel() == panel) {
        return oldest;
    }
    for (CTypedFrameWnd* frame : kalvio::OpenFrames()) {
        if (frame->WindowType() == type && frame->Panel() == panel) {
            return frame;
        }
    }
    return nullptr;
}

void CHostApplication::RegisterControl(int ctrlID, CSettingsData* document) {
    m_controls[ctrlID] = document;
}

void CHostApplication::UnregisterControls(const CSettingsData* document) {
    std::erase_if(m_controls, [document](const auto& control) { return control.second == document; });
}

CSettingsData* CHostApplication::GetDocForID(int ctrlID) {
    if (const auto control = m_controls.find(ctrlID); control != m_controls.end()) {
        return control->second;
    }
    if (kalvio::IsGeneratorControl(ctrlID)) {
        return generator;
    }
    return kalvio::IsAnalyserResult(ctrlID) ? analyser : nullptr;
}

int CHostApplication::AddViewObserver(ViewObserver observer) {
    return m_views->Add(std::move(observer));
}

void CHostApplication::RemoveViewObserver(int token) {
    m_views->Remove(token);
}

void CHostApplication::NotifyViews(CView* sender, int hint, void* object, int flag) {
    m_views->Notify(sender, hint, object, flag);
}

CHostApplication& GetHostApplication() {
    CHostApplication* installed = installedApplication.load(std::memory_order_acquire);
    return installed == nullptr ? PlainApplication() : *installed;
}

CHostApplication* InstallHostApplication(CHostApplication* application) {
    return installedApplication.exchange(application, std::memory_order_acq_rel);
}
