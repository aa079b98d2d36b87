#pragma once

// The picture of one frame on a wire: bit clock, frame clock and data.

#include "platform/Controls.h"
#include "platform/Export.h"

#include <vector>

namespace kalvio {

// Lengths in bits.
struct KEDATiming {
    bool enabled = false; // else nothing is drawn
    int leadPad = 0;
    int dataLength = 0;
    int slotLength = 0;
    int slots = 0; // per wire
    bool lsbFirst = false;
    bool bitClockInvert = false;
    bool frameClockInvert = false;
    bool frameClock1Bit = false;
    bool frameClockEarly = false; // one bit before the frame's first
    bool operator==(const KEDATiming&) const = default;
};

// The display list for a picture of that size in dialog units. The frame clock is high for the first half of
// a frame or, one bit wide, for one bit. Above the bits stand their numbers at the slots' borders; where
// single bits would be narrower than two units, the bit clock is a bar that says how many there are.
[[nodiscard]] KALVIO_API std::vector<DrawnItem> DrawTiming(const KEDATiming& timing, int width, int height);

} // namespace kalvio

// Draws anew only when something of what it shows changes. User-interface thread.
class KALVIO_API CKEDATimingDiagram : public CPictureCtrl {
public:
    using CPictureCtrl::CPictureCtrl;
    void Show(const kalvio::KEDATiming& timing);
    [[nodiscard]] const kalvio::KEDATiming& Shown() const { return m_timing; }

private:
    kalvio::KEDATiming m_timing;
};
