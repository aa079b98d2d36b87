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
        const CRect seen = ShutRect(child);
        const CRect where{seen.left + corner.x, seen.top + corner.y, seen.right + corner.x,
                          seen.bottom + corner.y};
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

std::vector<CString> WrapText(const CString& text, int letters) {
    std::vector<CString> lines;
    for (const CString& line : SplitText(text, '\n')) {
        lines.emplace_back();
        for (const CString& word : SplitText(line, ' ')) {
            const bool first = lines.back().empty();
            if (!first && lines.back().size() + 1 + word.size() > static_cast<std::size_t>(letters)) {
                lines.push_back(word);
            } else {
                lines.back() += (first ? "" : " ") + word;
            }
        }
    }
    return lines;
}

} // namespace kalvio::reference_host
