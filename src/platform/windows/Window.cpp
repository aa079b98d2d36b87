#include "platform/Window.h"

#include "platform/ControlState.h"
#include "platform/windows/MessageQueue.h"

#include <algorithm>

CWnd::CWnd() : CWnd(0) {}

CWnd::CWnd(int controlId, CWnd* parent) : m_handle(kalvio::RegisterWindow(*this)), m_controlId(controlId) {
    SetParent(parent);
    NoteChange();
}

CWnd::~CWnd() {
    kalvio::UnregisterWindow(m_handle);
    SetParent(nullptr);
    for (CWnd* child : m_children) {
        child->m_parent = nullptr;
    }
}

void CWnd::SetParent(CWnd* parent) {
    if (m_parent != nullptr) {
        std::erase(m_parent->m_children, this);
    }
    m_parent = parent;
    if (m_parent != nullptr) {
        m_parent->m_children.push_back(this);
    }
}

CWnd* CWnd::GetDlgItem(int controlId) const {
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [=](const CWnd* child) { return child->m_controlId == controlId; });
    return found != m_children.end() ? *found : nullptr;
}

void CWnd::SetFocus() {
    kalvio::TakeFocus(m_handle);
    NoteChange();
}

bool CWnd::HasFocus() const {
    return kalvio::OwnsFocus(m_handle);
}

LRESULT CWnd::OnMessage(unsigned, WPARAM, LPARAM) {
    return 0;
}

LRESULT CWnd::Send(unsigned message, WPARAM wParam, LPARAM lParam) {
    return kalvio::SendToWindow(m_handle, message, wParam, lParam);
}

bool CWnd::Post(unsigned message, WPARAM wParam, LPARAM lParam) {
    return kalvio::PostToWindow(m_handle, message, wParam, lParam);
}

void CWnd::Describe(kalvio::ControlState& state) const {
    state.handle = m_handle;
    state.id = m_controlId;
    state.role = m_parent == nullptr ? kalvio::ControlRole::Window : kalvio::ControlRole::Unknown;
    state.text = GetText();
    state.tooltip = m_tooltip;
    state.rect = m_rect;
    state.enabled = m_enabled;
    state.greyed = m_greyed;
    state.visible = m_visible;
    state.focused = HasFocus();
    state.revision = m_revision;
}

kalvio::ActAnswer CWnd::Act(const kalvio::UserAct&) {
    return kalvio::ActAnswer::NotPossible;
}

int CWnd::OnControlChanged(int controlId) {
    return m_parent == nullptr ? 1 : m_parent->OnControlChanged(controlId);
}

void CWnd::OnControlUpdateHardware(int controlId) {
    if (m_parent != nullptr) {
        m_parent->OnControlUpdateHardware(controlId);
    }
}

kalvio::ActAnswer CWnd::TellChanged() {
    if (m_parent == nullptr) {
        return kalvio::ActAnswer::Done;
    }
    // The handler may take this control away.
    CWnd* const owner = m_parent;
    const int id = m_controlId;
    const WindowHandle ownerHandle = owner->Handle();
    if (owner->OnControlChanged(id) == 0) {
        return kalvio::ActAnswer::Refused;
    }
    if (kalvio::IsOwnWindow(ownerHandle)) {
        owner->OnControlUpdateHardware(id);
    }
    return kalvio::ActAnswer::Done;
}
