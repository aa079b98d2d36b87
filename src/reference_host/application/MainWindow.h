#pragma once

// The program's main window: where the library's messages arrive.

#include "host/HostApplication.h"
#include "platform/Window.h"

namespace kalvio::reference_host {

// User-interface thread.
class MainWindow final : public CWnd {
public:
    explicit MainWindow(CHostApplication& application) : m_application(application) {}

    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

private:
    void TellBringUpFailed(LPARAM text);

    CHostApplication& m_application;
};

} // namespace kalvio::reference_host
