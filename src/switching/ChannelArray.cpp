#include "switching/ChannelArray.h"

#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "switching/BusGroups.h"
#include "switching/ChannelArrayDevice.h"

#include <algorithm>
#include <bitset>
#include <limits>
#include <memory>
#include <new>

namespace {

constexpr short kNoIndex = -1;
constexpr std::size_t kBusNumbers = 256;

std::uint8_t Bit(bool on) {
    return on ? 1 : 0;
}

std::uint8_t PartnerChannel(std::uint8_t channel) {
    return static_cast<std::uint8_t>(channel ^ 1U);
}

// Gives back a device's details block.
struct FreeBlock {
    void operator()(void* block) const { ::operator delete(block); }
};

} // namespace

// One exclusive switch: what is switched how, and how the array lay when it began.
struct CChannelArray::Exclusive {
    ChannelDetails target;
    std::uint8_t on;
    std::uint8_t rest; // of every other channel
    kalvio::BusGroups groups;
};

CChannelArray::CChannelArray(const char* name) : m_name(name != nullptr ? name : "") {}

CChannelArray& CChannelArray::operator=(const CChannelArray& other) {
    if (this != &other) {
        std::vector<ChannelDetails> channels = other.m_channels;
        m_name = other.m_name;
        m_stereo = other.m_stereo;
        m_exclusiveOnly = other.m_exclusiveOnly;
        m_deviceClassType = other.m_deviceClassType;
        m_channels = std::move(channels);
    }
    return *this;
}

short CChannelArray::GetNumChannels() const {
    constexpr std::size_t kMost = std::numeric_limits<short>::max();
    return static_cast<short>(std::min(m_channels.size(), kMost));
}

int CChannelArray::AddChannel(const ChannelDetails& details) {
    if (m_deviceClassType != 0 && details.classType != m_deviceClassType) {
        return 0;
    }
    try {
        m_channels.push_back(details);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    m_deviceClassType = details.classType;
    return 1;
}

bool CChannelArray::HasChannel(int index) const {
    return index >= 0 && static_cast<std::size_t>(index) < m_channels.size();
}

int CChannelArray::GetChannelDetails(short index, ChannelDetails& details) const {
    if (!HasChannel(index)) {
        return 0;
    }
    details = m_channels[static_cast<std::size_t>(index)];
    return 1;
}

int CChannelArray::SetChannelDetails(short index, const ChannelDetails& details) {
    if (!HasChannel(index)) {
        return 0;
    }
    m_channels[static_cast<std::size_t>(index)] = details;
    return 1;
}

void CChannelArray::RemoveAllChannels() {
    std::vector<ChannelDetails>().swap(m_channels);
    m_deviceClassType = 0;
}

std::uint8_t CChannelArray::AddressAt(std::size_t place, short* index) const {
    const bool named = place < static_cast<std::size_t>(GetNumChannels());
    if (index != nullptr) {
        *index = named ? static_cast<short>(place) : kNoIndex;
    }
    return named ? m_channels[place].address : KVNET_ADDRESS_NONE;
}

std::size_t CChannelArray::FirstOther(short start, const ChannelDetails& than, RunOf kind) const {
    std::size_t place = start > 0 ? static_cast<std::size_t>(start) : 0;
    while (place < m_channels.size() && m_channels[place].address == than.address &&
           (kind == RunOf::Device || m_channels[place].bus == than.bus)) {
        ++place;
    }
    return place;
}

std::uint8_t CChannelArray::GetFirstDeviceAddress(short* index) const {
    return AddressAt(0, index);
}

std::uint8_t CChannelArray::GetNextDeviceAddress(std::uint8_t address, short start, short* index) const {
    return AddressAt(FirstOther(start, {.address = address}, RunOf::Device), index);
}

std::uint8_t CChannelArray::GetNextDeviceBusAddress(std::uint8_t address, std::uint8_t bus, short start,
                                                    short* index) const {
    return AddressAt(FirstOther(start, {.address = address, .bus = bus}, RunOf::Bus), index);
}

// Whoever was told of a frame may have taken channels away meanwhile.
std::size_t CChannelArray::NextRun(std::size_t first, RunOf kind) const {
    if (first >= m_channels.size()) {
        return m_channels.size();
    }
    const ChannelDetails& head = m_channels[first];
    std::size_t place = first + 1;
    while (place < m_channels.size() && m_channels[place].address == head.address &&
           (kind == RunOf::Device || m_channels[place].bus == head.bus)) {
        ++place;
    }
    return place;
}

int CChannelArray::OtherGroupsExistInArray(std::uint8_t address, std::uint8_t group, std::uint8_t bus) const {
    return std::ranges::any_of(m_channels,
                               [=](const ChannelDetails& entry) {
                                   return entry.address == address && entry.bus == bus &&
                                          entry.group != group;
                               })
               ? 1
               : 0;
}

int CChannelArray::OtherClassTypesExistInArray(std::uint8_t classType) const {
    return std::ranges::any_of(m_channels,
                               [=](const ChannelDetails& entry) { return entry.classType != classType; })
               ? 1
               : 0;
}

CChannelArrayDevice* CChannelArray::GetChannelArrayDevice(std::uint8_t address, std::uint8_t classType) {
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    return network != nullptr ? network->FindChannelArrayDevice(address, classType) : nullptr;
}

// Looks a device up and has it do something at once, since the next look-up may turn its object to another.
template<typename Command>
short CChannelArray::Send(const ChannelDetails& entry, Command command) {
    CChannelArrayDevice* device = GetChannelArrayDevice(entry.address, entry.classType);
    return device != nullptr ? command(*device) : short{KVNET_ERR_DEVICE_TYPE};
}

short CChannelArray::SwitchAll(const ChannelDetails& entry, bool wholeBus, std::uint8_t on) const {
    return Send(entry, [&](CChannelArrayDevice& device) {
        if (m_stereo != 0) {
            return wholeBus ? device.StereoPairAll(entry.flags, on)
                            : device.StereoPairGroupAll(entry.group, on);
        }
        return wholeBus ? device.BusAll(entry.bus, entry.flags, on)
                        : device.BusGroupAll(entry.bus, entry.group, on);
    });
}

bool CChannelArray::StateChanging(std::size_t first, std::size_t end, std::uint8_t state) {
    bool changed = false;
    for (std::size_t place = first; place < end; ++place) {
        changed = changed || m_channels[place].state != state;
        m_channels[place].state = state;
    }
    return changed;
}

void CChannelArray::StoreState(int index, std::uint8_t state) {
    if (HasChannel(index)) {
        m_channels[static_cast<std::size_t>(index)].state = state;
    }
}

short CChannelArray::ExclusiveChannel(short channel, std::uint8_t on) {
    const int index = channel - 1;
    if (!HasChannel(index)) {
        return KVNET_ERR_CHANNEL_NOT_IN_ARRAY;
    }
    const Exclusive exclusive{m_channels[static_cast<std::size_t>(index)], Bit(on != 0), Bit(on == 0),
                              kalvio::BusGroups(m_channels)};
    StoreExclusiveStates(index, exclusive.target, exclusive.on);
    for (std::size_t first = 0; first < m_channels.size(); first = NextRun(first, OwnRuns())) {
        if (const short code = SwitchRunBeforeExclusive(first, exclusive); code != KVNET_OK) {
            return code;
        }
    }
    return SwitchExclusively(exclusive);
}

void CChannelArray::StoreExclusiveStates(int index, const ChannelDetails& target, std::uint8_t state) {
    for (ChannelDetails& entry : m_channels) {
        if (entry.address == target.address && (m_stereo != 0 || entry.bus == target.bus)) {
            entry.state = Bit(state == 0);
        }
    }
    StoreState(index, state);
    if (m_stereo != 0) {
        StoreState(PartnerOf(index), state);
    }
}

// The target's own run is switched whatever its state, any other only when a channel of it changes.
short CChannelArray::SwitchRunBeforeExclusive(std::size_t first, const Exclusive& exclusive) {
    const ChannelDetails head = m_channels[first];
    const ChannelDetails& target = exclusive.target;
    const bool sameBus = m_stereo != 0 || head.bus == target.bus;
    // What goes to the run, in terms of the target.
    ChannelDetails run = target;
    run.address = head.address;
    run.classType = head.classType;
    if (head.address == target.address && sameBus) {
        return SwitchAll(run, exclusive.groups.HasOthers(target.address, target.bus, target.group),
                         exclusive.rest);
    }
    if (!StateChanging(first, NextRun(first, OwnRuns()), exclusive.rest)) {
        return KVNET_OK;
    }
    if (sameBus) {
        return SwitchAll(run, true, exclusive.rest);
    }
    run.bus = head.bus;
    return SwitchAll(run, exclusive.groups.HasOthers(head.address, head.bus, target.group), exclusive.rest);
}

short CChannelArray::SwitchExclusively(const Exclusive& exclusive) {
    const ChannelDetails& target = exclusive.target;
    const std::uint8_t partner = PartnerChannel(target.channel);
    const bool wholeBus = exclusive.groups.HasOthers(target.address, target.bus, target.group);
    return Send(target, [&](CChannelArrayDevice& device) {
        if (m_stereo != 0) {
            return wholeBus ? device.StereoPairExclusiveChannel(target.group, target.channel, partner,
                                                                target.flags, exclusive.on)
                            : device.StereoPairGroupExclusiveChannel(target.group, target.channel, partner,
                                                                     exclusive.on);
        }
        return wholeBus
                   ? device.BusExclusiveChannel(target.bus, target.group, target.channel, target.flags,
                                                exclusive.on)
                   : device.BusGroupExclusiveChannel(target.bus, target.group, target.channel, exclusive.on);
    });
}

short CChannelArray::AddRemoveChannel(short channel, std::uint8_t on) {
    if (m_exclusiveOnly != 0) {
        return KVNET_ERR_PARAMETER;
    }
    const int index = channel - 1;
    if (!HasChannel(index)) {
        return KVNET_ERR_CHANNEL_NOT_IN_ARRAY;
    }
    const ChannelDetails entry = m_channels[static_cast<std::size_t>(index)];
    return Send(entry, [&](CChannelArrayDevice& device) {
        const std::uint8_t state = Bit(on != 0);
        StoreState(index, state);
        if (m_stereo == 0) {
            return device.BusChannel(entry.bus, entry.group, entry.channel, state);
        }
        StoreState(PartnerOf(index), state);
        return device.StereoPairChannel(entry.bus, entry.group, entry.channel, state);
    });
}

short CChannelArray::ClearChannels(int force) {
    const kalvio::BusGroups groups(m_channels);
    for (std::size_t first = 0; first < m_channels.size(); first = NextRun(first, OwnRuns())) {
        const bool changed = StateChanging(first, NextRun(first, OwnRuns()), 0);
        if (force == 0 && !changed) {
            continue;
        }
        const ChannelDetails head = m_channels[first];
        const short code = SwitchAll(head, groups.HasOthers(head.address, head.bus, head.group), 0);
        if (code != KVNET_OK) {
            return code;
        }
    }
    return KVNET_OK;
}

short CChannelArray::SetAllChannels() {
    if (m_exclusiveOnly != 0) {
        return KVNET_ERR_PARAMETER;
    }
    for (std::size_t first = 0; first < m_channels.size(); first = NextRun(first, OwnRuns())) {
        if (!StateChanging(first, NextRun(first, OwnRuns()), 1)) {
            continue;
        }
        const ChannelDetails head = m_channels[first];
        if (const short code = SwitchAll(head, true, 1); code != KVNET_OK) {
            return code;
        }
    }
    return KVNET_OK;
}

short CChannelArray::Balance(int on) {
    const std::uint8_t balanced = Bit(on != 0);
    SetOtherInfo(kalvio::kChannelBalanced, balanced);
    for (std::size_t first = 0; first < m_channels.size(); first = NextRun(first, RunOf::Device)) {
        if (const short code = BalanceRun(first, NextRun(first, RunOf::Device), balanced); code != KVNET_OK) {
            return code;
        }
    }
    UpdateViews(nullptr, HINT_BALANCE_CHANGED, this, 0);
    return KVNET_OK;
}

// Each bus of the run once; a stereo device switches both of its buses at once.
short CChannelArray::BalanceRun(std::size_t first, std::size_t end, std::uint8_t on) {
    if (m_stereo != 0) {
        const ChannelDetails head = m_channels[first];
        return Send(head, [&](CChannelArrayDevice& device) {
            return device.StereoPairBalance(head.bus, head.flags, on);
        });
    }
    std::bitset<kBusNumbers> done;
    for (std::size_t place = first; place < std::min(end, m_channels.size()); ++place) {
        const ChannelDetails entry = m_channels[place];
        if (done.test(entry.bus)) {
            continue;
        }
        done.set(entry.bus);
        const short code = Send(entry, [&](CChannelArrayDevice& device) {
            return device.BusBalance(entry.bus, entry.flags, on);
        });
        if (code != KVNET_OK) {
            return code;
        }
    }
    return KVNET_OK;
}

int CChannelArray::UpdateLoadStatus(std::uint8_t address, std::uint8_t bus, std::uint8_t load) {
    for (ChannelDetails& entry : m_channels) {
        const bool device = address == KVNET_ADDRESS_BROADCAST || entry.address == address;
        if (device && (bus == kalvio::kAllBuses || entry.bus == bus)) {
            entry.flags = static_cast<std::uint8_t>((entry.flags & ~kalvio::kChannelLoaded) |
                                                    (load == 1 ? kalvio::kChannelLoaded : 0));
        }
    }
    return 1;
}

void CChannelArray::SetOtherInfo(std::uint8_t mask, int set) {
    for (ChannelDetails& entry : m_channels) {
        entry.flags = static_cast<std::uint8_t>((entry.flags & ~mask) | (set != 0 ? mask : 0));
    }
}

short CChannelArray::UpdateDevicesFromSettings() {
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    if (network == nullptr) {
        return KVNET_ERR_PARAMETER;
    }
    const kalvio::QuietNetwork quiet(*network);
    try {
        WakeDevices();
        return SendStates();
    } catch (const std::bad_alloc&) {
        return KVNET_ERR_MEMORY;
    }
}

void CChannelArray::WakeDevices() const {
    for (std::size_t first = 0; first < m_channels.size(); first = NextRun(first, RunOf::Device)) {
        const ChannelDetails head = m_channels[first];
        CChannelArrayDevice* device = GetChannelArrayDevice(head.address, head.classType);
        VARIANT status;
        if (device != nullptr &&
            kalvio::CurrentPeripheralNetwork()->GetStatus(head.address, &status) == KVNET_OK &&
            !CKvNetStatus(head.address, status).IsOn()) {
            device->ResetChannelArrayDevice();
        }
    }
}

short CChannelArray::SendStates() const {
    for (std::size_t first = 0; first < m_channels.size(); first = NextRun(first, RunOf::Device)) {
        if (const short code = SendRunStates(first, NextRun(first, RunOf::Device)); code != KVNET_OK) {
            return code;
        }
    }
    return KVNET_OK;
}

short CChannelArray::SendRunStates(std::size_t first, std::size_t end) const {
    return Send(m_channels[first], [&](CChannelArrayDevice& device) {
        const std::unique_ptr<void, FreeBlock> block(device.GetChannelArrayDetails());
        if (block == nullptr) {
            return short{KVNET_OK};
        }
        for (std::size_t place = first; place < end; ++place) {
            ChannelDetails entry = m_channels[place];
            device.AddChannelToChannelArrayDetails(block.get(), &entry);
        }
        return device.UpdateDeviceWithChannelArrayDetails(block.get());
    });
}
