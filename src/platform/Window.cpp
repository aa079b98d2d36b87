#include "platform/Window.h"

#include "platform/MessageQueue.h"

#include <algorithm>

CWnd::CWnd() : CWnd(0) {}

CWnd::CWnd(int controlId, CWnd* parent) : m_handle(kalvio::RegisterWindow(*this)), m_controlId(controlId) {
    SetParent(parent);
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
