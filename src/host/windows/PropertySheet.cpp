#include "host/PropertySheet.h"

#include "platform/Text.h"

#include <algorithm>

namespace {

using kalvio::ControlKind;

constexpr kalvio::ControlTemplate kSheetControls[] = {
    {ControlKind::Tabs, kSheetTabs, "", {4, 4, 372, 16}},
    {ControlKind::PushButton, IDOK, "OK", {208, 262, 258, 276}},
    {ControlKind::PushButton, IDCANCEL, "Cancel", {264, 262, 314, 276}},
    {ControlKind::PushButton, kSheetApply, "Apply", {320, 262, 370, 276}},
};
// Below the tabs; pages are laid out from their own corner.
constexpr int kPageLeft = 6;
constexpr int kPageTop = 18;

constexpr kalvio::DialogTemplate kSheetLayout{0, "", {0, 0, 376, 280}, kSheetControls};

} // namespace

CPropertyPage::~CPropertyPage() = default;

bool CPropertyPage::OnApply() {
    SetModified(false);
    return true;
}

void CPropertyPage::SetModified(bool modified) {
    m_modified = modified;
    if (m_sheet != nullptr) {
        m_sheet->ShowModified();
    }
}

void CPropertyPage::OnCommand(int) {}

CPropertySheet::CPropertySheet(const CString& caption, CWnd* parent, int firstPage)
    : m_caption(caption), m_parentWindow(parent), m_active(firstPage) {}

CPropertySheet::CPropertySheet(unsigned captionId, CWnd* parent, int firstPage)
    : CPropertySheet(kalvio::LoadText(captionId), parent, firstPage) {}

CPropertySheet::~CPropertySheet() = default;

void CPropertySheet::AddPage(CPropertyPage* page) {
    page->m_sheet = this;
    m_pages.push_back(page);
}

CPropertyPage* CPropertySheet::GetPage(int index) const {
    return index >= 0 && index < static_cast<int>(m_pages.size()) ? m_pages[static_cast<std::size_t>(index)]
                                                                  : nullptr;
}

int CPropertySheet::DoModal() {
    m_modal = true;
    const int result = CDialog::DoModal(kSheetLayout, m_parentWindow);
    m_modal = false;
    LeavePages(result);
    return result;
}

bool CPropertySheet::CreateModeless() {
    return Create(kSheetLayout);
}

// A modal sheet leaves its pages once no handler of theirs runs.
void CPropertySheet::End(int result) {
    EndDialog(result);
    if (!m_modal) {
        LeavePages(result);
    }
}

void CPropertySheet::LeavePages(int result) {
    for (CPropertyPage* page : m_pages) {
        if (result != IDOK && page->Exists()) {
            page->OnCancel();
        }
        page->DestroyWindow();
    }
}

bool CPropertySheet::OnInitDialog() {
    SetText(m_caption);
    auto* tabs = dynamic_cast<CTabCtrl*>(GetDlgItem(kSheetTabs));
    for (const CPropertyPage* page : m_pages) {
        tabs->AddString(page->m_layout.title);
    }
    tabs->SetCurSel(m_active);
    ShowModified();
    CPropertyPage* const first = GetPage(m_active);
    return first != nullptr && Show(*first);
}

bool CPropertySheet::Show(CPropertyPage& page) {
    if (!page.Exists()) {
        if (!page.CreateControls(page.m_layout, this)) {
            return false;
        }
        const CRect& size = page.m_layout.rect;
        page.MoveWindow(
            {kPageLeft, kPageTop, kPageLeft + size.right - size.left, kPageTop + size.bottom - size.top});
    }
    page.ShowWindow(page.OnSetActive());
    return page.IsWindowVisible();
}

bool CPropertySheet::SetActivePage(int index) {
    CPropertyPage* const next = GetPage(index);
    CPropertyPage* const now = GetPage(m_active);
    if (next == nullptr || (next != now && !now->OnKillActive())) {
        return false;
    }
    if (next != now) {
        if (!Show(*next)) {
            return false;
        }
        now->ShowWindow(false);
        m_active = index;
    }
    dynamic_cast<CTabCtrl*>(GetDlgItem(kSheetTabs))->SetCurSel(index);
    return true;
}

int CPropertySheet::OnControlChanged(int controlId) {
    auto* tabs = dynamic_cast<CTabCtrl*>(GetDlgItem(kSheetTabs));
    if (controlId != kSheetTabs || SetActivePage(tabs->GetCurSel())) {
        return 1;
    }
    tabs->SetCurSel(m_active);
    return 0;
}

void CPropertySheet::OnCommand(int controlId) {
    if (controlId == kSheetApply) {
        Apply();
    } else if (controlId == IDCANCEL || (controlId == IDOK && Apply())) {
        End(controlId);
    }
}

bool CPropertySheet::Apply() {
    return GetPage(m_active)->OnKillActive() && std::ranges::all_of(m_pages, [](CPropertyPage* page) {
               return !page->Exists() || page->OnApply();
           });
}

void CPropertySheet::ShowModified() {
    if (CWnd* const apply = GetDlgItem(kSheetApply); apply != nullptr) {
        apply->EnableWindow(std::ranges::any_of(m_pages, &CPropertyPage::IsModified));
    }
}
