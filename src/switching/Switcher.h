#pragma once

// The base of all switchers.

#include "platform/Export.h"
#include "switching/ChannelArrayDevice.h"
#include "switching/KvNetDevice.h"

// User-interface thread.
class KALVIO_API CSwitcher : public CKvNetDevice, public CChannelArrayDevice {
public:
    CSwitcher() = default;
    CSwitcher(const CKvNetStatus& status, int notResponding) : CKvNetDevice(status, notResponding) {}
    CSwitcher(const CSwitcher&) = default;
    CSwitcher& operator=(const CSwitcher&) = default;
    ~CSwitcher() override = default;

    // Whether the device has such a bus, group or channel: 1 or 0.
    virtual int IsBusValid(short bus) = 0;
    virtual int IsGroupValid(short group) = 0;
    virtual int IsChannelValid(short channel) = 0;
};
