#pragma once

// Windows and messages: every window belongs to the thread that created it, and each thread has one queue
// of posted messages and timers. Controls are models, not pixels.

#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/MacroNamesBegin.h"

using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

inline constexpr unsigned WM_TIMER = 0x0113;
inline constexpr unsigned WM_APP = 0x8000;
// From a control to its window; wParam: the control's id.
inline constexpr unsigned kMessageCommand = 0x0111;
inline constexpr unsigned kMessageDoubleClick = 0x0203;
// From whoever faces the user to the window of a control, wParam: the control's id. Asks to put the control
// back to its default; to show the control's range.
inline constexpr unsigned kMessageSetDefault = 0x8015;
inline constexpr unsigned kMessageShowRange = 0x8016;
// From a control that was changed (answer: whether the change is accepted), and then of its hardware.
inline constexpr unsigned kMessageControlChanged = 0x800D;
inline constexpr unsigned kMessageControlUpdateHardware = 0x800E;

// A window's handle: stays valid as a value after the window is gone; messages to it then go nowhere.
enum class WindowHandle : std::uint32_t { None = 0 };

struct CPoint {
    int x = 0;
    int y = 0;
};

struct CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const CRect&) const = default;
};

namespace kalvio {

struct ControlState;
struct UserAct;

// What a control says of an act: done, not accepted by its window, or nothing that it can do.
enum class ActAnswer { Done, Refused, NotPossible };

// Gives out the next revision and tells the observer of changes. Any thread.
KALVIO_API std::uint64_t NoteChange(WindowHandle window);

} // namespace kalvio

// The base of every window and control. Created, used and destroyed on one thread, but for the handle,
// which any thread may post to.
class KALVIO_API CWnd {
public:
    CWnd();
    explicit CWnd(int controlId, CWnd* parent = nullptr);
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    [[nodiscard]] WindowHandle Handle() const { return m_handle; }
    [[nodiscard]] int GetDlgCtrlID() const { return m_controlId; }
    void SetDlgCtrlID(int controlId) { m_controlId = controlId; }
    [[nodiscard]] CWnd* GetParent() const { return m_parent; }
    [[nodiscard]] const std::vector<CWnd*>& Children() const { return m_children; }
    [[nodiscard]] CWnd* GetDlgItem(int controlId) const; // a child, or null

    virtual void SetText(const CString& text) { Set(m_text, text); }
    [[nodiscard]] virtual CString GetText() const { return m_text; }
    void MoveWindow(const CRect& rect) { Set(m_rect, rect); }
    [[nodiscard]] const CRect& GetWindowRect() const { return m_rect; }
    void EnableWindow(bool on) { Set(m_enabled, on); }
    [[nodiscard]] bool IsWindowEnabled() const { return m_enabled; }
    void SetGreyed(bool on) { Set(m_greyed, on); }
    [[nodiscard]] bool IsGreyed() const { return m_greyed; }
    void ShowWindow(bool on) { Set(m_visible, on); }
    [[nodiscard]] bool IsWindowVisible() const { return m_visible; }
    void SetFocus(); // takes the keyboard focus of its thread
    [[nodiscard]] bool HasFocus() const;
    void SetTooltip(const CString& text) { Set(m_tooltip, text); }
    [[nodiscard]] const CString& GetTooltip() const { return m_tooltip; }

    // Raised by every change of this window itself, across all windows.
    [[nodiscard]] std::uint64_t Revision() const { return m_revision; }
    // Fills in what the window is, without its children; use kalvio::DescribeWindow.
    virtual void Describe(kalvio::ControlState& state) const;
    // Does what a user does to this window; use kalvio::PerformAct, which checks that a user can.
    virtual kalvio::ActAnswer Act(const kalvio::UserAct& act);
    // Text that was typed and that the window was not told of yet; CommitText tells it, and is false when it
    // is not accepted.
    [[nodiscard]] virtual bool HasUncommittedText() const { return false; }
    virtual bool CommitText() { return true; }

    // A control of this window was changed by the user: 1 when the change is accepted, after which the
    // hardware may be told; 0 when it is not, and the control was put back. By default the parent is asked,
    // and accepted when there is none.
    virtual int OnControlChanged(int controlId);
    virtual void OnControlUpdateHardware(int controlId);
    // Whether this window hears of its buttons as commands (dialogs do).
    [[nodiscard]] virtual bool TakesCommands() const { return false; }

    // Handles a message sent or dispatched to this window, on its own thread.
    virtual LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam);

    // kalvio::SendToWindow and PostToWindow to this window.
    LRESULT Send(unsigned message, WPARAM wParam, LPARAM lParam);
    bool Post(unsigned message, WPARAM wParam, LPARAM lParam);

    // Former names, kept for programs that use them.
    void SetWindowText(const CString& text) { SetText(text); }
    [[nodiscard]] CString GetWindowText() const { return GetText(); }
    LRESULT SendMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
        return Send(message, wParam, lParam);
    }
    bool PostMessage(unsigned message, WPARAM wParam, LPARAM lParam) { return Post(message, wParam, lParam); }

protected:
    void SetParent(CWnd* parent); // null: none

    // Stores a value of the window and notes the change when it is one.
    template<typename T>
    void Set(T& member, const T& value) {
        if (!(member == value)) {
            member = value;
            NoteChange();
        }
    }
    void NoteChange() { m_revision = kalvio::NoteChange(m_handle); }
    // Tells the window that this control belongs to that the user changed it, and then its hardware.
    kalvio::ActAnswer TellChanged();

private:
    WindowHandle m_handle;
    int m_controlId = 0;
    CWnd* m_parent = nullptr;
    std::vector<CWnd*> m_children;
    CString m_text;
    CString m_tooltip;
    std::uint64_t m_revision = 0;
    CRect m_rect;
    bool m_enabled = true;
    bool m_greyed = false;
    bool m_visible = true;
};

namespace kalvio {

inline constexpr std::uint32_t kShortestTimer = 1; // milliseconds

// Puts a message into the queue of the window's thread. False when the window is gone. Any thread.
KALVIO_API bool PostToWindow(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam);

// Calls the window's handler at once in its own thread; from another thread it queues the message and
// waits for the answer, and meanwhile answers what other threads send to the caller's own windows. 0 when
// the window is gone or goes away before it has answered.
KALVIO_API LRESULT SendToWindow(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam);

// At once in the window's own thread; from another thread queued without waiting. False when it is gone.
KALVIO_API bool NotifyWindow(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam);

// Former names, kept for programs that use them.
inline bool PostMessage(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam) {
    return PostToWindow(window, message, wParam, lParam);
}
inline LRESULT SendMessage(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam) {
    return SendToWindow(window, message, wParam, lParam);
}
inline bool SendNotifyMessage(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam) {
    return NotifyWindow(window, message, wParam, lParam);
}

// Dispatches every message that was in the calling thread's queue at the call, then every timer that is due,
// each once; the number dispatched.
KALVIO_API int PumpMessages();

// Waits until the calling thread's queue holds a message or a timer is due, at most that long, and
// dispatches. The number dispatched.
KALVIO_API int WaitAndPumpMessages(std::uint32_t milliseconds);

// A timer that sends WM_TIMER with its id to the window every so many milliseconds (at least
// kShortestTimer), until killed or the window goes. Periods that were missed are not made up for. Setting an
// id again starts it anew. Any thread.
KALVIO_API void SetTimer(WindowHandle window, unsigned id, std::uint32_t milliseconds);
KALVIO_API void KillTimer(WindowHandle window, unsigned id);

} // namespace kalvio

#include "platform/MacroNamesEnd.h"
