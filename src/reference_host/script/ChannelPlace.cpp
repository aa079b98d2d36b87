#include "reference_host/script/ChannelPlace.h"

#include "peripheral_network/bus/KvNetStatus.h"

#include <array>

namespace kalvio::reference_host {

namespace {

using Words = std::array<const char*, 2>;

constexpr Words kBuses{"A", "B"};
constexpr Words kSwitcherGroups{"X", "Y"};
constexpr Words kAdapterGroups{"gen", "ana"};

CString WordOf(const Words& words, std::uint8_t number) {
    return number < words.size() ? words[number] : Format("%u", number);
}

} // namespace

ChannelPlace PlaceOf(const ChannelDetails& channel) {
    const Words& groups = channel.classType == kClassTypeKedaAdapter ? kAdapterGroups : kSwitcherGroups;
    return {Format("%u", channel.address), WordOf(kBuses, channel.bus), WordOf(groups, channel.group),
            Format("%u", channel.channel)};
}

CString PlaceText(const ChannelDetails& channel) {
    const ChannelPlace place = PlaceOf(channel);
    return place.device + " " + place.bus + " " + place.group + " " + place.channel;
}

} // namespace kalvio::reference_host
