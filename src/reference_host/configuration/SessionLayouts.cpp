#include "reference_host/configuration/SessionLayouts.h"

#include "host/SettingsView.h"
#include "platform/Archive.h"
#include "reference_host/windows/WindowSession.h"

#include <algorithm>

namespace kalvio::reference_host {

// Null for a window that is not open, or that has no view of settings.
CSettingsView* SessionLayouts::ViewOf(const CString& window) const {
    const auto* frame = dynamic_cast<CTypedFrameWnd*>(m_session.Find(window));
    if (frame == nullptr || frame->IsClosed()) {
        return nullptr;
    }
    for (CWnd* child : frame->Children()) {
        if (auto* view = dynamic_cast<CSettingsView*>(child); view != nullptr) {
            return view;
        }
    }
    return nullptr;
}

std::vector<WindowLayout> SessionLayouts::Collect() {
    std::vector<WindowLayout> layouts;
    for (const std::string& name : WindowSession::Names()) {
        if (CSettingsView* view = ViewOf(name); view != nullptr) {
            CArchive archive;
            view->Serialize(archive);
            layouts.push_back({name, archive.Bytes()});
        }
    }
    return layouts;
}

std::vector<CString> SessionLayouts::Restore(const std::vector<WindowLayout>& layouts) {
    std::vector<CString> failed;
    for (const WindowLayout& layout : layouts) {
        if (!RestoreOne(layout)) {
            failed.push_back(layout.name);
        }
    }
    return failed;
}

bool SessionLayouts::RestoreOne(const WindowLayout& layout) {
    if (!WindowSession::RefuseName(layout.name).empty() || !m_session.Open(layout.name).empty()) {
        return false;
    }
    CSettingsView* view = ViewOf(layout.name);
    if (view == nullptr) {
        return false;
    }
    try {
        CArchive archive(layout.bytes);
        view->Serialize(archive);
        return true;
    } catch (const CArchiveException&) {
        return false;
    }
}

} // namespace kalvio::reference_host
