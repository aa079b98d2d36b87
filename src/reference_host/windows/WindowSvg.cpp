#include "platform/Text.h"
#include "platform/formats/Xml.h"
#include "reference_host/windows/PlacedControls.h"
#include "reference_host/windows/WindowPictures.h"

#include <algorithm>

namespace kalvio::reference_host {
namespace {

constexpr int kScale = 2;    // pixels a dialog unit
constexpr int kCaption = 12; // dialog units of the title bar
constexpr int kMargin = 4;
constexpr int kLetter = 4;   // about as wide as one
constexpr int kTextDrop = 7; // from the top of a line to its base
constexpr int kListLine = 8;
constexpr std::uint32_t kInk = 0x202020;
constexpr std::uint32_t kOffInk = 0x9A9A9A;
constexpr std::uint32_t kPaper = 0xFFFFFF;
constexpr std::uint32_t kFace = 0xF0F0F0;
constexpr std::uint32_t kFrame = 0x808080;
constexpr std::uint32_t kThumb = 0x6090C0;

class SvgDrawing {
public:
    explicit SvgDrawing(const ControlState& window) : m_window(window), m_controls(PlaceControls(window)) {}

    CString Draw() {
        const CPoint size = SizeOf(m_controls);
        const int width = size.x + 2 * kMargin;
        const int height = size.y + kCaption + 2 * kMargin;
        m_svg = Format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" "
                       "viewBox=\"0 0 %d %d\" font-family=\"sans-serif\" font-size=\"7\">\n",
                       width * kScale, height * kScale, width, height);
        Box({0, 0, width, height}, kFace, kFrame);
        Box({0, 0, width, kCaption}, 0x204060, 0x204060);
        Text(kMargin, kCaption - 4, m_window.text, kPaper);
        for (const bool groups : {true, false}) { // groups behind what stands in them
            for (const PlacedControl& control : m_controls) {
                if ((control.state->role == ControlRole::Group) == groups) {
                    One(*control.state, Moved(control.where));
                }
            }
        }
        return m_svg + "</svg>\n";
    }

private:
    static CRect Moved(const CRect& where) {
        return {where.left + kMargin, where.top + kMargin + kCaption, where.right + kMargin,
                where.bottom + kMargin + kCaption};
    }
    void Box(const CRect& where, std::uint32_t fill, std::uint32_t line) {
        m_svg +=
            Format("<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"#%06X\" stroke=\"#%06X\" "
                   "stroke-width=\"0.5\"/>\n",
                   where.left, where.top, where.right - where.left, where.bottom - where.top, fill, line);
    }
    void Line(const CRect& where, std::uint32_t color) {
        m_svg +=
            Format("<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" stroke=\"#%06X\" stroke-width=\"0.7\"/>\n",
                   where.left, where.top, where.right, where.bottom, color);
    }
    void Text(int x, int y, const CString& text, std::uint32_t color) {
        m_svg +=
            Format("<text x=\"%d\" y=\"%d\" fill=\"#%06X\">%s</text>\n", x, y, color, XmlText(text).c_str());
    }
    static std::uint32_t Ink(const ControlState& control) {
        const bool own = control.textColor != kDefaultColor && control.textColor != 0;
        return IsOff(control) ? kOffInk : own ? control.textColor : kInk;
    }

    void One(const ControlState& control, const CRect& where) {
        switch (control.role) {
        case ControlRole::Group:
            Box({where.left, where.top + 4, where.right, where.bottom}, kFace, kFrame);
            Caption(control, where);
            return;
        case ControlRole::Text:
            TextLines(control, where);
            return;
        case ControlRole::CheckBox:
        case ControlRole::RadioButton:
            Ticked(control, where);
            return;
        case ControlRole::ListBox:
            List(control, where);
            return;
        case ControlRole::ScrollBar:
        case ControlRole::Slider:
        case ControlRole::Progress:
            Bar(control, where);
            return;
        case ControlRole::Picture:
            Drawing(control, where, kPaper);
            return;
        default:
            Field(control, where);
            return;
        }
    }
    // Breaks the frame's line.
    void Caption(const ControlState& control, const CRect& where) {
        const int width = 4 * static_cast<int>(control.text.size());
        Box({where.left + kMargin, where.top + 2, where.left + kMargin + width, where.top + kListLine}, kFace,
            kFace);
        Text(where.left + kMargin + 2, where.top + kTextDrop, Trim(control.text), Ink(control));
    }
    void TextLines(const ControlState& control, const CRect& where) {
        int y = where.top + kTextDrop;
        const bool tall = where.bottom - where.top >= 2 * kListLine;
        const int letters = (where.right - where.left) / kLetter;
        for (const CString& line : tall ? WrapText(control.text, letters) : SplitText(control.text, '\n')) {
            Text(where.left, y, line, Ink(control));
            y += kListLine;
        }
    }
    void Ticked(const ControlState& control, const CRect& where) {
        const CRect box{where.left, where.top + 1, where.left + kListLine, where.top + 1 + kListLine};
        if (control.role == ControlRole::CheckBox) {
            Box(box, kPaper, Ink(control));
        } else {
            m_svg += Format("<circle cx=\"%d\" cy=\"%d\" r=\"4\" fill=\"#FFFFFF\" stroke=\"#%06X\" "
                            "stroke-width=\"0.5\"/>\n",
                            box.left + 4, box.top + 4, Ink(control));
        }
        if (control.checked != 0) {
            Text(box.left + 2, box.top + kTextDrop - 1, control.role == ControlRole::CheckBox ? "x" : "•",
                 Ink(control));
        }
        Text(box.right + 3, where.top + kTextDrop + 1, control.text, Ink(control));
    }
    void Field(const ControlState& control, const CRect& where) {
        if (!control.drawing.empty()) {
            Drawing(control, where, kFace);
            return;
        }
        const bool own = control.backColor != kDefaultColor;
        const bool button = control.role == ControlRole::Button || control.role == ControlRole::Tabs;
        Box(where, IsOff(control) ? kFace : own ? control.backColor : button ? 0xE0E0E0U : kPaper, kFrame);
        const int base = (where.top + where.bottom) / 2 + 3;
        if (control.role == ControlRole::Tabs) {
            int x = where.left + kMargin;
            for (std::size_t i = 0; i < control.items.size(); ++i) {
                const bool front = static_cast<int>(i) == control.selected;
                Text(x, base, front ? "[" + control.items[i].text + "]" : control.items[i].text,
                     Ink(control));
                x += 5 * static_cast<int>(control.items[i].text.size()) + 3 * kMargin;
            }
            return;
        }
        if (control.role == ControlRole::Spin) {
            Text(where.left + 2, base, "↕", Ink(control));
            return;
        }
        const bool selected = control.selected != kNothingSelected;
        Text(where.left + 3, base,
             selected ? control.items[static_cast<std::size_t>(control.selected)].text : control.text,
             Ink(control));
        if (control.role == ControlRole::ComboBox) {
            Text(where.right - 8, base, "▾", Ink(control));
        }
    }
    void List(const ControlState& control, const CRect& where) {
        Box(where, kPaper, kFrame);
        int y = where.top;
        for (std::size_t i = 0; i < control.items.size() && y + kListLine <= where.bottom; ++i) {
            if (static_cast<int>(i) == control.selected) {
                Box({where.left + 1, y + 1, where.right - 1, y + kListLine + 1}, 0xC0D8F0, 0xC0D8F0);
            }
            const std::vector<CString> columns = SplitText(control.items[i].text, '\t');
            const int column = (where.right - where.left) / static_cast<int>(columns.size());
            for (std::size_t c = 0; c < columns.size(); ++c) {
                Text(where.left + 3 + static_cast<int>(c) * column, y + kTextDrop, columns[c], Ink(control));
            }
            y += kListLine;
        }
    }
    void Bar(const ControlState& control, const CRect& where) {
        Box(where, kPaper, kFrame);
        const int width = where.right - where.left;
        const int range = std::max(control.high - control.low + 1, 1);
        const bool progress = control.role == ControlRole::Progress;
        const int first = progress ? 0 : (control.position - control.low) * width / range;
        const int length = progress ? (control.position - control.low) * width / std::max(range - 1, 1)
                                    : std::max(control.page, 1) * width / range;
        Box({where.left + first, where.top + 1, where.left + first + length, where.bottom - 1},
            IsOff(control) ? kOffInk : kThumb, kFrame);
    }
    void Drawing(const ControlState& control, const CRect& where, std::uint32_t fill) {
        Box(where, fill, kFrame);
        for (const DrawnItem& item : control.drawing) {
            const CRect place{where.left + item.where.left, where.top + item.where.top,
                              where.left + item.where.right, where.top + item.where.bottom};
            if (item.kind == DrawnItem::Kind::Line) {
                Line(place, item.color);
            } else if (item.kind == DrawnItem::Kind::Box) {
                m_svg += Format("<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"#%06X\" "
                                "fill-opacity=\"0.15\" stroke=\"#%06X\" stroke-width=\"0.5\"/>\n",
                                place.left, place.top, place.right - place.left, place.bottom - place.top,
                                item.color, item.color);
            } else {
                Text(place.left + 1, (place.top + place.bottom) / 2 + 2, item.text, item.color);
            }
        }
    }

    const ControlState& m_window;
    std::vector<PlacedControl> m_controls;
    CString m_svg;
};

} // namespace

std::string DrawWindowSvg(const ControlState& window) {
    return SvgDrawing(window).Draw();
}

} // namespace kalvio::reference_host
