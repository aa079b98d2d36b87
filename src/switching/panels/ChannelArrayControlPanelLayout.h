#pragma once

// The controls of the channel array panel and of the dialog that names an array.

#include "platform/Dialog.h"

namespace kalvio {

inline constexpr int kArrayPanel = 253; // the dialog
inline constexpr int kArrayBoxes = 32;  // channels shown at once

enum ArrayPanelControl : int {
    kCtrlArray = 2590,
    kCtrlArrayDescription,
    kCtrlExclusivelyOn, // the modes in their order
    kCtrlExclusivelyOff,
    kCtrlIndependent,
    kCtrlArrayBalance,
    kCtrlArrayRange,
    kCtrlSetAll,
    kCtrlClearAll,
    kCtrlArrayWarning,
    kCtrlFirstNumber = 2601,
    kCtrlFirstBox = 2701,
};

enum ArrayDetailsControl : int {
    kCtrlArrayName = 2587,
    kCtrlArrayStereo = 2588,
    kCtrlArrayExclusiveOnly = 3021,
};

extern const DialogTemplate kArrayPanelLayout;
extern const DialogTemplate kArrayDetailsLayout;

} // namespace kalvio
