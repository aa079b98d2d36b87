#pragma once

// Which groups of which buses a list of channels uses, gathered in one pass.

#include "switching/ChannelDetails.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kalvio {

// A snapshot; one thread.
class BusGroups {
public:
    explicit BusGroups(std::span<const ChannelDetails> channels) {
        for (const ChannelDetails& entry : channels) {
            const std::size_t bus = BusOf(entry.address, entry.bus);
            if (!m_used.test(bus)) {
                m_used.set(bus);
                m_first[bus] = entry.group;
            } else if (m_first[bus] != entry.group) {
                m_several.set(bus);
            }
        }
    }

    // Whether the bus has channels outside a group.
    [[nodiscard]] bool HasOthers(std::uint8_t address, std::uint8_t bus, std::uint8_t group) const {
        const std::size_t place = BusOf(address, bus);
        return m_used.test(place) && (m_several.test(place) || m_first[place] != group);
    }

private:
    static constexpr std::size_t kBuses = 0x10000; // address and bus are a byte each

    static std::size_t BusOf(std::uint8_t address, std::uint8_t bus) {
        return static_cast<std::size_t>(address) << 8U | bus;
    }

    std::bitset<kBuses> m_used;
    std::bitset<kBuses> m_several;
    std::array<std::uint8_t, kBuses> m_first; // of the used ones; the others are never looked at
};

} // namespace kalvio
