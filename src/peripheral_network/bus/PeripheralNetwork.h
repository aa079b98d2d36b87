#pragma once

// The peripheral network as its devices, channel arrays and settings see it; the network document
// implements it.

#include "host/PeripheralNetworkQueries.h"
#include "peripheral_network/bus/KvNetErrors.h"
#include "peripheral_network/bus/KvNetStatus.h"
#include "platform/Automation.h"
#include "platform/Export.h"

#include <cstdint>
#include <span>

class CChannelArray;
class CChannelArrayDevice;
class CChannelArrayList;
class CComboBox;

namespace kalvio {

inline constexpr int kNoParameterText = -1;

// User-interface thread.
class PeripheralNetwork : public PeripheralNetworkQueries {
public:
    // Reads a device's status word into `status` (a 32-bit integer; not null), or resets a device (on 1:
    // switched on, 0: to standby; 255: every device) and answers its status word (null: not wanted). Both
    // report their failures to the user; the result is a KvNetError.
    virtual short GetStatus(std::uint8_t address, VARIANT* status) = 0;
    virtual short Reset(std::uint8_t address, int on, VARIANT* status) = 0;

    // Whether failures are shown to the user; the setter answers the value before.
    [[nodiscard]] virtual int GetShowErrorMessages() const = 0;
    virtual int SetShowErrorMessages(int show) = 0;

    // Composes "The %s method failed because %s.", traces it, and shows it in a box when the host's
    // automation display is on and messages are to be shown. The reason is a string id, which may take the
    // text of the parameter id (kNoParameterText: none).
    virtual void ReportMethodError(const CString& method, unsigned reason, int parameter) = 0;

    // Devices found by the last scan, in ascending address; the scan itself (1, or 0 when memory ran out).
    [[nodiscard]] virtual std::span<const CKvNetStatus> Devices() const = 0;
    virtual int FillDeviceList() = 0;
    // The addresses of the devices that were found, of one class and one type (0: any), with the address as
    // item data. 0 only without a combo.
    virtual int FillKvNetCombo(CComboBox* combo, std::uint8_t deviceClass, std::uint8_t deviceType,
                               std::uint8_t selectAddress) const = 0;

    // The object that drives the channel-array device of a class type at an address: null for another class
    // type or when there is no such object. It is good until the next look-up.
    virtual CChannelArrayDevice* FindChannelArrayDevice(std::uint8_t address, std::uint8_t classType) = 0;

    // The arrays. Codes are KvNetErrors.
    [[nodiscard]] virtual CChannelArrayList& ChannelArrays() = 0;
    // The names of all arrays with the array as item data. 0 only without a combo.
    virtual int FillChannelArrayDropList(CComboBox* combo, const CChannelArray* select) const = 0;
    virtual CChannelArray* GetChannelArray(const char* name) = 0; // without case; null: none
    virtual short DefineArray(const char* name, int stereo, int exclusiveOnly) = 0;
    virtual short RemoveArray(const char* name) = 0;
    virtual int IsBusGroupPartOfAnyArray(std::uint8_t address, std::uint8_t bus, std::uint8_t group) = 0;
    // Notes in every array whether the load of a bus (255: of all) at an address is on. 1, or 0 when an
    // array could not be told.
    virtual int UpdateLoadStatusForAllArrays(std::uint8_t address, std::uint8_t bus, std::uint8_t load) = 0;
    // Whether a saved configuration carries the arrays; the flag in front of the list in its archive.
    [[nodiscard]] virtual int GetSaveChannelArrays() const = 0;
    virtual void SetSaveChannelArrays(int save) = 0;

protected:
    ~PeripheralNetwork() = default;
};

// The network of the host application in force; null when it has none.
[[nodiscard]] KALVIO_API PeripheralNetwork* CurrentPeripheralNetwork();

// Reports a KvNetError under a method's name; nothing without a network.
KALVIO_API void ReportKvNetError(const CString& method, short code);

// Keeps failures from being shown while it lives, and puts the setting back on every way out.
class KALVIO_API QuietNetwork {
public:
    explicit QuietNetwork(PeripheralNetwork& network)
        : m_network(network), m_before(network.SetShowErrorMessages(0)) {}
    ~QuietNetwork() { m_network.SetShowErrorMessages(m_before); }
    QuietNetwork(const QuietNetwork&) = delete;
    QuietNetwork& operator=(const QuietNetwork&) = delete;

private:
    PeripheralNetwork& m_network;
    int m_before;
};

} // namespace kalvio
