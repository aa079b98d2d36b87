#pragma once

// What a channel array is made of on the setup sheet: one bus and group of one device, which stands for 8 or
// 16 channels.

#include "platform/Text.h"
#include "switching/ChannelDetails.h"

#include <cstdint>
#include <vector>

class CChannelArray;

namespace kalvio {

inline constexpr std::uint8_t kBothBuses = 0xFF;  // of a stereo pair
inline constexpr std::uint8_t kAnalyserGroup = 1; // of an adapter

struct ArrayDetailItem {
    std::uint8_t classType = 0;
    std::uint8_t address = 0;
    std::uint8_t bus = 0;
    std::uint8_t group = 0;

    bool operator==(const ArrayDetailItem&) const = default;
    // Item data of a list: class type, address, bus and group from the highest byte down.
    [[nodiscard]] std::intptr_t Pack() const;
    [[nodiscard]] static ArrayDetailItem Unpack(std::intptr_t data);
    [[nodiscard]] bool IsSamePlace(const ArrayDetailItem& other) const; // whatever class of device
    [[nodiscard]] bool IsAnalyser() const;                              // of an adapter
    [[nodiscard]] int Channels() const;
    // Bus and group, a tab between; with the address and a tab in front.
    [[nodiscard]] CString Text() const;
    [[nodiscard]] CString TextWithAddress() const;
    // One channel of it; a stereo pair has its even channels on the first bus, the odd ones on the second.
    [[nodiscard]] ChannelDetails Channel(std::uint8_t channel) const;
};

// What a device of a class type offers to an array, in the order of the list; nothing for other class types.
[[nodiscard]] std::vector<ArrayDetailItem> ItemsOfDevice(std::uint8_t address, std::uint8_t classType,
                                                         bool stereo);
// What an array's channels come from, in their order, none twice.
[[nodiscard]] std::vector<ArrayDetailItem> ItemsOfArray(const CChannelArray& array);

} // namespace kalvio
