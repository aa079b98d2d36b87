#pragma once

// The button that routes one generator slot: off, channel A, channel B.

#include "adapters/KEDAAdapter.h"
#include "platform/Controls.h"
#include "platform/Export.h"
#include "platform/ImageList.h"

// Draws one image of its list, chosen by its state and by whether it has the focus. A click or the space bar
// goes on to the next state and tells the panel. User-interface thread.
class KALVIO_API CKEDARoutingButton : public CButton {
public:
    using CButton::CButton;
    // Takes the images (not owned; null: none) and their size.
    void SetImageList(const kalvio::ImageList* list);
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;

private:
    [[nodiscard]] int ImageToDraw() const;

    const kalvio::ImageList* m_images = nullptr;
};

namespace kalvio {

// The six images: off, off; A, A; B, B, each first without and then with the focus's frame, but for off,
// whose framed image stands first. Each state has a shape of its own.
[[nodiscard]] KALVIO_API const ImageList& RoutingImages();

} // namespace kalvio
