#pragma once

// The base of every peripheral that the library drives.

#include "peripheral_network/bus/KvNetStatus.h"
#include "platform/Export.h"

// The status word changes only through ResetDevice, RefreshStatus and loading. User-interface thread.
class KALVIO_API CKvNetDevice {
public:
    CKvNetDevice() = default;
    CKvNetDevice(const CKvNetStatus& status, int notResponding);
    CKvNetDevice(const CKvNetDevice&) = default;
    CKvNetDevice& operator=(const CKvNetDevice&) = default;
    virtual ~CKvNetDevice() = default;

    // Brings a device that was stored as on and is found in standby back on, without telling the user of
    // failures: 1 when the device answers and is as stored, else 0. The stored status stays.
    virtual int UpdateDeviceFromSettings();
    // The status record: one byte of address, four of status word.
    virtual void Serialize(CArchive& archive);
    // 1 when its channels may stand in channel arrays.
    virtual int IsChannelArrayDevice();
    // 1 when it takes a firmware download; as it is, when the last status read or reset succeeded.
    virtual int CanDownloadFirmware();

    // Switches the device on (1) or to standby (0): 1 and the answered status is kept, or 0, status word 0
    // and the not-responding flag set. A device that does not respond counts as in standby without a frame.
    int ResetDevice(int on);
    // Reads the status without telling the user of failures: 1, or 0 as ResetDevice.
    int RefreshStatus();

    [[nodiscard]] const CKvNetStatus& Status() const { return m_status; }
    [[nodiscard]] CKvNetStatus& Status() { return m_status; }
    [[nodiscard]] int IsNotResponding() const { return m_notResponding; }

    [[nodiscard]] std::uint8_t GetAddress() const { return m_status.GetAddress(); }

private:
    int Answered(const VARIANT& statusWord);
    int DidNotAnswer();

    CKvNetStatus m_status;
    int m_notResponding = 0;
};
