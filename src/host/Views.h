#pragma once

// Views, frames and the print view of the host, as far as documents meet them. User-interface thread.

#include "platform/Controls.h"
#include "platform/DrawingContext.h"
#include "platform/Window.h"

#include <functional>
#include <vector>

class CTypedFrameWnd;

// A view of a document: told by UpdateViews while it lives, tells its document through OnViewChanged.
class KALVIO_API CView : public CWnd {
public:
    CView();
    explicit CView(int controlId, CWnd* parent = nullptr);
    ~CView() override;
    // A field changed: the hint is a control id, or -1 for everything. The sender, which is not told itself,
    // and the object are null when the change came from another thread.
    virtual void OnUpdate(CView* sender, int hint, void* object);
    // Stands in a window from now on (null: in none).
    void PlaceIn(CWnd* window) { SetParent(window); }
    // The frame that holds the view, or null.
    [[nodiscard]] CTypedFrameWnd* GetParentFrame() const;
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
    // Called when the user closes the frame; who owns it hides it and takes it away once no handler of it
    // runs. Without one the frame just hides.
    void OnClose(std::function<void()> close) { m_onClose = std::move(close); }
    // What the user or the program does; nothing when it is closed already.
    void Close();
    [[nodiscard]] bool IsClosed() const { return m_closed; }
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override; // Close

private:
    int m_type = 0;
    int m_panel = -1;
    bool m_closed = false;
    std::function<void()> m_onClose;
};

// What a document prints: titles, empty lines, fields with their values and free lines of columns.
class KALVIO_API CPrintView : public CView {
public:
    using CView::CView;
    // An empty line has no text at all. A free line is a label with tabs in it.
    struct Line {
        CString label;
        CString value;
        CString unit;
        bool title = false;
    };
    static constexpr int kLeftMargin = 300; // of print-outs, in device units

    // Prints the view: its tab stops, then what it has to say. Also recorded in Lines.
    void Print(CDC& context);
    // What a view prints, and on which tab stops; the context is that of Print, or null when only the lines
    // are wanted.
    virtual void PrintDetails(CDC* context);
    virtual void SetPrintTabStops(CDC* context);

    void PrintTitle(const CString& title);
    void PrintEmptyLine();
    void PrintField(const CString& label, const CString& value, const CString& unit);
    void PrintText(const CString& columns);
    [[nodiscard]] const std::vector<Line>& Lines() const { return m_lines; }

private:
    void Record(Line line);

    std::vector<Line> m_lines;
    CDC* m_context = nullptr; // while printing
};

// "Yes"/"No" and "On"/"Off" of the host. Any thread.
[[nodiscard]] KALVIO_API CString GetYesNoText(bool value);
[[nodiscard]] KALVIO_API CString GetOnOffText(bool value);

namespace kalvio {

// Tells every view but the sender, in the order they were made.
void TellViews(CView* sender, int hint, void* object);
// An open frame of a type, the oldest first; null when there is none.
[[nodiscard]] CTypedFrameWnd* FindOpenFrame(int type);
// Every open frame, the oldest first. User-interface thread.
[[nodiscard]] KALVIO_API std::vector<CTypedFrameWnd*> OpenFrames();

} // namespace kalvio
