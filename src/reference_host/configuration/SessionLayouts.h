#pragma once

// The layouts of the library's windows that a session opened by name.

#include "reference_host/configuration/WindowLayouts.h"

class CSettingsView;

namespace kalvio::reference_host {

class WindowSession;

// The session must outlive it. User-interface thread.
class SessionLayouts final : public WindowLayouts {
public:
    explicit SessionLayouts(WindowSession& session) : m_session(session) {}
    [[nodiscard]] std::vector<WindowLayout> Collect() override;
    std::vector<CString> Restore(const std::vector<WindowLayout>& layouts) override;

private:
    [[nodiscard]] CSettingsView* ViewOf(const CString& window) const;
    [[nodiscard]] bool RestoreOne(const WindowLayout& layout);

    WindowSession& m_session;
};

} // namespace kalvio::reference_host
