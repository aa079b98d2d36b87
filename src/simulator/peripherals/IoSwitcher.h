#pragma once

// An I/O switcher: buses A and B, each with two groups X and Y of eight relays, balanced mode and a load.
//
// DC voltages, in steps: every closed relay of group X adds its number + 1 to the positive line of its bus,
// every one of group Y takes that away; a load halves the sum, towards zero. The negative line mirrors the
// positive one in balanced mode and lies at 0 otherwise.

#include "simulator/peripherals/BusDevice.h"

#include <array>

namespace kalvio::simulator {

inline constexpr DeviceIdentity kSwitcherIdentity{0x11, 1, 2};

// One relay moved. Of one command the relays that open do so before any closes.
struct RelayEvent {
    std::uint8_t bus = 0;   // 0 = A
    std::uint8_t group = 0; // 0 = X
    std::uint8_t relay = 0; // 0 to 7
    bool closed = false;
    std::uint32_t tick = 0;

    bool operator==(const RelayEvent&) const = default;
};

class IoSwitcher final : public BusDevice {
public:
    explicit IoSwitcher(std::uint8_t address, DeviceIdentity identity = kSwitcherIdentity)
        : BusDevice(address, identity) {}

    // The closed relays of a group, relay r as bit r.
    [[nodiscard]] std::uint8_t Mask(std::size_t bus, std::size_t group) const;
    // Bit 0 balanced, bit 1 load.
    [[nodiscard]] std::uint8_t Flags(std::size_t bus) const;
    // Every movement of a relay so far, oldest first.
    [[nodiscard]] std::vector<RelayEvent> Events() const;
    // How often a relay moved, and all of them together.
    [[nodiscard]] std::uint32_t Operations(std::size_t bus, std::size_t group, std::size_t relay) const;
    [[nodiscard]] std::uint32_t Operations() const;

protected:
    std::optional<DeviceAnswer> Obey(std::uint8_t command, ByteView data, std::uint32_t tick) override;
    void PowerUp(std::uint32_t tick) override;

private:
    using Masks = std::array<std::array<std::uint8_t, 2>, 2>; // by bus, by group
    struct Command {
        std::uint8_t code;
        std::uint8_t dataBytes;
        std::uint8_t place; // the bus; of the group commands bus + 2 * group
        std::optional<DeviceAnswer> (IoSwitcher::*obey)(std::uint8_t place, ByteView data,
                                                        std::uint32_t tick);
    };

    std::optional<DeviceAnswer> ReadBoth(std::uint8_t place, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> SetBoth(std::uint8_t place, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> ReadBus(std::uint8_t bus, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> SetBus(std::uint8_t bus, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> CloseRelay(std::uint8_t bus, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> OpenRelay(std::uint8_t bus, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> SetFlags(std::uint8_t bus, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> SetGroup(std::uint8_t place, ByteView data, std::uint32_t tick);
    std::optional<DeviceAnswer> MeasureDc(std::uint8_t place, ByteView data, std::uint32_t tick);
    void MoveTo(const Masks& masks, std::uint32_t tick);
    void Move(std::uint8_t bus, std::uint8_t group, unsigned relays, bool closed, std::uint32_t tick);
    [[nodiscard]] ByteVector BusState(std::size_t bus) const;
    [[nodiscard]] int PositiveLine(std::size_t bus) const;

    Masks m_masks{};
    std::array<std::uint8_t, 2> m_flags{};
    std::array<std::array<std::array<std::uint32_t, 8>, 2>, 2> m_operations{};
    Log<RelayEvent> m_events;
};

} // namespace kalvio::simulator
