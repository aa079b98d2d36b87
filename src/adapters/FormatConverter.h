#pragma once

// The base of the serial-audio adapters.

#include "platform/Export.h"
#include "switching/KvNetDevice.h"

// A peripheral of the format-converter class; adds nothing to the device record. User-interface thread.
class KALVIO_API CFormatConverter : public CKvNetDevice {
public:
    CFormatConverter() = default;
    CFormatConverter(const CKvNetStatus& status, int notResponding) : CKvNetDevice(status, notResponding) {}
};
