#include "switching/SwitcherTexts.h"

#include "platform/Text.h"

namespace kalvio {
namespace {

constexpr TextResource kTexts[] = {
    {kTextSwitcherPanel, "I/O Switcher Diagnostic Control"},
    {kTextIOSwitcherFolder, "I/O Switcher"},
    {kTextGetBusStatus, "Get bus status"},
    {kTextGetFullStatus, "Get full status"},
    {kTextSwitchGroup, "Switch relays for bus/group"},
    {kTextLoadBus, "Load for bus"},
    {kTextBalanceBus, "Balance for bus"},
    {kTextGetBusDC, "Get bus DC"},
    {kTextAddGroup, "Add bus/group to array definition"},
    {kTextAddStereoGroup, "Add group to stereo array definition"},

    {kTextPanelAddress, "Device address"},
    {kTextPanelGroup, "Bus %s, Group %s"},
    {kTextPanelRelay, "%s, relay %s"},
    {kTextPanelBalance, "Balanced (Bus %s)"},
    {kTextPanelLoad, "Load (Bus %s)"},
    {kTextPanelPositive, "Positive DC Voltage (Bus %s)"},
    {kTextPanelNegative, "Negative DC Voltage (Bus %s)"},

    {kTextArrayTitle, "Channel Array Control"},
    {kTextArrayRange, "Channels %d to %d"},
    {kTextArrayMono, "Mono; %d channels"},
    {kTextArrayStereo, "Stereo; %d channels (%d stereo pairs)"},
    {kTextNoArrays, "No Channel Arrays set up"},
    {kTextNoSelection, "No Array selected"},
    {kTextDeviceError, "Error contacting device(s)"},
    {kTextAskSetAll,
     "You have chosen to turn on all channels, but this Channel Array is currently set to turn "
     "on single channels exclusively.\n\nIf you continue, the mode will be changed to allow "
     "channels to be turned on independently. Are you sure you wish to do this?"},
    {kTextPrintArrayName, "Channel Array name"},
    {kTextPrintMode, "Mode"},
    {kTextPrintBalance, "Balanced measurement mode"},
    {kTextAskLoseChanges, "Are you sure you wish to Cancel? You will lose any changes you have made."},
};

const TextTable kTable{kTexts};

} // namespace

CString DescribeArray(bool stereo, int channels) {
    return stereo ? FormatNumbers(kTextArrayStereo, channels, channels / 2)
                  : FormatText(LoadText(kTextArrayMono), channels);
}

} // namespace kalvio
