#pragma once

// Acts on a window and looks at it, as short as tables want them.

#include "host/Views.h"
#include "platform/ControlState.h"

#include <utility>

namespace kalvio::test {

class WindowActs {
public:
    ActFault Act(ActKind kind, int id, const CString& text = {}, int value = 0) const {
        return PerformAct(*frame, {kind, id, text, value}).fault;
    }
    // Types and enters.
    ActFault Enter(int id, const CString& text) const {
        const ActFault typed = Act(ActKind::Type, id, text);
        return typed == ActFault::None ? Act(ActKind::Enter, id) : typed;
    }
    // Chooses by the item's text; NotPossible when it is not offered.
    ActFault Choose(int id, const CString& text) const {
        const auto* items = dynamic_cast<const CItemControl*>(FindControl(*frame, id));
        int index = 0;
        while (items != nullptr && index < items->GetCount() && items->GetLBText(index) != text) {
            ++index;
        }
        return Act(ActKind::Choose, id, {}, index);
    }
    [[nodiscard]] CString TextOf(int id) const { return FindControl(*frame, id)->GetText(); }
    [[nodiscard]] CString Dump() const { return DumpWindow(DescribeWindow(*frame)); }

    CTypedFrameWnd* frame = nullptr;
};

} // namespace kalvio::test
