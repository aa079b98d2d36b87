// The adapter as a member of channel arrays.

#include "adapters/KEDAAdapter.h"
#include "adapters/KEDAHints.h"
#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetErrors.h"

#include <algorithm>

using namespace kalvio::keda;

namespace {

constexpr std::uint8_t kAllSlots = 0xFF;
constexpr std::uint8_t kOddSlots = 0xAA; // those that carry B in pairs
constexpr int kFewSlots = 2;             // per wire: only slots 0 to 7 exist

bool IsAnalyser(int group) {
    return group != 0;
}

short Refused(bool taken) {
    return taken ? short{KVNET_OK} : short{KVNET_ERR_PARAMETER};
}

} // namespace

CKEDAAdapter::Found CKEDAAdapter::FindSlot(int which, int channel, Place& place) const {
    const int slots = GetSubChannelsPerWire(which);
    place = {channel / slots + 1, channel % slots + 1};
    if (place.wire <= GetNumWires(which)) {
        return Found::Slot;
    }
    return slots == kFewSlots ? Found::BeyondQuietly : Found::Beyond;
}

short CKEDAAdapter::Outcome(Found found) const {
    return found == Found::BeyondQuietly ? short{KVNET_OK} : short{KVNET_ERR_PARAMETER};
}

void CKEDAAdapter::RouteAllSlots(bool routed) {
    m_image[kGenRouting2] = routed ? kAllSlots : 0;
    if (!routed || GetSubChannelsPerWire(0) > kFewSlots) {
        m_image[kGenRouting1] = routed ? kAllSlots : 0;
    }
}

void CKEDAAdapter::SetBusBits(std::uint8_t bits) {
    m_image[kGenRouting4] = bits;
    if (GetSubChannelsPerWire(0) > kFewSlots) {
        m_image[kGenRouting3] = bits;
    }
}

int CKEDAAdapter::ResetChannelArrayDevice() {
    if (ResetDevice(1) == 0) {
        return 0;
    }
    std::fill_n(m_image.begin() + kGenRouting1, 4, std::uint8_t{0});
    return UpdateDeviceFromSettings();
}

short CKEDAAdapter::BusExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                        std::uint8_t, std::uint8_t on) {
    return BusGroupExclusiveChannel(bus, group, channel, on);
}

short CKEDAAdapter::BusGroupExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                             std::uint8_t on) {
    Place place{};
    const Found found = FindSlot(group, channel, place);
    if (IsAnalyser(group) ? bus != ROUTING_A && bus != ROUTING_B : on == 1 && bus > ROUTING_B) {
        return KVNET_ERR_PARAMETER;
    }
    if (found != Found::Slot) {
        return Outcome(found);
    }
    if (IsAnalyser(group)) {
        return SetAnaRouting(bus - 1, place.wire, place.slot) != 0 ? UpdateAnaRouting() : Refused(false);
    }
    RouteAllSlots(on != 1);
    return SetGenRouting(place.wire, place.slot, on == 1 ? int{bus} : int{ROUTING_OFF}) != 0
               ? UpdateGenRouting()
               : Refused(false);
}

short CKEDAAdapter::BusAll(std::uint8_t bus, std::uint8_t, std::uint8_t on) {
    RouteAllSlots(on != 0);
    if (on != 0) {
        m_image[kGenRouting3] = m_image[kGenRouting4] = bus == ROUTING_A ? std::uint8_t{0} : kAllSlots;
    }
    UpdateViews(nullptr, HINT_KEDA_GEN_ROUTING_CHANGED, nullptr, 0);
    return UpdateGenRouting();
}

short CKEDAAdapter::BusGroupAll(std::uint8_t bus, std::uint8_t group, std::uint8_t on) {
    return IsAnalyser(group) ? short{KVNET_OK} : BusAll(bus, 0, on);
}

short CKEDAAdapter::BusChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel, std::uint8_t on) {
    if (IsAnalyser(group)) {
        return KVNET_ERR_PARAMETER;
    }
    Place place{};
    if (const Found found = FindSlot(0, channel, place); found != Found::Slot) {
        return Outcome(found);
    }
    return SetGenRouting(place.wire, place.slot, on == 1 ? int{bus} : int{ROUTING_OFF}) != 0
               ? UpdateGenRouting()
               : Refused(false);
}

short CKEDAAdapter::BusBalance(std::uint8_t, std::uint8_t, std::uint8_t) {
    return KVNET_ERR_PARAMETER;
}

short CKEDAAdapter::BusLoad(std::uint8_t, std::uint8_t, std::uint8_t) {
    return KVNET_ERR_PARAMETER;
}

short CKEDAAdapter::StereoPairExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                               std::uint8_t partnerChannel, std::uint8_t, std::uint8_t on) {
    return StereoPairGroupExclusiveChannel(group, channel, partnerChannel, on);
}

short CKEDAAdapter::StereoPairGroupExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                                    std::uint8_t partnerChannel, std::uint8_t on) {
    Place first{};
    Place second{};
    for (const auto& [index, place] : {std::pair{std::min(channel, partnerChannel), &first},
                                       std::pair{std::max(channel, partnerChannel), &second}}) {
        if (const Found found = FindSlot(group, index, *place); found != Found::Slot) {
            return Outcome(found);
        }
    }
    if (IsAnalyser(group)) {
        const bool taken =
            SetAnaRouting(0, first.wire, first.slot) != 0 && SetAnaRouting(1, second.wire, second.slot) != 0;
        return taken ? UpdateAnaRouting() : Refused(false);
    }
    RouteAllSlots(on != 1);
    const bool taken = SetGenRouting(first.wire, first.slot, on == 1 ? ROUTING_A : ROUTING_OFF) != 0 &&
                       SetGenRouting(second.wire, second.slot, on == 1 ? ROUTING_B : ROUTING_OFF) != 0;
    return taken ? UpdateGenRouting() : Refused(false);
}

short CKEDAAdapter::StereoPairAll(std::uint8_t, std::uint8_t on) {
    return StereoPairGroupAll(0, on);
}

short CKEDAAdapter::StereoPairGroupAll(std::uint8_t group, std::uint8_t on) {
    if (IsAnalyser(group)) {
        return KVNET_OK;
    }
    SetBusBits(kOddSlots);
    m_image[kGenRouting2] = on != 0 ? kAllSlots : 0;
    if (GetSubChannelsPerWire(0) > kFewSlots) {
        m_image[kGenRouting1] = on != 0 ? kAllSlots : 0;
    }
    UpdateViews(nullptr, HINT_KEDA_GEN_ROUTING_CHANGED, nullptr, 0);
    return UpdateGenRouting();
}

short CKEDAAdapter::StereoPairChannel(std::uint8_t, std::uint8_t group, std::uint8_t channel,
                                      std::uint8_t on) {
    if (IsAnalyser(group)) {
        return KVNET_ERR_PARAMETER;
    }
    Place given{};
    Place partner{};
    const Found found = FindSlot(0, channel, given);
    const Found partnerFound = FindSlot(0, channel % 2 == 0 ? channel + 1 : channel - 1, partner);
    if (found != Found::Slot || partnerFound != Found::Slot) {
        return Outcome(found != Found::Slot ? found : partnerFound);
    }
    const bool taken = SetGenRouting(given.wire, given.slot, on == 1 ? ROUTING_A : ROUTING_OFF) != 0 &&
                       SetGenRouting(partner.wire, partner.slot, on == 1 ? ROUTING_B : ROUTING_OFF) != 0;
    return taken ? UpdateGenRouting() : Refused(false);
}

short CKEDAAdapter::StereoPairBalance(std::uint8_t, std::uint8_t, std::uint8_t) {
    return KVNET_ERR_PARAMETER;
}

short CKEDAAdapter::StereoPairLoad(std::uint8_t, std::uint8_t, std::uint8_t) {
    return KVNET_OK;
}

void* CKEDAAdapter::GetChannelArrayDetails() {
    return nullptr;
}

short CKEDAAdapter::UpdateDeviceWithChannelArrayDetails(void*) {
    UpdateViews(nullptr, HINT_KEDA_GEN_ROUTING_CHANGED, nullptr, 0);
    UpdateViews(nullptr, HINT_KEDA_ANA_ROUTING_CHANGED, nullptr, 0);
    const short status = UpdateGenRouting();
    return status != KVNET_OK ? status : UpdateAnaRouting();
}

int CKEDAAdapter::AddChannelToChannelArrayDetails(void*, ChannelDetails* channel) {
    Place place{};
    const Found found = FindSlot(channel->group, channel->channel, place);
    if (found != Found::Slot) {
        return found == Found::BeyondQuietly ? 1 : 0;
    }
    if (!IsAnalyser(channel->group)) {
        return SetGenRouting(place.wire, place.slot,
                             channel->state == 1 ? int{channel->bus} : int{ROUTING_OFF});
    }
    return channel->state != 1 ? 1 : SetAnaRouting(channel->bus == ROUTING_B ? 1 : 0, place.wire, place.slot);
}
