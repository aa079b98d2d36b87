#pragma once

// What every window's layout has to be: no two controls on one another, all inside, each that a user works
// with called something, and the tab key going as the eye does.

#include "platform/ControlState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kalvio::test {

class LayoutCheck {
public:
    // The faults of a window and of the panels in it, one line each.
    static std::vector<std::string> FaultsOf(const ControlState& window) {
        LayoutCheck check;
        check.Look(window);
        return check.m_faults;
    }

private:
    using Role = ControlRole;
    static bool Is(const ControlState& control, std::initializer_list<Role> roles) {
        return std::ranges::find(roles, control.role) != roles.end();
    }
    static bool Holds(const ControlState& control) { return Is(control, {Role::Group, Role::Tabs}); }
    static bool IsForUsers(const ControlState& control) {
        return Is(control, {Role::Edit, Role::Button, Role::CheckBox, Role::RadioButton, Role::ComboBox,
                            Role::ListBox, Role::ScrollBar, Role::Slider, Role::Tree});
    }
    static bool Within(const CRect& in, const CRect& out) {
        return in.left >= out.left && in.right <= out.right && in.top >= out.top && in.bottom <= out.bottom;
    }
    static bool Overlap(const ControlState& first, const ControlState& second) {
        const CRect a = ShutRect(first);
        const CRect b = ShutRect(second);
        const bool around = (Holds(first) && Within(b, a)) || (Holds(second) && Within(a, b));
        return !around && a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
    }
    // Whether the eye comes to `b` after `a`: in one line to the right of it, else below.
    static bool Follows(const CRect& a, const CRect& b) {
        const int common = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
        return 2 * common > std::min(a.bottom - a.top, b.bottom - b.top) ? b.left >= a.left : b.top >= a.top;
    }

    void Fault(const ControlState& control, const std::string& what) {
        m_faults.push_back(std::to_string(control.id) + " \"" + control.text + "\" " + what);
    }
    void Look(const ControlState& window) {
        std::vector<ControlState> shown = window.children;
        std::erase_if(shown, [](const ControlState& child) { return !child.visible; });
        const CRect& rect = window.rect;
        for (std::size_t i = 0; i < shown.size(); ++i) {
            const CRect place = ShutRect(shown[i]);
            if (place.left >= place.right || place.top >= place.bottom ||
                !Within(place, {0, 0, rect.right - rect.left, rect.bottom - rect.top})) {
                Fault(shown[i], "is not inside");
            }
            if (IsForUsers(shown[i]) && shown[i].name.empty()) {
                Fault(shown[i], "has no name");
            }
            for (std::size_t j = 0; j < i; ++j) {
                if (Overlap(shown[j], shown[i])) {
                    Fault(shown[i], "overlaps " + std::to_string(shown[j].id) + " \"" + shown[j].text + "\"");
                }
            }
            Look(shown[i]);
        }
        LookAtOrder(shown);
    }
    // Of controls in different groups the groups follow one another.
    void LookAtOrder(const std::vector<ControlState>& shown) {
        const auto groupOf = [&shown](const ControlState& control) {
            const auto group = std::ranges::find_if(shown, [&](const ControlState& each) {
                return Holds(each) && Within(ShutRect(control), each.rect);
            });
            return group == shown.end() ? &control : &*group;
        };
        const ControlState* last = nullptr;
        for (const ControlState& control : shown) {
            if (!IsForUsers(control)) {
                continue;
            }
            const bool together = last != nullptr && groupOf(*last) == groupOf(control);
            if (last != nullptr && !Follows(ShutRect(together ? *last : *groupOf(*last)),
                                            ShutRect(together ? control : *groupOf(control)))) {
                Fault(control, "comes too late after " + std::to_string(last->id));
            }
            last = &control;
        }
    }

    std::vector<std::string> m_faults;
};

inline void ExpectSoundLayout(const ControlState& window) {
    for (const std::string& fault : LayoutCheck::FaultsOf(window)) {
        ADD_FAILURE() << fault;
    }
}

} // namespace kalvio::test
