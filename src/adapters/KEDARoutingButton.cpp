#include "adapters/KEDARoutingButton.h"

namespace {

using kalvio::DrawnItem;

constexpr int kStates = 3;
constexpr int kWidth = 18; // dialog units
constexpr int kHeight = 14;
constexpr int kRound = 4; // the letter stands so far from the left, the frame one unit inside

struct StateImages {
    int plain;
    int framed;
    const char* letter;
    std::uint32_t color;
};

// By state.
constexpr StateImages kImages[kStates] = {
    {1, 0, "-", 0x404040},
    {2, 3, "A", 0x0060C0},
    {4, 5, "B", 0xC04000},
};

// A state that no button has looks like the first.
const StateImages& ImagesOf(int state) {
    return kImages[state >= 0 && state < kStates ? state : 0];
}

std::vector<DrawnItem> Draw(const StateImages& state, bool framed) {
    std::vector<DrawnItem> items{
        {DrawnItem::Kind::Box, {0, 0, kWidth, kHeight}, {}, 0x000000},
        {DrawnItem::Kind::Text, {kRound, 2, kWidth - kRound, kHeight - 2}, state.letter, state.color}};
    if (framed) {
        items.push_back({DrawnItem::Kind::Box, {2, 2, kWidth - 2, kHeight - 2}, {}, 0x808080});
    }
    return items;
}

} // namespace

const kalvio::ImageList& kalvio::RoutingImages() {
    static const kalvio::ImageList list = [] {
        kalvio::ImageList made{kWidth, kHeight, std::vector<std::vector<DrawnItem>>(2 * kStates)};
        for (const StateImages& state : kImages) {
            made.images[static_cast<std::size_t>(state.plain)] = Draw(state, false);
            made.images[static_cast<std::size_t>(state.framed)] = Draw(state, true);
        }
        return made;
    }();
    return list;
}

void CKEDARoutingButton::SetImageList(const kalvio::ImageList* list) {
    m_images = list;
    if (list != nullptr) {
        const CRect& now = GetWindowRect();
        MoveWindow({now.left, now.top, now.left + list->width, now.top + list->height});
    }
}

int CKEDARoutingButton::ImageToDraw() const {
    const StateImages& state = ImagesOf(GetCheck());
    return HasFocus() ? state.framed : state.plain;
}

void CKEDARoutingButton::Describe(kalvio::ControlState& state) const {
    CButton::Describe(state);
    state.name = GetTooltip();
    state.image = ImageToDraw();
    state.text = ImagesOf(GetCheck()).letter;
    if (m_images != nullptr) {
        state.drawing = m_images->images[static_cast<std::size_t>(state.image)];
    }
}

kalvio::ActAnswer CKEDARoutingButton::Act(const kalvio::UserAct& act) {
    const bool pressed = act.kind == kalvio::ActKind::Click ||
                         (act.kind == kalvio::ActKind::Key && act.value == kalvio::kKeySpace);
    if (pressed) {
        SetCheck((GetCheck() + 1) % kStates);
    }
    return CButton::Act(act);
}
