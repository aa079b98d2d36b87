#pragma once

// A named, ordered list of device channels that is used as one multi-channel switch.

#include "platform/Export.h"
#include "platform/Text.h"
#include "switching/ChannelDetails.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class CArchive;
class CChannelArrayDevice;

// Every change is stored first and then sent, and stays stored when a device fails, so that the array shows
// what was asked last. Devices are found through the peripheral network, each just before it is sent to.
// Consecutive entries of one device (stereo) or of one bus of a device (mono) form a run; runs are sent to
// one after the other, also when a device has several. In a stereo array the entries 0 and 1, 2 and 3, ...
// are partners. User-interface thread.
//
// Operations answer a KvNetError: the code of the first device that failed, after which no other is sent to;
// KVNET_ERR_DEVICE_TYPE when there is no object for a device. `on` counts as set unless it is 0.
class KALVIO_API CChannelArray {
public:
    // Which way the channels lead. Stored; nothing in the library depends on it.
    enum ChannelArrayDir : std::uint8_t { DirectionNone = 0, DirectionInput = 1, DirectionOutput = 2 };

    explicit CChannelArray(const char* name);
    CChannelArray(const CChannelArray&) = delete;
    // Takes over name, stereo, exclusive only, class type and channels, but not the direction.
    CChannelArray& operator=(const CChannelArray& other);
    virtual ~CChannelArray() = default;

    // Name (a text), stereo (32 bits), class type (8 bits), direction (8 bits), exclusive only (32 bits),
    // count, seven bytes a channel. Configurations before version 20 lack direction and exclusive only. Loads
    // nothing from files up to version 101, revision 98. Throws CArchiveException for a short or damaged
    // archive, and has changed nothing then.
    virtual void Serialize(CArchive& archive);

    [[nodiscard]] const CString& GetName() const { return m_name; }
    void SetName(const CString& name) { m_name = name; }
    [[nodiscard]] int IsStereoArray() const { return m_stereo; }
    void SetStereoArray(int stereo) { m_stereo = stereo; }
    // Whether channels may only be switched exclusively.
    [[nodiscard]] int GetExclusiveOnly() const { return m_exclusiveOnly; }
    void SetExclusiveOnly(int exclusiveOnly) { m_exclusiveOnly = exclusiveOnly; }
    [[nodiscard]] ChannelArrayDir GetDirection() const { return m_direction; }
    void SetDirection(ChannelArrayDir direction) { m_direction = direction; }
    [[nodiscard]] std::uint8_t GetDeviceClassType() const { return m_deviceClassType; } // 0 while empty
    [[nodiscard]] short GetNumChannels() const; // 32767 when there are more

    // Appends a channel: 1, or 0 when the array holds channels of another class type or memory ran out.
    int AddChannel(const ChannelDetails& details);
    // By index from 0: 1, or 0 without such a channel.
    int GetChannelDetails(short index, ChannelDetails& details) const;
    int SetChannelDetails(short index, const ChannelDetails& details);
    void RemoveAllChannels();

    // The first channel's device, and the first channel at or after `start` whose device (or device or bus)
    // differs from the one given. Address 254 and index -1 when there is none.
    std::uint8_t GetFirstDeviceAddress(short* index) const;
    std::uint8_t GetNextDeviceAddress(std::uint8_t address, short start, short* index) const;
    std::uint8_t GetNextDeviceBusAddress(std::uint8_t address, std::uint8_t bus, short start,
                                         short* index) const;

    // Channels count from 1 here. One channel (with its partner) on and all others off, or the other way
    // round. KVNET_ERR_CHANNEL_NOT_IN_ARRAY.
    short ExclusiveChannel(short channel, std::uint8_t on);
    // One channel (with its partner), the others as they are. KVNET_ERR_PARAMETER for an exclusive-only
    // array, KVNET_ERR_CHANNEL_NOT_IN_ARRAY.
    short AddRemoveChannel(short channel, std::uint8_t on);
    // All channels off. Runs that are off already are sent to only with `force`.
    short ClearChannels(int force);
    // All channels on; whole buses. KVNET_ERR_PARAMETER for an exclusive-only array.
    short SetAllChannels();
    // Balanced measurement mode of every bus. Afterwards tells views HINT_BALANCE_CHANGED.
    short Balance(int on);
    // Switches on the devices that are in standby, and sends each the stored states of its channels. The user
    // is told of no failure. KVNET_ERR_PARAMETER without a network, KVNET_ERR_MEMORY.
    short UpdateDevicesFromSettings();

    // Notes in the channels of a bus (255: of every bus, of every device) that its load is on (1) or off. 1.
    int UpdateLoadStatus(std::uint8_t address, std::uint8_t bus, std::uint8_t load);
    // Sets or clears bits in the flags of every channel.
    void SetOtherInfo(std::uint8_t mask, int set);

    // The object that drives a device; null when there is none. Good until the next look-up.
    [[nodiscard]] static CChannelArrayDevice* GetChannelArrayDevice(std::uint8_t address,
                                                                    std::uint8_t classType);
    // Whether the array has channels of that bus outside the group; of another class type.
    [[nodiscard]] int OtherGroupsExistInArray(std::uint8_t address, std::uint8_t group,
                                              std::uint8_t bus) const;
    [[nodiscard]] int OtherClassTypesExistInArray(std::uint8_t classType) const;

private:
    // What makes neighbours one run.
    enum class RunOf { Device, Bus };

    struct Exclusive;
    struct Loaded;

    [[nodiscard]] RunOf OwnRuns() const { return m_stereo != 0 ? RunOf::Device : RunOf::Bus; }
    [[nodiscard]] bool HasChannel(int index) const;
    [[nodiscard]] static int PartnerOf(int index) { return index % 2 == 0 ? index + 1 : index - 1; }
    [[nodiscard]] std::size_t NextRun(std::size_t first, RunOf kind) const;
    std::uint8_t AddressAt(std::size_t place, short* index) const;
    [[nodiscard]] std::size_t FirstOther(short start, const ChannelDetails& than, RunOf kind) const;
    // Gives the entries of a run a state; whether any had another one.
    bool StateChanging(std::size_t first, std::size_t end, std::uint8_t state);
    void StoreState(int index, std::uint8_t state);
    void StoreExclusiveStates(int index, const ChannelDetails& target, std::uint8_t state);
    short SwitchRunBeforeExclusive(std::size_t first, const Exclusive& exclusive);
    short SwitchExclusively(const Exclusive& exclusive);
    short BalanceRun(std::size_t first, std::size_t end, std::uint8_t on);
    void WakeDevices() const;
    [[nodiscard]] short SendStates() const;
    [[nodiscard]] short SendRunStates(std::size_t first, std::size_t end) const;
    [[nodiscard]] short SwitchAll(const ChannelDetails& entry, bool wholeBus, std::uint8_t on) const;
    template<typename Command>
    static short Send(const ChannelDetails& entry, Command command);
    [[nodiscard]] static Loaded Load(CArchive& archive);

    CString m_name;
    int m_stereo = 0;
    int m_exclusiveOnly = 0;
    std::uint8_t m_deviceClassType = 0; // of the first channel
    ChannelArrayDir m_direction = DirectionNone;
    std::vector<ChannelDetails> m_channels;
};
