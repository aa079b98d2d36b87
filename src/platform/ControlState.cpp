#include "platform/ControlState.h"

#include "platform/MessageQueue.h"

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

// A control that shows no text of its own is called by the text that stands before it.
void NameChildren(ControlState& parent) {
    const ControlState* label = nullptr;
    for (ControlState& child : parent.children) {
        const bool labelled = child.role != ControlRole::Text && child.role != ControlRole::Button &&
                              child.role != ControlRole::CheckBox && child.role != ControlRole::RadioButton;
        child.name = labelled && label != nullptr ? label->text : child.text;
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

CWnd* FindControl(CWnd& window, int id) {
    if (id == 0) {
        return &window;
    }
    for (CWnd* child : window.Children()) {
        CWnd* found = child->GetDlgCtrlID() == id ? child : FindControl(*child, id);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
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
    CWnd* const control = FindControl(window, act.control);
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
    switch (control->Act(act)) {
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
