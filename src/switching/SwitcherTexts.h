#pragma once

// String ids of the texts of the switcher documents and their windows.

#include "platform/Export.h"
#include "platform/Text.h"

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

    kTextPanelAddress,  // print-outs and tooltips of the I/O switcher panel
    kTextPanelGroup,    // %s: bus, %s: group
    kTextPanelRelay,    // %s: bus and group, %s: relay
    kTextPanelBalance,  // %s: bus
    kTextPanelLoad,     // %s: bus
    kTextPanelPositive, // %s: bus
    kTextPanelNegative, // %s: bus

    kTextArrayTitle,  // of the channel array panel
    kTextArrayRange,  // %d: first, %d: last channel
    kTextArrayMono,   // %d: channels
    kTextArrayStereo, // %d: channels, %d: pairs
    kTextNoArrays,
    kTextNoSelection,
    kTextDeviceError,
    kTextAskSetAll,
    kTextPrintArrayName,
    kTextPrintMode,
    kTextPrintBalance,
    kTextAskLoseChanges,
};

// A text of the string table with two %d. FormatText leaves what it has no argument for, so that the second
// number fills what is left.
[[nodiscard]] inline CString FormatNumbers(unsigned text, int first, int second) {
    return FormatText(FormatText(LoadText(text), first), second);
}

// "Mono; 16 channels" or "Stereo; 8 channels (4 stereo pairs)".
[[nodiscard]] KALVIO_API CString DescribeArray(bool stereo, int channels);

} // namespace kalvio
