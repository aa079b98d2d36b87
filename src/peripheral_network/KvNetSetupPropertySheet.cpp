#include "peripheral_network/KvNetSetupPropertySheet.h"

namespace {

constexpr int kHelpId = 1028;

} // namespace

CKvNetSetupPropertySheet::CKvNetSetupPropertySheet(unsigned captionId, CWnd* parent, int firstPage)
    : CKvNetSetupPropertySheet(kalvio::LoadText(captionId), parent, firstPage) {}

CKvNetSetupPropertySheet::CKvNetSetupPropertySheet(const CString& caption, CWnd* parent, int firstPage)
    : CPropertySheet(caption, parent, firstPage) {
    AddPage(&m_general);
    AddPage(&m_arrays);
}

CKvNetSetupPropertySheet::~CKvNetSetupPropertySheet() = default;

bool CKvNetSetupPropertySheet::OnInitDialog() {
    SetContextHelpId(kHelpId);
    return CPropertySheet::OnInitDialog();
}
