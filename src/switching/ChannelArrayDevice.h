#pragma once

// What a device must do to be a member of a channel array.

#include "platform/Export.h"
#include "switching/ChannelDetails.h"

#include <cstdint>

// Arguments are unsigned bytes; `on` is 1 to switch on, 0 off; `partnerChannel` is the other channel of a
// pair (channel + 1 when it is even, channel - 1 when it is odd). Results are KvNetErrors unless said
// otherwise. User-interface thread.
class KALVIO_API CChannelArrayDevice {
public:
    virtual ~CChannelArrayDevice() = default;

    virtual int ResetChannelArrayDevice() = 0; // switches the device on; 1 when done

    // One channel of a bus (or of one of its groups) on, all others off, or the other way round.
    virtual short BusExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                      std::uint8_t flags, std::uint8_t on) = 0;
    virtual short BusGroupExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                           std::uint8_t on) = 0;
    virtual short BusAll(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) = 0;
    virtual short BusGroupAll(std::uint8_t bus, std::uint8_t group, std::uint8_t on) = 0;
    virtual short BusChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel, std::uint8_t on) = 0;
    virtual short BusBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) = 0;
    virtual short BusLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) = 0;

    // The same for both buses as a pair.
    virtual short StereoPairExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                             std::uint8_t partnerChannel, std::uint8_t flags,
                                             std::uint8_t on) = 0;
    virtual short StereoPairGroupExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                                  std::uint8_t partnerChannel, std::uint8_t on) = 0;
    virtual short StereoPairAll(std::uint8_t flags, std::uint8_t on) = 0;
    virtual short StereoPairGroupAll(std::uint8_t group, std::uint8_t on) = 0;
    virtual short StereoPairChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                    std::uint8_t on) = 0;
    virtual short StereoPairBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) = 0;
    virtual short StereoPairLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) = 0;

    // A block that gathers channels and is sent with one command: made zeroed with ::operator new (null: the
    // device has none) and freed by the caller with ::operator delete, since it has no destructor.
    virtual void* GetChannelArrayDetails() = 0;
    virtual short UpdateDeviceWithChannelArrayDetails(void* details) = 0;
    virtual int AddChannelToChannelArrayDetails(void* details, ChannelDetails* channel) = 0; // 1: merged
};
