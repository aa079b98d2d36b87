#include "adapters/KEDATimingDiagram.h"

#include <algorithm>

namespace kalvio {
namespace {

constexpr int kLabels = 36;   // dialog units left of the traces
constexpr int kNarrowest = 2; // of a bit whose clock is drawn
constexpr std::uint32_t kLineColor = 0x000000;
constexpr std::uint32_t kScaleColor = 0x606060;
constexpr std::uint32_t kPadColor = 0xA0A0A0;
constexpr std::uint32_t kDataColor = 0x0060C0;
constexpr int kRows = 4; // scale, bit clock, frame clock, data
constexpr int kMargin = 2;

class Drawing {
public:
    Drawing(const KEDATiming& timing, int width, int height)
        : m_timing(timing), m_width(width - kLabels - kMargin), m_row(height / kRows) {}

    std::vector<DrawnItem> Make() {
        Scale();
        BitClock();
        FrameClock();
        for (int slot = 0; slot < m_timing.slots; ++slot) {
            Data(slot);
        }
        return std::move(m_items);
    }

private:
    [[nodiscard]] int Bits() const { return m_timing.slotLength * m_timing.slots; }
    [[nodiscard]] int X(int bit) const { return kLabels + bit * m_width / Bits(); }
    [[nodiscard]] int High(int row) const { return row * m_row + kMargin; }
    [[nodiscard]] int Low(int row) const { return (row + 1) * m_row - kMargin; }

    void Line(int x1, int y1, int x2, int y2, std::uint32_t color = kLineColor) {
        m_items.push_back({DrawnItem::Kind::Line, {x1, y1, x2, y2}, {}, color});
    }
    void Box(const CRect& where, std::uint32_t color) {
        m_items.push_back({DrawnItem::Kind::Box, where, {}, color});
    }
    void Text(const CRect& where, const CString& text, std::uint32_t color) {
        m_items.push_back({DrawnItem::Kind::Text, where, text, color});
    }
    void Label(int row, const char* text) {
        Text({0, High(row), kLabels - kMargin, Low(row)}, text, kLineColor);
    }

    void Scale() {
        Label(0, "bit");
        for (int slot = 0; slot <= m_timing.slots; ++slot) {
            const int bit = slot * m_timing.slotLength;
            Line(X(bit), Low(0) - kMargin, X(bit), Low(0), kScaleColor);
            if (slot < m_timing.slots) {
                Text({X(bit), High(0), X(bit + m_timing.slotLength), Low(0)}, std::to_string(bit),
                     kScaleColor);
            }
        }
    }

    // A level that goes through the given bits, each with the level from there on.
    struct Change {
        int x;
        bool high;
    };
    void Trace(int row, const std::vector<Change>& changes) {
        const auto level = [&](bool high) { return high ? High(row) : Low(row); };
        for (std::size_t i = 0; i < changes.size(); ++i) {
            const int end = i + 1 < changes.size() ? changes[i + 1].x : X(Bits());
            if (i > 0 && changes[i].high != changes[i - 1].high) {
                Line(changes[i].x, High(row), changes[i].x, Low(row));
            }
            if (changes[i].x < end) {
                Line(changes[i].x, level(changes[i].high), end, level(changes[i].high));
            }
        }
    }

    void BitClock() {
        Label(1, "bit clk");
        if (m_width / Bits() < kNarrowest) {
            const CRect all{X(0), High(1), X(Bits()), Low(1)};
            Box(all, kLineColor);
            Text(all, Format(m_timing.bitClockInvert ? "%d inverted bit clocks" : "%d bit clocks", Bits()),
                 kLineColor);
            return;
        }
        std::vector<Change> changes;
        for (int bit = 0; bit < Bits(); ++bit) {
            changes.push_back({X(bit), m_timing.bitClockInvert});
            changes.push_back({(X(bit) + X(bit + 1)) / 2, !m_timing.bitClockInvert});
        }
        Trace(1, changes);
    }

    void FrameClock() {
        Label(2, "frame clk");
        const int width = m_timing.frameClock1Bit ? 1 : Bits() / 2;
        const bool active = !m_timing.frameClockInvert;
        if (!m_timing.frameClockEarly) {
            Trace(2, {{X(0), active}, {X(width), !active}});
        } else if (width == 1) { // it belongs to the frame that follows
            Trace(2, {{X(0), !active}, {X(Bits() - 1), active}});
        } else {
            Trace(2, {{X(0), active}, {X(width - 1), !active}, {X(Bits() - 1), active}});
        }
    }

    void Data(int slot) {
        if (slot == 0) {
            Label(3, "data");
        }
        const int first = slot * m_timing.slotLength;
        const int data = first + m_timing.leadPad;
        const int end = data + m_timing.dataLength;
        const int next = first + m_timing.slotLength;
        if (data > first) {
            Box({X(first), High(3), X(data), Low(3)}, kPadColor);
        }
        const CRect bits{X(data), High(3), X(end), Low(3)};
        Box(bits, kDataColor);
        const int last = m_timing.dataLength - 1;
        Text(bits, m_timing.lsbFirst ? Format("0..%d", last) : Format("%d..0", last), kDataColor);
        if (next > end) {
            Box({X(end), High(3), X(next), Low(3)}, kPadColor);
        }
    }

    const KEDATiming& m_timing;
    int m_width;
    int m_row;
    std::vector<DrawnItem> m_items;
};

} // namespace

std::vector<DrawnItem> DrawTiming(const KEDATiming& timing, int width, int height) {
    const bool drawable = timing.enabled && timing.slotLength > 0 && timing.slots > 0;
    return drawable ? Drawing(timing, width, height).Make() : std::vector<DrawnItem>();
}

} // namespace kalvio

void CKEDATimingDiagram::Show(const kalvio::KEDATiming& timing) {
    if (timing == m_timing) {
        return;
    }
    m_timing = timing;
    const CRect& place = GetWindowRect();
    SetDrawing(kalvio::DrawTiming(timing, place.right - place.left, place.bottom - place.top));
}
