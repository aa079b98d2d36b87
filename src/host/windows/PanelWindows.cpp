#include "host/PanelWindows.h"

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "host/SettingsView.h"
#include "platform/UserInterface.h"
#include "platform/windows/MessageQueue.h"
#include "platform/windows/WaitCursor.h"

#include <algorithm>
#include <utility>

namespace kalvio {

CTypedFrameWnd* MoveOpenWindow(int type, int panel, const CPoint* where) {
    constexpr LPARAM kPanelUnit = 0x10000;
    CWnd* const mainWindow = GetHostApplication().mainWindow;
    if (mainWindow == nullptr) {
        return nullptr;
    }
    auto* frame =
        reinterpret_cast<CTypedFrameWnd*>(mainWindow->Send(kMessageFindWindow, 0, type + panel * kPanelUnit));
    if (frame != nullptr && where != nullptr) {
        const CRect old = frame->GetWindowRect();
        frame->MoveWindow(
            {where->x, where->y, where->x + old.right - old.left, where->y + old.bottom - old.top});
    }
    return frame;
}

// Takes the closed windows away once no handler of theirs can be on the stack: one that asked the user
// something lets messages run meanwhile.
class PanelWindows::Sweeper final : public CWnd {
public:
    explicit Sweeper(PanelWindows& windows) : m_windows(windows) {}
    LRESULT OnMessage(unsigned, WPARAM, LPARAM) override {
        constexpr std::uint32_t kLookAgainMs = 100;
        if (HandlersRunning() > 1) { // more than this one
            SetTimer(Handle(), kLookAgain, kLookAgainMs);
        } else {
            KillTimer(Handle(), kLookAgain);
            m_windows.DropClosed();
        }
        return 0;
    }

private:
    static constexpr unsigned kLookAgain = 1;

    PanelWindows& m_windows;
};

PanelWindows::PanelWindows() = default;

PanelWindows::~PanelWindows() {
    CloseAll();
}

void PanelWindows::CloseAll() {
    while (!m_panels.empty()) {
        m_panels.back().frame->Close();
    }
}

CTypedFrameWnd* PanelWindows::Open(const ViewFactory& factory, unsigned titleId, const WindowPlace& place) {
    int reason = kTextNoWindow;
    try {
        const WaitCursor wait;
        if (CTypedFrameWnd* frame = Create(factory, titleId, place); frame != nullptr) {
            return frame;
        }
    } catch (int stringId) {
        reason = stringId;
    }
    ShowMessage(LoadText(static_cast<unsigned>(reason)), BoxIcon::Exclamation);
    return nullptr;
}

CTypedFrameWnd* PanelWindows::Create(const ViewFactory& factory, unsigned titleId, const WindowPlace& place) {
    Panel panel{std::make_unique<CTypedFrameWnd>(), factory ? factory() : nullptr};
    if (panel.view == nullptr) {
        return nullptr;
    }
    CTypedFrameWnd* frame = GetHostApplication().CreateSettingsWindow(place.show, panel.view.get(),
                                                                      panel.frame.get(), place.where);
    if (frame == nullptr) {
        return nullptr;
    }
    frame->SetText(LoadText(titleId));
    panel.view->PlaceIn(frame);
    auto* settings = dynamic_cast<CSettingsView*>(panel.view.get());
    const CPoint where = place.where != nullptr ? *place.where : CPoint{};
    if (settings != nullptr && settings->InitialiseView(place.panel, where) == 0) {
        settings->OnDestroy();
        return nullptr;
    }
    frame->OnClose([this, frame] { OnClosed(frame); });
    m_panels.push_back(std::move(panel));
    return frame;
}

void PanelWindows::OnClosed(CTypedFrameWnd* frame) {
    const auto found =
        std::ranges::find_if(m_panels, [=](const Panel& panel) { return panel.frame.get() == frame; });
    if (auto* settings = dynamic_cast<CSettingsView*>(found->view.get()); settings != nullptr) {
        settings->OnDestroy();
    }
    m_closed.push_back(std::move(*found));
    m_panels.erase(found);
    if (m_sweeper == nullptr) {
        m_sweeper = std::make_unique<Sweeper>(*this);
    }
    m_sweeper->Post(WM_APP, 0, 0);
}

void PanelWindows::DropClosed() {
    m_closed.clear();
}

} // namespace kalvio
