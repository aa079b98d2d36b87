#pragma once

// Property sheets: pages behind tabs that are applied together. User-interface thread.

#include "platform/Dialog.h"
#include "platform/Export.h"

#include <vector>

class CPropertySheet;

inline constexpr int kSheetTabs = 0x3020; // the control ids of a sheet's tabs and of its Apply button
inline constexpr int kSheetApply = 0x3021;

// One page: a dialog within its sheet.
class KALVIO_API CPropertyPage : public CDialog {
public:
    // The template lives as long as the page.
    explicit CPropertyPage(const kalvio::DialogTemplate& layout) : m_layout(layout) {}
    ~CPropertyPage() override;

    // The page comes to the front, leaves it (false each: stays as it was), is applied (false: the sheet
    // stays open and nothing further is applied), is cancelled.
    virtual bool OnSetActive() { return true; }
    virtual bool OnKillActive() { return true; }
    virtual bool OnApply();
    virtual void OnCancel() {}
    // Whether the sheet has something to apply; every page together decides whether Apply is enabled.
    void SetModified(bool modified = true);
    [[nodiscard]] bool IsModified() const { return m_modified; }
    [[nodiscard]] CPropertySheet* Sheet() const { return m_sheet; }

protected:
    void OnCommand(int controlId) override; // nothing: a page goes with its sheet only

private:
    friend class CPropertySheet;

    const kalvio::DialogTemplate& m_layout;
    CPropertySheet* m_sheet = nullptr;
    bool m_modified = false;
};

// The sheet: tabs, OK, Cancel and Apply. A page is created when it first comes to the front.
class KALVIO_API CPropertySheet : public CDialog {
public:
    explicit CPropertySheet(const CString& caption, CWnd* parent = nullptr, int firstPage = 0);
    explicit CPropertySheet(unsigned captionId, CWnd* parent = nullptr, int firstPage = 0);
    ~CPropertySheet() override;

    void AddPage(CPropertyPage* page); // before DoModal; the page outlives the sheet's showing
    // Shows the sheet until OK, Cancel or Esc. IDOK or IDCANCEL; IDCANCEL too when the first page could not
    // start.
    int DoModal();
    // Shows the sheet and returns, without disabling anything: false when it exists or the first page could
    // not start.
    bool CreateModeless();
    [[nodiscard]] int GetActiveIndex() const { return m_active; }
    [[nodiscard]] CPropertyPage* GetPage(int index) const;
    // False when there is no such page or a page does not let it happen.
    bool SetActivePage(int index);

    int OnControlChanged(int controlId) override;

protected:
    bool OnInitDialog() override;
    void OnCommand(int controlId) override;

private:
    friend class CPropertyPage;

    bool Show(CPropertyPage& page);
    void End(int result);
    void LeavePages(int result);
    bool Apply();
    void ShowModified();

    CString m_caption;
    CWnd* m_parentWindow;
    int m_active;
    bool m_modal = false;
    std::vector<CPropertyPage*> m_pages;
};
