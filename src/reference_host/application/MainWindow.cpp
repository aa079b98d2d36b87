#include "reference_host/application/MainWindow.h"

#include "host/HostTexts.h"
#include "platform/UserInterface.h"
#include "regulation/RegulationSettings.h"

#include <memory>

namespace kalvio::reference_host {

namespace {

constexpr unsigned kMessageCreationFailed = WM_APP;
constexpr WPARAM kOutOfMemory = kTextOutOfMemory;
constexpr LPARAM kLowWord = 0xFFFF;
constexpr int kWordBits = 16;

} // namespace

void MainWindow::TellBringUpFailed(LPARAM text) {
    const std::unique_ptr<char[]> owned(reinterpret_cast<char*>(text));
    ShowMessage(FormatText(LoadText(kTextBringUpFailed), CString(owned.get())), BoxIcon::Exclamation);
}

LRESULT MainWindow::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kMessageWatchFinished:
        if (m_application.regulation != nullptr) {
            m_application.regulation->OnRegulationResult(static_cast<unsigned>(wParam),
                                                         static_cast<long>(lParam));
        }
        return 0;
    case kMessageBringUpFailed:
        TellBringUpFailed(lParam);
        return 0;
    case kMessageFindWindow:
        return reinterpret_cast<LRESULT>(m_application.FindSettingsWindow(
            static_cast<std::int16_t>(lParam & kLowWord), static_cast<std::int16_t>(lParam >> kWordBits)));
    case kMessageOutOfMemory:
    case kMessageCreationFailed:
        if (wParam == kOutOfMemory) {
            ShowMessage(LoadText(kTextOutOfMemory), BoxIcon::Exclamation);
        }
        return 0;
    default:
        return CWnd::OnMessage(message, wParam, lParam);
    }
}

} // namespace kalvio::reference_host
