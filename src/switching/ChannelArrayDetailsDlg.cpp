#include "switching/ChannelArrayDetailsDlg.h"

#include "platform/UserInterface.h"
#include "switching/SwitcherTexts.h"
#include "switching/panels/ChannelArrayControlPanelLayout.h"

#include <utility>

namespace {

constexpr std::size_t kLongestName = 32;

CButton& Box(const CWnd& dialog, int controlId) {
    return dynamic_cast<CButton&>(*dialog.GetDlgItem(controlId));
}

void Show(const CWnd& dialog, int controlId, int checked, bool editable) {
    CButton& box = Box(dialog, controlId);
    box.SetCheck(checked);
    box.EnableWindow(editable);
    box.SetGreyed(!editable);
}

} // namespace

CChannelArrayDetailsDlg::CChannelArrayDetailsDlg(kalvio::ChannelArrayNames& page, CChannelArray* array,
                                                 kalvio::ArrayIdentity identity, bool stereoEditable,
                                                 bool exclusiveOnlyEditable)
    : m_page(page),
      m_array(array),
      m_identity(std::move(identity)),
      m_stereoEditable(stereoEditable),
      m_exclusiveOnlyEditable(exclusiveOnlyEditable) {}

CChannelArrayDetailsDlg::~CChannelArrayDetailsDlg() = default;

int CChannelArrayDetailsDlg::DoModal(CWnd* parent) {
    return CDialog::DoModal(kalvio::kArrayDetailsLayout, parent);
}

bool CChannelArrayDetailsDlg::OnInitDialog() {
    auto& name = dynamic_cast<CEdit&>(*GetDlgItem(kalvio::kCtrlArrayName));
    name.SetLimitText(kLongestName);
    name.SetText(m_identity.name);
    Show(*this, kalvio::kCtrlArrayStereo, m_identity.stereo, m_stereoEditable);
    Show(*this, kalvio::kCtrlArrayExclusiveOnly, m_identity.exclusiveOnly, m_exclusiveOnlyEditable);
    return true;
}

kalvio::ArrayIdentity CChannelArrayDetailsDlg::Entered() const {
    return {GetDlgItem(kalvio::kCtrlArrayName)->GetText(), Box(*this, kalvio::kCtrlArrayStereo).GetCheck(),
            Box(*this, kalvio::kCtrlArrayExclusiveOnly).GetCheck()};
}

void CChannelArrayDetailsDlg::OnCommand(int controlId) {
    if (controlId == IDOK) {
        const kalvio::ArrayIdentity entered = Entered();
        if (m_page.IsNameUnique(entered.name, m_array) != 0) {
            m_identity = entered;
            EndDialog(IDOK);
        }
    } else if (controlId == IDCANCEL) {
        if (Entered() == m_identity || kalvio::AskYesNo(kalvio::LoadText(kalvio::kTextAskLoseChanges))) {
            EndDialog(IDCANCEL);
        }
    }
}
