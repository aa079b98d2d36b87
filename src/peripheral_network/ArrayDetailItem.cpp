#include "peripheral_network/ArrayDetailItem.h"

#include "peripheral_network/KvNetTexts.h"
#include "peripheral_network/bus/KvNetStatus.h"
#include "switching/ChannelArray.h"

#include <algorithm>

namespace kalvio {
namespace {

// Where a device keeps its channels.
struct Place {
    std::uint8_t classType;
    bool stereo;
    std::uint8_t bus;
    std::uint8_t group;
};

constexpr Place kPlaces[] = {
    {kClassTypeIOSwitcher, false, 0, 0},          {kClassTypeIOSwitcher, false, 0, 1},
    {kClassTypeIOSwitcher, false, 1, 0},          {kClassTypeIOSwitcher, false, 1, 1},
    {kClassTypeIOSwitcher, true, kBothBuses, 0},  {kClassTypeIOSwitcher, true, kBothBuses, 1},
    {kClassTypeKedaAdapter, false, 1, 0},         {kClassTypeKedaAdapter, false, 2, 0},
    {kClassTypeKedaAdapter, false, 1, 1},         {kClassTypeKedaAdapter, false, 2, 1},
    {kClassTypeKedaAdapter, true, kBothBuses, 0}, {kClassTypeKedaAdapter, true, kBothBuses, 1},
};

struct PlaceName {
    std::uint8_t classType;
    std::uint8_t number;
    unsigned text;
};

constexpr PlaceName kBusNames[] = {
    {kClassTypeIOSwitcher, 0, kTextBusA},
    {kClassTypeIOSwitcher, 1, kTextBusB},
    {kClassTypeKedaAdapter, 1, kTextConverterA},
    {kClassTypeKedaAdapter, 2, kTextConverterB},
};

constexpr PlaceName kGroupNames[] = {
    {kClassTypeIOSwitcher, 0, kTextGroupX},
    {kClassTypeIOSwitcher, 1, kTextGroupY},
    {kClassTypeKedaAdapter, 0, kTextGenerator},
    {kClassTypeKedaAdapter, kAnalyserGroup, kTextAnalyzer},
};

CString NameIn(std::span<const PlaceName> names, std::uint8_t classType, std::uint8_t number) {
    const auto found = std::ranges::find_if(
        names, [=](const PlaceName& name) { return name.classType == classType && name.number == number; });
    return found == names.end() ? CString() : LoadText(found->text);
}

} // namespace

std::intptr_t ArrayDetailItem::Pack() const {
    return static_cast<std::intptr_t>(std::uint32_t{classType} << 24U | std::uint32_t{address} << 16U |
                                      std::uint32_t{bus} << 8U | group);
}

ArrayDetailItem ArrayDetailItem::Unpack(std::intptr_t data) {
    const auto word = static_cast<std::uint32_t>(data);
    return {static_cast<std::uint8_t>(word >> 24U), static_cast<std::uint8_t>(word >> 16U),
            static_cast<std::uint8_t>(word >> 8U), static_cast<std::uint8_t>(word)};
}

bool ArrayDetailItem::IsSamePlace(const ArrayDetailItem& other) const {
    return address == other.address && bus == other.bus && group == other.group;
}

bool ArrayDetailItem::IsAnalyser() const {
    return classType == kClassTypeKedaAdapter && group == kAnalyserGroup;
}

int ArrayDetailItem::Channels() const {
    return classType == kClassTypeKedaAdapter ? 16 : 8;
}

CString ArrayDetailItem::Text() const {
    return NameIn(kBusNames, classType, bus) + "\t" + NameIn(kGroupNames, classType, group);
}

CString ArrayDetailItem::TextWithAddress() const {
    return std::to_string(address) + "\t" + Text();
}

ChannelDetails ArrayDetailItem::Channel(std::uint8_t channel) const {
    std::uint8_t itsBus = bus;
    if (bus == kBothBuses) {
        const std::uint8_t first = classType == kClassTypeKedaAdapter ? 1 : 0;
        itsBus = static_cast<std::uint8_t>(first + channel % 2);
    }
    return {address, classType, itsBus, group, channel, 0, 0};
}

std::vector<ArrayDetailItem> ItemsOfDevice(std::uint8_t address, std::uint8_t classType, bool stereo) {
    std::vector<ArrayDetailItem> items;
    for (const Place& place : kPlaces) {
        if (place.classType == classType && place.stereo == stereo) {
            items.push_back({classType, address, place.bus, place.group});
        }
    }
    return items;
}

std::vector<ArrayDetailItem> ItemsOfArray(const CChannelArray& array) {
    std::vector<ArrayDetailItem> items;
    ChannelDetails channel;
    for (short index = 0; array.GetChannelDetails(index, channel) != 0; ++index) {
        const ArrayDetailItem item{channel.classType, channel.address,
                                   array.IsStereoArray() != 0 ? kBothBuses : channel.bus, channel.group};
        if (std::ranges::find(items, item) == items.end()) {
            items.push_back(item);
        }
    }
    return items;
}

} // namespace kalvio
