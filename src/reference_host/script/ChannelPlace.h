#pragma once

// Where a channel of a channel array stands, in the words of tables.

#include "platform/Text.h"
#include "switching/ChannelDetails.h"

namespace kalvio::reference_host {

struct ChannelPlace {
    CString device;  // address
    CString bus;     // "A", "B"
    CString group;   // "X", "Y" of a switcher, "gen", "ana" of an adapter
    CString channel; // relay or slot
};

// What has no word is told as a number.
[[nodiscard]] ChannelPlace PlaceOf(const ChannelDetails& channel);
// "1 A X 3"
[[nodiscard]] CString PlaceText(const ChannelDetails& channel);

} // namespace kalvio::reference_host
