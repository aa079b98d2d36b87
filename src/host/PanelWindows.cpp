#include "host/PanelWindows.h"

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "platform/UserInterface.h"

#include <utility>

namespace kalvio {
namespace {

class WaitCursor {
public:
    WaitCursor() { CurrentUserInterface().ShowWaitCursor(true); }
    ~WaitCursor() { CurrentUserInterface().ShowWaitCursor(false); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace

CTypedFrameWnd* PanelWindows::Open(const ViewFactory& factory, unsigned titleId) {
    int reason = kTextNoWindow;
    try {
        const WaitCursor wait;
        if (CTypedFrameWnd* frame = Create(factory, titleId); frame != nullptr) {
            return frame;
        }
    } catch (int stringId) {
        reason = stringId;
    }
    ShowMessage(LoadText(static_cast<unsigned>(reason)), BoxIcon::Exclamation);
    return nullptr;
}

CTypedFrameWnd* PanelWindows::Create(const ViewFactory& factory, unsigned titleId) {
    Panel panel{std::make_unique<CTypedFrameWnd>(), factory ? factory() : nullptr};
    if (panel.view == nullptr) {
        return nullptr;
    }
    CTypedFrameWnd* frame =
        GetHostApplication().CreateSettingsWindow(-1, panel.view.get(), panel.frame.get(), nullptr);
    if (frame != nullptr) {
        frame->SetText(LoadText(titleId));
        m_panels.push_back(std::move(panel));
    }
    return frame;
}

} // namespace kalvio
