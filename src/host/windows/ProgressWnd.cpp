#include "host/ProgressWnd.h"

#include "host/HostApplication.h"

#include <algorithm>

namespace {

// In dialog units.
constexpr CRect kWindow{0, 0, 200, 90};
constexpr kalvio::ControlTemplate kControls[] = {
    {kalvio::ControlKind::Static, kalvio::kCtrlProgressText, "", {7, 7, 193, 50}},
    {kalvio::ControlKind::Progress, kalvio::kCtrlProgressBar, "", {7, 53, 193, 63}},
    {kalvio::ControlKind::PushButton, IDCANCEL, "Cancel", {75, 69, 125, 83}},
};

} // namespace

CProgressWnd::CProgressWnd(CWnd* parent, const CString& caption) : m_owner(parent) {
    CWnd::SetText(caption);
}

CProgressWnd::~CProgressWnd() {
    if (Exists() && m_owner != nullptr) {
        m_owner->EnableWindow(m_ownerWasEnabled);
    }
    DestroyWindow();
}

void CProgressWnd::GoModal(const CString& title) {
    if (Exists()) {
        return;
    }
    m_title = title;
    if (m_owner != nullptr) {
        m_ownerWasEnabled = m_owner->IsWindowEnabled();
        m_owner->EnableWindow(false);
    }
    // Not a child of its owner, which is disabled.
    Create({kalvio::kProgressDialog, m_text.c_str(), kWindow, kControls}, nullptr);
    SetText(m_text);
}

void CProgressWnd::SetRange(int low, int high, int step) {
    m_low = low;
    m_high = std::max(low, high);
    m_step = step;
    m_position = low;
    ShowPosition();
}

void CProgressWnd::SetText(const CString& text) {
    m_text = text;
    if (CWnd* shown = GetDlgItem(kalvio::kCtrlProgressText); shown != nullptr) {
        shown->SetText(text);
    }
}

void CProgressWnd::SetPos(int position) {
    m_position = std::clamp(position, m_low, m_high);
    ShowPosition();
}

void CProgressWnd::ShowPosition() {
    if (auto* const bar = dynamic_cast<CProgressCtrl*>(GetDlgItem(kalvio::kCtrlProgressBar));
        bar != nullptr) {
        bar->SetRange(m_low, m_high);
        bar->SetPos(m_position);
    }
}

void CProgressWnd::StepIt() {
    SetPos(m_position + m_step);
}

void CProgressWnd::PeekAndPump(bool cancelOnEscape) {
    m_cancelOnEscape = cancelOnEscape;
    GetHostApplication().DoMessageLoop();
}

void CProgressWnd::OnCommand(int controlId) {
    if (controlId == IDCANCEL && m_cancelOnEscape) {
        m_cancelled = true;
    }
}
