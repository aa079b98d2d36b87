#pragma once

// The bar that shows lead pad, data and trail pad within a slot and lets the user move the data.

#include "platform/Controls.h"
#include "platform/Export.h"

// A scroll bar over the bits of a slot: its thumb is the data, its position the lead pad. A move is sent to
// the panel as kMessageControlChanged; when that is accepted, kMessageControlUpdateHardware is posted.
// User-interface thread.
class KALVIO_API CKEDADataFormatBar : public CScrollBar {
public:
    using CScrollBar::CScrollBar;
    void SetFormat(int lead, int data, int trail); // bits
    [[nodiscard]] int LeadPad() const { return GetScrollPos(); }
    [[nodiscard]] int DataLength() const { return m_data; }
    [[nodiscard]] int TrailPad() const { return m_slot - m_data - GetScrollPos(); }
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;

protected:
    [[nodiscard]] int PositionForKey(int key) const override;

private:
    int m_slot = 0;
    int m_data = 0;
};
