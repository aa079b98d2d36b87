#include "host/SettingsView.h"

#include "platform/Text.h"

#include <algorithm>

CDragDialog::CDragDialog(const kalvio::DialogTemplate& layout, unsigned style, CSettingsView& view)
    : m_layout(layout), m_style(style), m_view(view) {}

CDragDialog::~CDragDialog() = default;

bool CDragDialog::CreatePanel() {
    return CreateControls(m_layout, &m_view);
}

std::unique_ptr<CWnd> CDragDialog::MakeControl(const kalvio::ControlTemplate& item) {
    return m_view.MakeControl(item, this);
}

int CDragDialog::OnControlChanged(int controlId) {
    return m_view.OnControlChanged(controlId);
}

void CDragDialog::OnControlUpdateHardware(int controlId) {
    m_view.OnControlUpdateHardware(controlId);
}

LRESULT CDragDialog::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kMessageSetDefault:
    case kMessageShowRange:
    case kMessageDoubleClick:
        return m_view.OnMessage(message, wParam, lParam);
    case kMessageControlChanged:
        return m_view.OnControlChanged(static_cast<int>(wParam));
    case kMessageControlUpdateHardware:
        m_view.OnControlUpdateHardware(static_cast<int>(wParam));
        return 0;
    default:
        return CDialog::OnMessage(message, wParam, lParam);
    }
}

void CDragDialog::OnCommand(int) {}

CSettingsView::CSettingsView() = default;

CSettingsView::~CSettingsView() = default;

LRESULT CSettingsView::OnSetDefault(WPARAM, LPARAM) {
    return 0;
}

LRESULT CSettingsView::OnShowRange(WPARAM, LPARAM) {
    return 0;
}

void CSettingsView::OnTimer(unsigned) {}

void CSettingsView::Serialize(CArchive&) {}

void CSettingsView::OnDestroy() {}

std::unique_ptr<CWnd> CSettingsView::MakeControl(const kalvio::ControlTemplate&, CWnd*) {
    return nullptr;
}

CDragDialog* CSettingsView::AddPanelToFrame(const kalvio::DialogTemplate& layout, unsigned style) {
    m_panels.push_back(std::make_unique<CDragDialog>(layout, style, *this));
    return m_panels.back().get();
}

int CSettingsView::CreatePanels() {
    for (const auto& panel : m_panels) {
        if (!panel->CreatePanel()) {
            return 0;
        }
        for (CWnd* control : panel->Children()) {
            control->SetTooltip(kalvio::LoadText(static_cast<unsigned>(control->GetDlgCtrlID())));
        }
    }
    ArrangePanels();
    return 1;
}

void CSettingsView::ArrangePanels() {
    int width = 0;
    int height = 0;
    for (const auto& panel : m_panels) {
        const CRect rect = panel->GetWindowRect();
        panel->MoveWindow(kalvio::Area(0, height, rect.right - rect.left, rect.bottom - rect.top));
        width = std::max(width, rect.right - rect.left);
        height += rect.bottom - rect.top;
    }
    MoveWindow(kalvio::Area(0, 0, width, height));
    if (CTypedFrameWnd* const frame = GetParentFrame(); frame != nullptr) {
        frame->MoveWindow(
            kalvio::Area(frame->GetWindowRect().left, frame->GetWindowRect().top, width, height));
    }
}

CDragDialog* CSettingsView::FindPanel(int resource) const {
    const auto found =
        std::ranges::find_if(m_panels, [=](const auto& panel) { return panel->Resource() == resource; });
    return found == m_panels.end() ? nullptr : found->get();
}

void CSettingsView::ShowControl(int controlId, bool show) {
    if (CWnd* const control = Find<CWnd>(controlId); control != nullptr) {
        control->ShowWindow(show);
    }
}

void CSettingsView::EnableControl(int controlId, bool enable) {
    if (CWnd* const control = Find<CWnd>(controlId); control != nullptr) {
        control->EnableWindow(enable);
        control->SetGreyed(!enable);
    }
}

void CSettingsView::SetControlText(int controlId, const CString& text) {
    if (CWnd* const control = Find<CWnd>(controlId); control != nullptr) {
        control->SetText(text);
    }
}

LRESULT CSettingsView::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kMessageSetDefault:
        return OnSetDefault(wParam, lParam);
    case kMessageShowRange:
        return OnShowRange(wParam, lParam);
    case WM_TIMER:
        OnTimer(static_cast<unsigned>(wParam));
        return 0;
    default:
        return CPrintView::OnMessage(message, wParam, lParam);
    }
}
