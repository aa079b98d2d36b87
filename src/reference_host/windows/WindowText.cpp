#include "reference_host/windows/PlacedControls.h"
#include "reference_host/windows/WindowPictures.h"

#include <algorithm>
#include <map>

namespace kalvio::reference_host {
namespace {

constexpr int kColumnUnits = 4;
constexpr int kRowUnits = 8;

// A field of characters; each cell holds one of them in UTF-8.
class Canvas {
public:
    Canvas(int columns, int rows)
        : m_columns(columns),
          m_rows(rows),
          m_cells(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), " ") {}

    void Put(int column, int row, const CString& cell) {
        if (column >= 0 && column < m_columns && row >= 0 && row < m_rows) {
            m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                    static_cast<std::size_t>(column)] = cell;
        }
    }
    // At most so many characters.
    void Write(int column, int row, const CString& text, int width) {
        CString cell;
        int at = column;
        for (std::size_t i = 0; i < text.size(); ++i) {
            cell += text[i];
            const bool more =
                i + 1 < text.size() && (static_cast<unsigned char>(text[i + 1]) & 0xC0U) == 0x80U;
            if (more) {
                continue;
            }
            if (at < column + width) {
                Put(at++, row, cell);
            }
            cell.clear();
        }
    }
    void Box(int left, int top, int right, int bottom) {
        for (int column = left + 1; column < right; ++column) {
            Put(column, top, "─");
            Put(column, bottom, "─");
        }
        for (int row = top + 1; row < bottom; ++row) {
            Put(left, row, "│");
            Put(right, row, "│");
        }
        Put(left, top, "┌");
        Put(right, top, "┐");
        Put(left, bottom, "└");
        Put(right, bottom, "┘");
    }
    [[nodiscard]] CString Text() const {
        CString text;
        for (int row = 0; row < m_rows; ++row) {
            CString line;
            for (int column = 0; column < m_columns; ++column) {
                line += m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                                static_cast<std::size_t>(column)];
            }
            line.erase(line.find_last_not_of(' ') + 1);
            text += line + "\n";
        }
        return text;
    }

private:
    int m_columns;
    int m_rows;
    std::vector<CString> m_cells;
};

// Where a control stands on the canvas, within the window's frame.
struct Cells {
    int left;
    int top;
    int right;  // the first column after it
    int bottom; // the first row after it
    int middle; // the row of a control of one line
    [[nodiscard]] int Width() const { return right - left; }
};

// The rows of the controls: what stands within half a row of the one before stands in its row.
class Rows {
public:
    explicit Rows(const std::vector<PlacedControl>& controls) {
        for (const PlacedControl& control : controls) {
            m_rows[Middle(control.where)] = 0;
        }
        int first = -kRowUnits;
        for (auto& [middle, row] : m_rows) {
            first = middle - first > kRowUnits / 2 ? middle : first;
            row = first / kRowUnits + 1;
        }
    }
    [[nodiscard]] Cells CellsOf(const CRect& where) const {
        const int left = where.left / kColumnUnits + 1;
        const int top = where.top / kRowUnits + 1;
        const auto known = m_rows.find(Middle(where));
        return {left, top, std::max(left + 1, where.right / kColumnUnits + 1),
                std::max(top + 1, (where.bottom + kRowUnits - 1) / kRowUnits + 1),
                known != m_rows.end() ? known->second : Middle(where) / kRowUnits + 1};
    }

private:
    static int Middle(const CRect& where) { return (where.top + where.bottom) / 2; }

    std::map<int, int> m_rows; // by the middle of a control
};

// A value between two marks, as wide as the control.
CString Framed(const ControlState& control, const CString& value, int width, char open, char close) {
    const std::size_t inside = static_cast<std::size_t>(std::max(width - 2, 1));
    CString text = value;
    text.resize(std::max(text.size(), inside), ' ');
    text.resize(inside);
    return (IsOff(control) ? '{' : open) + text + (IsOff(control) ? '}' : close);
}

CString Shown(const ControlState& control) {
    const bool selected = control.selected != kNothingSelected;
    return selected ? control.items[static_cast<std::size_t>(control.selected)].text : control.text;
}

class TextDrawing {
public:
    explicit TextDrawing(const ControlState& window) : m_controls(PlaceControls(window)), m_rows(m_controls) {
        const CPoint size = SizeOf(m_controls);
        const int columns = std::max(size.x / kColumnUnits, static_cast<int>(window.text.size())) + 4;
        const int rows = size.y / kRowUnits + 3;
        m_canvas = Canvas(columns, rows);
        m_canvas.Box(0, 0, columns - 1, rows - 1);
        m_canvas.Write(2, 0, " " + window.text + " ", columns - 4);
    }

    CString Draw() {
        for (const PlacedControl& placed : m_controls) {
            if (placed.state->role == ControlRole::Group) { // behind what stands in it
                Group(*placed.state, m_rows.CellsOf(placed.where));
            }
        }
        for (const PlacedControl& placed : m_controls) {
            One(*placed.state, m_rows.CellsOf(placed.where), placed.where);
        }
        return m_canvas.Text();
    }

private:
    void One(const ControlState& control, const Cells& cells, const CRect& where) {
        switch (control.role) {
        case ControlRole::Group:
            return;
        case ControlRole::Text:
            Lines(control.text, cells);
            return;
        case ControlRole::CheckBox:
            Ticked(control, cells, control.checked != 0 ? "[x] " : "[ ] ",
                   control.checked != 0 ? "{x} " : "{ } ");
            return;
        case ControlRole::RadioButton:
            Ticked(control, cells, control.checked != 0 ? "(o) " : "( ) ",
                   control.checked != 0 ? "{o} " : "{ } ");
            return;
        case ControlRole::Button:
            Line(cells, Framed(control, control.text, cells.Width(), '<', '>'));
            return;
        case ControlRole::ComboBox:
            Line(cells, Framed(control, Shown(control), cells.Width(), '[', ']'));
            m_canvas.Put(cells.right - 2, cells.middle, "▾");
            return;
        case ControlRole::Tabs:
            TabLine(control, cells);
            return;
        case ControlRole::ListBox:
            List(control, cells);
            return;
        case ControlRole::Spin:
            m_canvas.Put(cells.left, cells.middle, "↕");
            return;
        case ControlRole::ScrollBar:
        case ControlRole::Slider:
        case ControlRole::Progress:
            Bar(control, cells);
            return;
        case ControlRole::Picture:
            Picture(control, where);
            return;
        default:
            Line(cells, Framed(control, control.text, cells.Width(), '[', ']'));
            return;
        }
    }

    void Line(const Cells& cells, const CString& text) {
        m_canvas.Write(cells.left, cells.middle, text, cells.Width());
    }
    void Lines(const CString& text, const Cells& cells) {
        const std::vector<CString> lines = SplitText(text, '\n');
        const std::vector<CString> wrapped = WrapText(text, cells.Width());
        const bool wraps = cells.bottom - cells.top > 2 && wrapped.size() > lines.size();
        int row = wraps ? cells.top : cells.middle;
        for (const CString& line : wraps ? wrapped : lines) {
            m_canvas.Write(cells.left, row++, line, std::max(cells.Width(), static_cast<int>(line.size())));
        }
    }
    void Ticked(const ControlState& control, const Cells& cells, const char* on, const char* off) {
        m_canvas.Write(cells.left, cells.middle, (IsOff(control) ? off : on) + control.text,
                       cells.Width() + 2);
    }
    void Group(const ControlState& control, const Cells& cells) {
        m_canvas.Box(cells.left, cells.top, cells.right - 1, cells.bottom - 1);
        m_canvas.Write(cells.left + 2, cells.top, control.text, cells.Width() - 4);
    }
    void TabLine(const ControlState& control, const Cells& cells) {
        CString line;
        for (std::size_t i = 0; i < control.items.size(); ++i) {
            const bool front = static_cast<int>(i) == control.selected;
            line += front ? "/ " + control.items[i].text + " \\" : "  " + control.items[i].text + "  ";
        }
        Line(cells, line);
    }
    void List(const ControlState& control, const Cells& cells) {
        m_canvas.Box(cells.left, cells.top, cells.right - 1, cells.bottom - 1);
        int row = cells.top + 1;
        for (std::size_t i = 0; i < control.items.size() && row < cells.bottom - 1; ++i) {
            CString text = static_cast<int>(i) == control.selected ? "> " : "  ";
            for (const CString& column : SplitText(control.items[i].text, '\t')) {
                text += column + "  ";
            }
            m_canvas.Write(cells.left + 1, row++, text, cells.Width() - 2);
        }
    }
    void Bar(const ControlState& control, const Cells& cells) {
        const int width = std::max(cells.Width() - 2, 1);
        const int range = std::max(control.high - control.low + 1, 1);
        const bool progress = control.role == ControlRole::Progress;
        const int first = progress ? 0 : (control.position - control.low) * width / range;
        const int length = progress ? (control.position - control.low) * width / std::max(range - 1, 1)
                                    : std::max(control.page, 1) * width / range;
        m_canvas.Put(cells.left, cells.middle, IsOff(control) ? "{" : "[");
        m_canvas.Put(cells.right - 1, cells.middle, IsOff(control) ? "}" : "]");
        for (int i = 0; i < width; ++i) {
            const bool full = i >= first && i < first + std::max(length, progress ? 0 : 1);
            m_canvas.Put(cells.left + 1 + i, cells.middle, full ? "█" : "░");
        }
    }
    void Picture(const ControlState& control, const CRect& where) {
        for (const DrawnItem& item : control.drawing) {
            const Cells cells =
                m_rows.CellsOf({where.left + item.where.left, where.top + item.where.top,
                                where.left + item.where.right, where.top + item.where.bottom});
            if (item.kind == DrawnItem::Kind::Text) {
                m_canvas.Write(cells.left, cells.middle, item.text, std::max(cells.Width(), 1));
            } else if (item.kind == DrawnItem::Kind::Box) {
                for (int column = cells.left; column < cells.right; ++column) {
                    m_canvas.Put(column, cells.middle, column == cells.left ? "|" : "░");
                }
            } else if (item.where.top == item.where.bottom) {
                for (int column = cells.left; column < cells.right - 1; ++column) {
                    m_canvas.Put(column, cells.middle, "─");
                }
            }
        }
    }

    std::vector<PlacedControl> m_controls;
    Rows m_rows;
    Canvas m_canvas{1, 1};
};

} // namespace

std::string DrawWindowText(const ControlState& window) {
    return TextDrawing(window).Draw();
}

} // namespace kalvio::reference_host
