#pragma once

// What a window or control is just now, whole: all that a screen, a test or an assistive program needs, and
// nothing of its pixels. And the one door through which a user acts on it.

#include "platform/Export.h"
#include "platform/Text.h"
#include "platform/Window.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kalvio {

// What a control is to the user.
enum class ControlRole {
    Window,
    Dialog,
    Group,
    Text,
    Edit,
    Button,
    CheckBox,
    RadioButton,
    ComboBox,
    ListBox,
    Spin,
    ScrollBar,
    Slider,
    Tabs,
    Tree,
    Progress,
    Picture,
    Unknown
};

// The name of a role for people and programs: "check box".
[[nodiscard]] KALVIO_API const char* NameOf(ControlRole role);

inline constexpr int kNothingSelected = -1;
inline constexpr std::uint32_t kDefaultColor = 0xFFFFFFFF;

struct ControlItem {
    CString text;
    std::intptr_t data = 0;
    std::uint32_t color = kDefaultColor;
    bool operator==(const ControlItem&) const = default;
};

// One step of a control that draws itself; coordinates in dialog units within the control.
struct DrawnItem {
    enum class Kind { Line, Box, Text };
    Kind kind = Kind::Line;
    CRect where;
    CString text;
    std::uint32_t color = 0;
    bool operator==(const DrawnItem&) const = default;
};

struct ControlState {
    WindowHandle handle = WindowHandle::None;
    int id = 0;
    int templateId = 0; // of a dialog
    ControlRole role = ControlRole::Unknown;
    CString name; // what an assistive program calls it: its own text, or that of the text before it
    CString text;
    CString tooltip;
    CRect rect; // dialog units, within the parent
    bool enabled = true;
    bool greyed = false;
    bool visible = true;
    bool focused = false;
    bool readOnly = false;
    int checked = 0;
    std::vector<ControlItem> items;
    int selected = kNothingSelected;
    int low = 0; // of spins, scroll bars and progress
    int high = 0;
    int page = 0;
    int position = 0;
    std::uint32_t textColor = kDefaultColor; // 0xRRGGBB
    std::uint32_t backColor = kDefaultColor;
    int image = kNothingSelected;
    std::vector<DrawnItem> drawing;
    std::uint64_t revision = 0;         // raised by every change, across all windows
    std::vector<ControlState> children; // in tab order
};

// Where a control is seen while no list hangs down: the rectangle of a combo counts its list.
[[nodiscard]] inline CRect ShutRect(const ControlState& control) {
    constexpr int kComboHeight = 12; // dialog units
    CRect rect = control.rect;
    const bool hangs = control.role == ControlRole::ComboBox && rect.bottom - rect.top > kComboHeight;
    rect.bottom = hangs ? rect.top + kComboHeight : rect.bottom;
    return rect;
}

// The whole of a window, with its children. The window's thread.
[[nodiscard]] KALVIO_API ControlState DescribeWindow(const CWnd& window);
// The same without the windows that have not changed since a revision; a parent stands in it when it or a
// descendant changed. The window's thread.
[[nodiscard]] KALVIO_API ControlState DescribeChanges(const CWnd& window, std::uint64_t since);
// One line a control, indented by its depth: id, role, name, value, items and state. For people and for
// tests.
[[nodiscard]] KALVIO_API CString DumpWindow(const ControlState& window);
// DescribeChanges from any thread: taken on the window's own, which must let its messages run. An empty state
// (no handle) when the window is gone.
[[nodiscard]] KALVIO_API ControlState SnapshotOf(WindowHandle window, std::uint64_t since = 0);
// The first control below a window with an id, or null. The window's thread.
[[nodiscard]] KALVIO_API CWnd* FindControl(const CWnd& window, int id);
// The highest revision that was given out. Any thread.
[[nodiscard]] KALVIO_API std::uint64_t CurrentRevision();

// What a user does.
enum class ActKind {
    Focus,
    Click,
    DoubleClick,
    Choose,
    Type,
    Enter,
    Key,
    Scroll,
    Close,
    SetDefault,
    ShowRange
};

// Key codes that controls know.
inline constexpr int kKeySpace = 0x20;
inline constexpr int kKeyPageUp = 0x21;
inline constexpr int kKeyPageDown = 0x22;
inline constexpr int kKeyEnd = 0x23;
inline constexpr int kKeyHome = 0x24;
inline constexpr int kKeyLeft = 0x25;
inline constexpr int kKeyUp = 0x26;
inline constexpr int kKeyRight = 0x27;
inline constexpr int kKeyDown = 0x28;

struct UserAct {
    ActKind kind = ActKind::Click;
    int control = 0; // id of the control; 0: the window itself
    CString text;    // Type: the whole new text
    int value = 0;   // Choose: the item's index; Scroll: the new position; Key: a key code
};

// Why an act was not carried out.
enum class ActFault { None, NoSuchControl, Hidden, Disabled, NotPossible, Refused };

struct ActOutcome {
    ActFault fault = ActFault::None;
    CString text; // says why
    [[nodiscard]] bool Ok() const { return fault == ActFault::None; }
};

// The one door: does to a control of a window what a user would, in the way that a message would come. A
// hidden, disabled or greyed control (or one in such a window) refuses. Clicks, choices and scrolls change
// the control and tell its window; typed text is told when the focus leaves the edit or Enter is typed, as
// any other act on the window makes it. Refused: the window did not accept the change. The window's thread;
// it may be gone afterwards.
KALVIO_API ActOutcome PerformAct(CWnd& window, const UserAct& act);

// Called after every change of any window, on the thread of the change. One at a time; null: nobody. Install
// while no other thread uses windows.
using ChangeObserver = std::function<void(WindowHandle window, std::uint64_t revision)>;
KALVIO_API void ObserveChanges(ChangeObserver observer);

} // namespace kalvio
