#pragma once

// The modeless dialog that stands while the unit cannot be opened: wait for it, go on without, or leave.

#include "platform/Dialog.h"
#include "platform/Export.h"

// User-interface thread.
class KALVIO_API CHardwareAccessDlg : public CDialog {
public:
    static constexpr int kTemplateId = 250;
    static constexpr int kExitId = IDOK;
    static constexpr int kContinueId = IDCANCEL; // so Esc counts as it

    enum class Choice { None, Exit, Continue };

    bool Create(); // on the desktop
    [[nodiscard]] Choice GetChoice() const { return m_choice; }

protected:
    void OnCommand(int controlId) override;

private:
    Choice m_choice = Choice::None;
};
