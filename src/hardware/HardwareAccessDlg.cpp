#include "hardware/HardwareAccessDlg.h"

#include <array>

namespace {

using kalvio::ControlKind;
using kalvio::ControlTemplate;

constexpr std::array<ControlTemplate, 4> kControls{{
    {ControlKind::Static,
     1001,
     "The system is attempting to access the hardware. This may take a few seconds..",
     {7, 7, 263, 17}},
    {ControlKind::Static,
     1002,
     "Please ensure that the hardware is plugged in and switched on.",
     {7, 23, 263, 33}},
    {ControlKind::PushButton, CHardwareAccessDlg::kExitId, "&Exit", {47, 45, 97, 59}},
    {ControlKind::PushButton,
     CHardwareAccessDlg::kContinueId,
     "&Continue without hardware",
     {113, 45, 223, 59}},
}};

constexpr kalvio::DialogTemplate kLayout{
    CHardwareAccessDlg::kTemplateId, " Accessing hardware...", {0, 0, 270, 66}, kControls};

} // namespace

bool CHardwareAccessDlg::Create() {
    return CDialog::Create(kLayout);
}

void CHardwareAccessDlg::OnCommand(int controlId) {
    if (controlId == kExitId) {
        m_choice = Choice::Exit;
    } else if (controlId == kContinueId) {
        m_choice = Choice::Continue;
    }
}
