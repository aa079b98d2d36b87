#pragma once

// A drawing context that records what is printed on it: lines of text with the tab stops that they stand on.
// Used on one thread.

#include "platform/Export.h"
#include "platform/Text.h"

#include <utility>
#include <vector>

class KALVIO_API CDC {
public:
    struct TextLine {
        CString text; // columns apart by tabs
        bool title = false;
        std::vector<int> tabStops; // device units from the left margin
    };

    static constexpr int kPageWidth = 4800; // device units: eight inches at 600 a piece

    CDC() = default;
    explicit CDC(int horizontalResolution) : m_width(horizontalResolution) {}

    // The width of the page in device units.
    [[nodiscard]] int HorizontalResolution() const { return m_width; }
    // The tab stops of the lines that follow.
    void SetTabStops(std::vector<int> stops) { m_tabStops = std::move(stops); }
    [[nodiscard]] const std::vector<int>& TabStops() const { return m_tabStops; }
    // One line below the last; an empty one leaves a line out.
    void PrintLine(const CString& text, bool title = false) { m_lines.push_back({text, title, m_tabStops}); }
    [[nodiscard]] const std::vector<TextLine>& Lines() const { return m_lines; }

private:
    int m_width = kPageWidth;
    std::vector<int> m_tabStops;
    std::vector<TextLine> m_lines;
};
