#include "platform/Json.h"
#include "reference_host/windows/WindowPictures.h"

namespace kalvio::reference_host {
namespace {

CString Rect(const CRect& rect) {
    return Format("[%d,%d,%d,%d]", rect.left, rect.top, rect.right, rect.bottom);
}

class Members {
public:
    void Add(const char* name, const CString& json) {
        m_text += (m_text.empty() ? "{" : ",") + JsonText(name) + ":" + json;
    }
    void Add(const char* name, int number) { Add(name, std::to_string(number)); }
    void AddIf(bool wanted, const char* name, const CString& json) {
        if (wanted) {
            Add(name, json);
        }
    }
    [[nodiscard]] CString Done() const { return m_text + "}"; }

private:
    CString m_text;
};

template<typename Range, typename Make>
CString List(const Range& range, Make make) {
    CString text;
    for (const auto& item : range) {
        text += (text.empty() ? "" : ",") + make(item);
    }
    return "[" + text + "]";
}

CString Color(std::uint32_t color) {
    return JsonText(Format("#%06X", color));
}

CString Item(const ControlItem& item) {
    Members members;
    members.Add("text", JsonText(item.text));
    members.Add("data", std::to_string(item.data));
    members.AddIf(item.color != kDefaultColor, "color", Color(item.color));
    return members.Done();
}

CString Drawn(const DrawnItem& item) {
    static constexpr const char* kKinds[] = {"line", "box", "text"};
    Members members;
    members.Add("kind", JsonText(kKinds[static_cast<int>(item.kind)]));
    members.Add("where", Rect(item.where));
    members.AddIf(!item.text.empty(), "text", JsonText(item.text));
    members.Add("color", Color(item.color));
    return members.Done();
}

void AddValue(const ControlState& control, Members& members) {
    const bool ranged = control.low != 0 || control.high != 0;
    members.AddIf(ranged, "low", std::to_string(control.low));
    members.AddIf(ranged, "high", std::to_string(control.high));
    members.AddIf(control.page != 0, "page", std::to_string(control.page));
    members.AddIf(ranged, "position", std::to_string(control.position));
    members.AddIf(!control.items.empty(), "items", List(control.items, Item));
    members.AddIf(!control.items.empty(), "selected",
                  control.selected == kNothingSelected ? "null" : std::to_string(control.selected));
    members.AddIf(control.image != kNothingSelected, "image", std::to_string(control.image));
    members.AddIf(!control.drawing.empty(), "drawing", List(control.drawing, Drawn));
}

CString Control(const ControlState& control) {
    Members members;
    members.Add("id", control.id);
    members.AddIf(control.templateId != 0, "template", std::to_string(control.templateId));
    members.Add("role", JsonText(NameOf(control.role)));
    members.Add("name", JsonText(control.name));
    members.Add("text", JsonText(control.text));
    members.Add("rect", Rect(control.rect));
    members.Add("enabled", control.enabled ? "true" : "false");
    members.Add("greyed", control.greyed ? "true" : "false");
    members.Add("visible", control.visible ? "true" : "false");
    members.Add("focus", control.focused ? "true" : "false");
    members.AddIf(control.readOnly, "readOnly", "true");
    members.AddIf(control.role == ControlRole::CheckBox || control.role == ControlRole::RadioButton ||
                      control.checked != 0,
                  "checked", std::to_string(control.checked));
    AddValue(control, members);
    members.AddIf(control.textColor != kDefaultColor, "textColor", Color(control.textColor));
    members.AddIf(control.backColor != kDefaultColor, "backColor", Color(control.backColor));
    members.AddIf(!control.tooltip.empty(), "tooltip", JsonText(control.tooltip));
    members.Add("revision", std::to_string(control.revision));
    members.AddIf(!control.children.empty(), "children", List(control.children, Control));
    return members.Done();
}

} // namespace

std::string WindowJson(const ControlState& window) {
    return Control(window);
}

} // namespace kalvio::reference_host
