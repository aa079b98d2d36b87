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
};

const TextTable kTable{kTexts};

} // namespace
} // namespace kalvio
