#include "reference_host/windows/PlacedControls.h"

#include <algorithm>

namespace kalvio::reference_host {
namespace {

void Place(const ControlState& window, CPoint corner, std::vector<PlacedControl>& placed) {
    if (!window.visible) {
        return;
    }
    for (const ControlState& child : window.children) {
        if (!child.visible) {
            continue;
        }
        const CRect where{child.rect.left + corner.x, child.rect.top + corner.y, child.rect.right + corner.x,
                          child.rect.bottom + corner.y};
        const bool holder = child.role == ControlRole::Dialog || child.role == ControlRole::Unknown ||
                            child.role == ControlRole::Window;
        if (!holder) {
            placed.push_back({&child, where});
        }
        Place(child, {where.left, where.top}, placed);
    }
}

} // namespace

std::vector<PlacedControl> PlaceControls(const ControlState& window) {
    std::vector<PlacedControl> placed;
    Place(window, {}, placed);
    return placed;
}

CPoint SizeOf(const std::vector<PlacedControl>& controls) {
    CPoint size;
    for (const PlacedControl& control : controls) {
        size.x = std::max(size.x, control.where.right);
        size.y = std::max(size.y, control.where.bottom);
    }
    return size;
}

std::vector<CString> SplitText(const CString& text, char mark) {
    std::vector<CString> parts(1);
    for (const char letter : text) {
        if (letter == mark) {
            parts.emplace_back();
        } else {
            parts.back() += letter;
        }
    }
    return parts;
}

} // namespace kalvio::reference_host
