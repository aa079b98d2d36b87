#include "adapters/KEDADataFormatBar.h"

void CKEDADataFormatBar::SetFormat(int lead, int data, int trail) {
    m_slot = lead + data + trail;
    m_data = data;
    SetScrollRange(0, m_slot - 1, data);
    SetScrollPos(lead);
}

int CKEDADataFormatBar::PositionForKey(int key) const {
    switch (key) {
    case kalvio::kKeyPageUp: // a page to the left
    case kalvio::kKeyHome:
        return 0;
    case kalvio::kKeyPageDown:
    case kalvio::kKeyEnd:
        return m_slot - m_data;
    default:
        return CScrollBar::PositionForKey(key);
    }
}

kalvio::ActAnswer CKEDADataFormatBar::Act(const kalvio::UserAct& act) {
    const bool key = act.kind == kalvio::ActKind::Key;
    if ((act.kind != kalvio::ActKind::Scroll && !key) || GetParent() == nullptr) {
        return kalvio::ActAnswer::NotPossible;
    }
    SetScrollPos(key ? PositionForKey(act.value) : act.value);
    CWnd& panel = *GetParent();
    const auto id = static_cast<WPARAM>(GetDlgCtrlID());
    if (panel.Send(kMessageControlChanged, id, 0) == 0) {
        return kalvio::ActAnswer::Refused;
    }
    panel.Post(kMessageControlUpdateHardware, id, 0);
    return kalvio::ActAnswer::Done;
}
