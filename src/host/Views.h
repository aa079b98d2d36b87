#pragma once

// Views, frames and the print view of the host, as far as documents meet them. User-interface thread.

#include "platform/Controls.h"
#include "platform/Window.h"

#include <vector>

// A view of a document: told by UpdateViews while it lives, tells its document through OnViewChanged.
class KALVIO_API CView : public CWnd {
public:
    CView();
    explicit CView(int controlId, CWnd* parent = nullptr);
    ~CView() override;
    // A field changed: the hint is a control id, or -1 for everything. The sender, which is not told itself,
    // and the object are null when the change came from another thread.
    virtual void OnUpdate(CView* sender, int hint, void* object);
};

// A window that holds a view; its type lets the host find an open one.
class KALVIO_API CTypedFrameWnd : public CWnd {
public:
    CTypedFrameWnd();
    explicit CTypedFrameWnd(int controlId, CWnd* parent = nullptr);
    ~CTypedFrameWnd() override;
    // The panel is -1 when the window shows all of them.
    void SetWindowType(int type, int panel);
    [[nodiscard]] int WindowType() const { return m_type; }
    [[nodiscard]] int Panel() const { return m_panel; }

private:
    int m_type = 0;
    int m_panel = -1;
};

// What a document prints: titles, empty lines and fields with their values.
class KALVIO_API CPrintView : public CView {
public:
    // An empty line has no text at all.
    struct Line {
        CString label;
        CString value;
        CString unit;
        bool title = false;
    };
    void PrintTitle(const CString& title);
    void PrintEmptyLine();
    void PrintField(const CString& label, const CString& value, const CString& unit);
    [[nodiscard]] const std::vector<Line>& Lines() const { return m_lines; }

private:
    std::vector<Line> m_lines;
};

// "Yes"/"No" and "On"/"Off" of the host. Any thread.
[[nodiscard]] KALVIO_API CString GetYesNoText(bool value);
[[nodiscard]] KALVIO_API CString GetOnOffText(bool value);

namespace kalvio {

// Tells every view but the sender, in the order they were made.
void TellViews(CView* sender, int hint, void* object);
// An open frame of a type, the oldest first; null when there is none.
[[nodiscard]] CTypedFrameWnd* FindOpenFrame(int type);

} // namespace kalvio
