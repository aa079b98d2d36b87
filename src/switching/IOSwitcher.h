#pragma once

// The I/O switcher: a matrix of relays on two buses, each with two groups of eight relays, a balanced
// measurement mode and a load.

#include "platform/Export.h"
#include "switching/RelayFrames.h"
#include "switching/Switcher.h"

#include <array>
#include <cstdint>

// The block that gathers channels: for bus A and bus B the masks of group X and group Y and the flags, and
// whether any channel was on it.
struct CIOSwitcherDetails {
    std::array<std::uint8_t, 3> bus[2] = {};
    int used[2] = {};
};

// Bus 0 is A, any other B; group 0 is X, any other Y; channels are relays 0 to 7. A stereo pair is relay 2k
// of bus A and relay 2k + 1 of bus B in one group.
//
// Operations answer 0, the code of the exchange, KVNET_ERR_RESPONSE_MISMATCH when the answer does not repeat
// what was sent, or KVNET_ERR_PARAMETER, without a frame, for an object whose address is no device's. Views
// are told HINT_SWITCHER_CHANGED and HINT_DEVICE_CHANGED once the exchange succeeded, before the answer is
// looked at. The second frame of a pair is sent only when the first was answered well. Nothing is shown to
// the user. User-interface thread.
class KALVIO_API CIOSwitcher : public CSwitcher {
public:
    CIOSwitcher() = default;
    CIOSwitcher(const CKvNetStatus& status, int notResponding) : CSwitcher(status, notResponding) {}
    CIOSwitcher(const CIOSwitcher&) = default;
    CIOSwitcher& operator=(const CIOSwitcher&) = default;
    ~CIOSwitcher() override = default;

    int CanDownloadFirmware() override; // 0, never

    int IsBusValid(short bus) override;         // 0 and 1
    int IsGroupValid(short group) override;     // 0 and 1
    int IsChannelValid(short channel) override; // 1 to 2048
    // Reads the state of a bus. Not told to views; `state` is left alone when the exchange fails.
    virtual short GetBusStatus(std::uint8_t bus, STRUCT_RESPONSE_RELAY_STATUS_BUS* state);

    int ResetChannelArrayDevice() override;
    short BusExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel, std::uint8_t flags,
                              std::uint8_t on) override;
    short BusGroupExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                   std::uint8_t on) override;
    short BusAll(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    short BusGroupAll(std::uint8_t bus, std::uint8_t group, std::uint8_t on) override;
    short BusChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel, std::uint8_t on) override;
    short BusBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    // The loads also tell every channel array.
    short BusLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    short StereoPairExclusiveChannel(std::uint8_t group, std::uint8_t channel, std::uint8_t partnerChannel,
                                     std::uint8_t flags, std::uint8_t on) override;
    short StereoPairGroupExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                          std::uint8_t partnerChannel, std::uint8_t on) override;
    short StereoPairAll(std::uint8_t flags, std::uint8_t on) override;
    short StereoPairGroupAll(std::uint8_t group, std::uint8_t on) override;
    short StereoPairChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                            std::uint8_t on) override;
    // Views are told after the second exchange, of both buses.
    short StereoPairBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    short StereoPairLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;

    // A CIOSwitcherDetails.
    void* GetChannelArrayDetails() override;
    short UpdateDeviceWithChannelArrayDetails(void* details) override;
    int AddChannelToChannelArrayDetails(void* details, ChannelDetails* channel) override;

    // Reads the DC voltages that the unit measures on the buses; null: not wanted. 1, or 0 when the address
    // is no device's or the exchange failed; `status` (may be null) gets the code of the exchange.
    int GetDCMeasurement(signed char* positiveA, signed char* negativeA, signed char* positiveB,
                         signed char* negativeB, short* status);

private:
    void TellLoad(std::uint8_t address, std::uint8_t bus, std::uint8_t on) const;
};
