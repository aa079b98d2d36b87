#include "platform/ControlState.h"

#include "platform/windows/MessageQueue.h"

#include <algorithm>
#include <atomic>

namespace kalvio {
namespace {

struct RoleName {
    ControlRole role;
    const char* name;
};

constexpr RoleName kRoleNames[] = {
    {ControlRole::Window, "window"},      {ControlRole::Dialog, "dialog"},
    {ControlRole::Group, "group"},        {ControlRole::Text, "text"},
    {ControlRole::Edit, "edit"},          {ControlRole::Button, "button"},
    {ControlRole::CheckBox, "check box"}, {ControlRole::RadioButton, "radio button"},
    {ControlRole::ComboBox, "combo box"}, {ControlRole::ListBox, "list box"},
    {ControlRole::Spin, "spin"},          {ControlRole::ScrollBar, "scroll bar"},
    {ControlRole::Slider, "slider"},      {ControlRole::Tabs, "tabs"},
    {ControlRole::Tree, "tree"},          {ControlRole::Progress, "progress"},
    {ControlRole::Picture, "picture"},    {ControlRole::Unknown, "control"},
};

std::atomic<std::uint64_t> g_revision{0};

ChangeObserver& Observer() {
    // Never destroyed: windows may change while the process ends.
    static ChangeObserver& observer = *new ChangeObserver;
    return observer;
}

ActOutcome Fault(ActFault fault, const CWnd& control, const char* why) {
    return {fault, Format("Control %d %s.", control.GetDlgCtrlID(), why)};
}

// What has no text of its own that says what it is.
bool WantsLabel(ControlRole role) {
    constexpr ControlRole kRoles[] = {ControlRole::Edit,     ControlRole::ComboBox,  ControlRole::ListBox,
                                      ControlRole::Spin,     ControlRole::ScrollBar, ControlRole::Slider,
                                      ControlRole::Progress, ControlRole::Tree};
    return std::ranges::find(kRoles, role) != std::end(kRoles);
}

// A control that shows no text of its own is called by the text that stands before it, unless it gave itself
// a name.
void NameChildren(ControlState& parent) {
    const ControlState* label = nullptr;
    for (ControlState& child : parent.children) {
        const bool bare = child.role == ControlRole::CheckBox && child.text.empty();
        if (child.name.empty()) {
            child.name = (bare || WantsLabel(child.role)) && label != nullptr ? label->text : child.text;
        }
        label = child.role == ControlRole::Text ? &child : label;
    }
}

ControlState Describe(const CWnd& window, std::uint64_t since) {
    ControlState state;
    window.Describe(state);
    for (const CWnd* child : window.Children()) {
        state.children.push_back(Describe(*child, since));
    }
    NameChildren(state);
    std::erase_if(state.children, [since](const ControlState& child) {
        return child.revision <= since && child.children.empty();
    });
    return state;
}

ActOutcome Reachable(const CWnd& control) {
    for (const CWnd* window = &control; window != nullptr; window = window->GetParent()) {
        if (!window->IsWindowVisible()) {
            return Fault(ActFault::Hidden, control, "is hidden");
        }
        if (!window->IsWindowEnabled() || window->IsGreyed()) {
            return Fault(ActFault::Disabled, control, "is disabled");
        }
    }
    return {};
}

struct ContextRequest {
    ActKind kind;
    unsigned message;
};

// What the menu of a control asks its window for.
constexpr ContextRequest kContextRequests[] = {
    {ActKind::SetDefault, kMessageSetDefault},
    {ActKind::ShowRange, kMessageShowRange},
};

ActAnswer Carry(CWnd& control, const UserAct& act) {
    const auto* const request = std::ranges::find(kContextRequests, act.kind, &ContextRequest::kind);
    if (request == std::end(kContextRequests)) {
        return control.Act(act);
    }
    if (control.GetParent() == nullptr) {
        return ActAnswer::NotPossible;
    }
    control.GetParent()->Send(request->message, static_cast<WPARAM>(control.GetDlgCtrlID()), 0);
    return ActAnswer::Done;
}

CString DumpedState(const ControlState& state) {
    struct Flag {
        bool set;
        const char* word;
    };
    const Flag flags[] = {
        {!state.visible, " hidden"},     {!state.enabled, " disabled"},
        {state.greyed, " greyed"},       {state.focused, " focus"},
        {state.checked != 0, " ticked"}, {state.readOnly && state.role == ControlRole::Edit, " read-only"}};
    CString text;
    for (const Flag& flag : flags) {
        text += flag.set ? flag.word : "";
    }
    text += state.high != 0 || state.low != 0 ? Format(" %d of %d..%d", state.position, state.low, state.high)
                                              : CString();
    text += state.image != kNothingSelected ? Format(" image %d", state.image) : CString();
    text += state.textColor != kDefaultColor && state.textColor != 0 ? Format(" text #%06X", state.textColor)
                                                                     : CString();
    text += state.backColor != kDefaultColor ? Format(" on #%06X", state.backColor) : CString();
    return text;
}

CString DumpedItems(const ControlState& state) {
    CString text;
    for (std::size_t i = 0; i < state.items.size(); ++i) {
        const bool selected = static_cast<int>(i) == state.selected;
        text += (text.empty() ? "" : "|") + (selected ? "*" + state.items[i].text : state.items[i].text);
    }
    return text.empty() ? text : " {" + text + "}";
}

// Texts of controls may have several lines and columns.
CString OneLine(CString text) {
    for (const auto& [from, to] : {std::pair("\n", "\\n"), std::pair("\t", "\\t")}) {
        for (std::size_t at = text.find(from); at != CString::npos; at = text.find(from, at + 2)) {
            text.replace(at, 1, to);
        }
    }
    return text;
}

void Dump(const ControlState& state, int depth, CString& text) {
    text += CString(static_cast<std::size_t>(depth) * 2, ' ');
    text += Format("%d %s", state.id != 0 ? state.id : state.templateId, NameOf(state.role));
    text += state.name.empty() || state.name == state.text ? CString() : " (" + OneLine(state.name) + ")";
    text += " \"" + OneLine(state.text) + "\"" + OneLine(DumpedItems(state)) + DumpedState(state) + "\n";
    for (const ControlState& child : state.children) {
        Dump(child, depth + 1, text);
    }
}

// Lets the edit that holds the focus tell its window what was typed, when an act goes elsewhere.
ActOutcome LeaveFocus(CWnd& window, const CWnd& next) {
    for (CWnd* child : window.Children()) {
        if (child != &next && child->HasFocus() && child->HasUncommittedText() && !child->CommitText()) {
            return Fault(ActFault::Refused, *child, "does not take what was typed");
        }
        if (ActOutcome outcome = LeaveFocus(*child, next); !outcome.Ok()) {
            return outcome;
        }
    }
    return {};
}

} // namespace

const char* NameOf(ControlRole role) {
    return std::ranges::find(kRoleNames, role, &RoleName::role)->name;
}

ControlState DescribeWindow(const CWnd& window) {
    // Every window has a revision above 0, so that all of them stand in the answer.
    return Describe(window, 0);
}

ControlState DescribeChanges(const CWnd& window, std::uint64_t since) {
    return Describe(window, since);
}

CString DumpWindow(const ControlState& window) {
    CString text;
    Dump(window, 0, text);
    return text;
}

ControlState SnapshotOf(WindowHandle window, std::uint64_t since) {
    ControlState state;
    const std::function<void(CWnd&)> take = [&](CWnd& found) { state = Describe(found, since); };
    SendToWindow(window, kMessageCall, 0, reinterpret_cast<LPARAM>(&take));
    return state;
}

CWnd* FindControl(const CWnd& window, int id) {
    for (CWnd* child : window.Children()) {
        CWnd* found = child->GetDlgCtrlID() == id ? child : FindControl(*child, id);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

std::uint64_t CurrentRevision() {
    return g_revision.load();
}

std::uint64_t NoteChange(WindowHandle window) {
    const std::uint64_t revision = g_revision.fetch_add(1) + 1;
    if (Observer()) {
        Observer()(window, revision);
    }
    return revision;
}

void ObserveChanges(ChangeObserver observer) {
    Observer() = std::move(observer);
}

ActOutcome PerformAct(CWnd& window, const UserAct& act) {
    const RunningHandler running;
    CWnd* const control = act.control == 0 ? &window : FindControl(window, act.control);
    if (control == nullptr) {
        return {ActFault::NoSuchControl, Format("There is no control %d.", act.control)};
    }
    if (ActOutcome reachable = Reachable(*control); !reachable.Ok()) {
        return reachable;
    }
    if (ActOutcome left = LeaveFocus(window, *control); !left.Ok()) {
        return left;
    }
    if (act.control != 0) {
        control->SetFocus();
    }
    if (act.kind == ActKind::Focus) {
        return {};
    }
    switch (Carry(*control, act)) {
    case ActAnswer::Done:
        return {};
    case ActAnswer::Refused:
        return {ActFault::Refused, Format("Control %d: the change was not accepted.", act.control)};
    case ActAnswer::NotPossible:
        break;
    }
    return {ActFault::NotPossible, Format("Control %d cannot do that.", act.control)};
}

} // namespace kalvio
