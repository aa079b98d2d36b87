#include "simulator/peripherals/IoSwitcher.h"

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kBalanced = 0x01;
constexpr std::uint8_t kLoaded = 0x02;
constexpr std::uint8_t kAllFlags = kBalanced | kLoaded;
constexpr std::size_t kRelaysOfGroup = 8;
constexpr std::size_t kRelaysOfBus = 16;

constexpr unsigned Bit(std::size_t relay) {
    return 1U << relay;
}

} // namespace

std::optional<DeviceAnswer> IoSwitcher::Obey(std::uint8_t command, ByteView data, std::uint32_t tick) {
    static constexpr Command kCommands[] = {
        {0x80, 0, 0, &IoSwitcher::ReadBoth},   {0x81, 6, 0, &IoSwitcher::SetBoth},
        {0x82, 3, 0, &IoSwitcher::SetBus},     {0x83, 3, 1, &IoSwitcher::SetBus},
        {0x84, 1, 0, &IoSwitcher::CloseRelay}, {0x85, 1, 1, &IoSwitcher::CloseRelay},
        {0x86, 1, 0, &IoSwitcher::OpenRelay},  {0x87, 1, 1, &IoSwitcher::OpenRelay},
        {0x88, 0, 0, &IoSwitcher::ReadBus},    {0x89, 0, 1, &IoSwitcher::ReadBus},
        {0x8A, 1, 0, &IoSwitcher::SetFlags},   {0x8B, 1, 1, &IoSwitcher::SetFlags},
        {0x8C, 1, 0, &IoSwitcher::SetGroup},   {0x8D, 1, 1, &IoSwitcher::SetGroup},
        {0x8E, 1, 2, &IoSwitcher::SetGroup},   {0x8F, 1, 3, &IoSwitcher::SetGroup},
        {0x92, 0, 0, &IoSwitcher::MeasureDc},
    };
    for (const Command& row : kCommands) {
        if (row.code != command) {
            continue;
        }
        if (data.size() != row.dataBytes) {
            return Refuse(AboutCommand(command, "wrong number of data bytes"));
        }
        return (this->*row.obey)(row.place, data, tick);
    }
    return Refuse(AboutCommand(command, "unknown"));
}

void IoSwitcher::PowerUp(std::uint32_t tick) {
    MoveTo({}, tick);
    m_flags = {};
}

std::optional<DeviceAnswer> IoSwitcher::ReadBoth(std::uint8_t, ByteView, std::uint32_t) {
    ByteVector state = BusState(0);
    const ByteVector other = BusState(1);
    state.insert(state.end(), other.begin(), other.end());
    return DeviceAnswer{state, {}};
}

std::optional<DeviceAnswer> IoSwitcher::SetBoth(std::uint8_t place, ByteView data, std::uint32_t tick) {
    if ((data[2] & ~kAllFlags) != 0 || (data[5] & ~kAllFlags) != 0) {
        return Refuse("flags that do not exist");
    }
    MoveTo({{{data[0], data[1]}, {data[3], data[4]}}}, tick);
    m_flags = {data[2], data[5]};
    return ReadBoth(place, data, tick);
}

std::optional<DeviceAnswer> IoSwitcher::ReadBus(std::uint8_t bus, ByteView, std::uint32_t) {
    return DeviceAnswer{BusState(bus), {}};
}

std::optional<DeviceAnswer> IoSwitcher::SetBus(std::uint8_t bus, ByteView data, std::uint32_t tick) {
    if ((data[2] & ~kAllFlags) != 0) {
        return Refuse("flags that do not exist");
    }
    Masks masks = m_masks;
    masks[bus] = {data[0], data[1]};
    MoveTo(masks, tick);
    m_flags[bus] = data[2];
    return ReadBus(bus, data, tick);
}

std::optional<DeviceAnswer> IoSwitcher::CloseRelay(std::uint8_t bus, ByteView data, std::uint32_t tick) {
    if (data[0] >= kRelaysOfBus) {
        return Refuse("a relay that does not exist");
    }
    const std::size_t group = data[0] / kRelaysOfGroup;
    Move(bus, static_cast<std::uint8_t>(group), Bit(data[0] % kRelaysOfGroup), true, tick);
    return ReadBus(bus, data, tick);
}

std::optional<DeviceAnswer> IoSwitcher::OpenRelay(std::uint8_t bus, ByteView data, std::uint32_t tick) {
    if (data[0] >= kRelaysOfBus) {
        return Refuse("a relay that does not exist");
    }
    const std::size_t group = data[0] / kRelaysOfGroup;
    Move(bus, static_cast<std::uint8_t>(group), Bit(data[0] % kRelaysOfGroup), false, tick);
    return ReadBus(bus, data, tick);
}

std::optional<DeviceAnswer> IoSwitcher::SetFlags(std::uint8_t bus, ByteView data, std::uint32_t tick) {
    if ((data[0] & ~kAllFlags) != 0) {
        return Refuse("flags that do not exist");
    }
    m_flags[bus] = data[0];
    return ReadBus(bus, data, tick);
}

std::optional<DeviceAnswer> IoSwitcher::SetGroup(std::uint8_t place, ByteView data, std::uint32_t tick) {
    Masks masks = m_masks;
    masks[place % 2U][place / 2U] = data[0];
    MoveTo(masks, tick);
    return DeviceAnswer{{data[0]}, {}};
}

std::optional<DeviceAnswer> IoSwitcher::MeasureDc(std::uint8_t, ByteView, std::uint32_t) {
    ByteVector lines;
    for (std::size_t bus = 0; bus < 2; ++bus) {
        const int positive = PositiveLine(bus);
        const int negative = (m_flags[bus] & kBalanced) != 0 ? -positive : 0;
        lines.push_back(static_cast<std::uint8_t>(positive));
        lines.push_back(static_cast<std::uint8_t>(negative));
    }
    return DeviceAnswer{lines, {}};
}

int IoSwitcher::PositiveLine(std::size_t bus) const {
    int sum = 0;
    for (std::size_t relay = 0; relay < kRelaysOfGroup; ++relay) {
        const int step = static_cast<int>(relay) + 1;
        sum += (m_masks[bus][0] & Bit(relay)) != 0 ? step : 0;
        sum -= (m_masks[bus][1] & Bit(relay)) != 0 ? step : 0;
    }
    return (m_flags[bus] & kLoaded) != 0 ? sum / 2 : sum;
}

void IoSwitcher::MoveTo(const Masks& masks, std::uint32_t tick) {
    for (const bool closed : {false, true}) {
        for (std::uint8_t place = 0; place < 4; ++place) {
            const std::uint8_t bus = place / 2;
            const std::uint8_t group = place % 2;
            const unsigned wanted = masks[bus][group];
            Move(bus, group, closed ? wanted : ~wanted, closed, tick);
        }
    }
}

// Moves those of the named relays that do not stand there yet.
void IoSwitcher::Move(std::uint8_t bus, std::uint8_t group, unsigned relays, bool closed,
                      std::uint32_t tick) {
    std::uint8_t& mask = m_masks[bus][group];
    for (std::uint8_t relay = 0; relay < kRelaysOfGroup; ++relay) {
        if ((relays & Bit(relay)) == 0 || ((mask & Bit(relay)) != 0) == closed) {
            continue;
        }
        mask = static_cast<std::uint8_t>(mask ^ Bit(relay));
        ++m_operations[bus][group][relay];
        m_events.Add({bus, group, relay, closed, tick});
    }
}

ByteVector IoSwitcher::BusState(std::size_t bus) const {
    return {m_masks[bus][0], m_masks[bus][1], m_flags[bus]};
}

std::uint8_t IoSwitcher::Mask(std::size_t bus, std::size_t group) const {
    const std::scoped_lock guard(m_lock);
    return m_masks[bus][group];
}

std::uint8_t IoSwitcher::Flags(std::size_t bus) const {
    const std::scoped_lock guard(m_lock);
    return m_flags[bus];
}

std::vector<RelayEvent> IoSwitcher::Events() const {
    const std::scoped_lock guard(m_lock);
    return m_events.Copy();
}

std::uint32_t IoSwitcher::Operations(std::size_t bus, std::size_t group, std::size_t relay) const {
    const std::scoped_lock guard(m_lock);
    return m_operations[bus][group][relay];
}

std::uint32_t IoSwitcher::Operations() const {
    const std::scoped_lock guard(m_lock);
    std::uint32_t sum = 0;
    for (const auto& bus : m_operations) {
        for (const auto& group : bus) {
            for (const std::uint32_t count : group) {
                sum += count;
            }
        }
    }
    return sum;
}

} // namespace kalvio::simulator
