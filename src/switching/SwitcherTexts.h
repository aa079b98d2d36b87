#pragma once

// String ids of the switcher documents' own texts.

namespace kalvio {

enum SwitcherText : unsigned {
    kTextSwitcherPanel = 13300,
    kTextIOSwitcherFolder,
    kTextGetBusStatus,
    kTextGetFullStatus,
    kTextSwitchGroup,
    kTextLoadBus,
    kTextBalanceBus,
    kTextGetBusDC,
    kTextAddGroup,
    kTextAddStereoGroup,
};

} // namespace kalvio
