#pragma once

// A window that shows how far a long operation is, and lets the user cancel it.

#include "platform/Dialog.h"
#include "platform/Export.h"

namespace kalvio {

// What a long operation tells of its progress; a program may show it its own way. User-interface thread.
class KALVIO_API ProgressDisplay {
public:
    virtual ~ProgressDisplay() = default;
    virtual void GoModal(const CString& title) = 0; // comes up; the main window waits meanwhile
    virtual void SetRange(int low, int high, int step) = 0;
    virtual void SetText(const CString& text) = 0;
    virtual void SetPos(int position) = 0;
    virtual void StepIt() = 0; // one step on
    // Lets the program's messages run once; whether Esc counts as the cancel button from now on.
    virtual void PeekAndPump(bool cancelOnEscape) = 0;
    [[nodiscard]] virtual bool Cancelled() const = 0;
};

inline constexpr int kProgressDialog = 1029;
inline constexpr int kCtrlProgressText = 2590;
inline constexpr int kCtrlProgressBar = 2591;

} // namespace kalvio

// The host's progress window. The user interface is told of it as of any dialog; its IDCANCEL button cancels,
// and it stays until it is destroyed. Used on one thread.
class KALVIO_API CProgressWnd : public CDialog, public kalvio::ProgressDisplay {
public:
    // Not on the screen yet. The parent (null: none) is disabled while the window is modal.
    CProgressWnd(CWnd* parent, const CString& caption);
    ~CProgressWnd() override;

    void GoModal(const CString& title) override;
    void SetRange(int low, int high, int step) override; // the position goes to the low end
    void SetText(const CString& text) override;          // what is being done; GetText gives the caption
    void SetPos(int position) override;                  // kept within the range
    void StepIt() override;
    void PeekAndPump(bool cancelOnEscape) override;
    [[nodiscard]] bool Cancelled() const override { return m_cancelled; }

    [[nodiscard]] const CString& Title() const { return m_title; }
    [[nodiscard]] const CString& ProgressText() const { return m_text; }
    [[nodiscard]] int Low() const { return m_low; }
    [[nodiscard]] int High() const { return m_high; }
    [[nodiscard]] int Pos() const { return m_position; }

protected:
    void OnCommand(int controlId) override;

private:
    void ShowPosition();

    CWnd* m_owner;
    CString m_title;
    CString m_text;
    int m_low = 0;
    int m_high = 100;
    int m_step = 1;
    int m_position = 0;
    bool m_ownerWasEnabled = false;
    bool m_cancelOnEscape = true;
    bool m_cancelled = false;
};
