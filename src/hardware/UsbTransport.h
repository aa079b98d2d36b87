#pragma once

// The link to the unit: driver requests, and one framed command exchange at a time on endpoint 2.

#include "hardware/ExchangeOutcome.h"
#include "platform/DeviceDriver.h"
#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace kalvio {

inline constexpr std::uint32_t kBulkChunkBytes = 65472;

enum class EPDirection : int { Out = 0, In = 1 };

[[nodiscard]] KALVIO_API std::uint16_t GetPipe(int endpoint, int direction);
[[nodiscard]] KALVIO_API int GetEndpoint(int pipe);

// One exchange: the caller fills the header from offset 16 on and gives the buffers; the transport fills
// header bytes 0 to 15 and converts parts of the response to host order in place (see USBTransfer).
struct UsbExchange {
    std::uint32_t command = 0;
    std::uint32_t headerLength = 16;
    std::uint8_t* header = nullptr;
    std::uint32_t outLength = 0;
    const std::uint8_t* outData = nullptr;
    std::uint32_t responseLength = 12;
    std::uint8_t* response = nullptr;
    std::uint32_t inLength = 0;
    std::uint8_t* inData = nullptr;
    std::uint8_t kind = 0;
};

// The requests of the driver and the framed exchange. Any thread may call any operation. Without an open
// device every operation succeeds at once and touches nothing.
class KALVIO_API UsbTransport {
public:
    explicit UsbTransport(DeviceDriver& driver);
    ~UsbTransport();
    UsbTransport(const UsbTransport&) = delete;
    UsbTransport& operator=(const UsbTransport&) = delete;

    // Opens the unit's device; the link-error count starts anew. False: absent, or opened by another.
    bool USBInitialise();
    // Closes the device; an exchange that runs is finished before.
    void USBTerminate();
    [[nodiscard]] bool IsOpen() const;

    // The 18 bytes of the USB device descriptor (bcdDevice little-endian at 12): kUsbOk, or kUsbReadFailed
    // for any other number of bytes.
    std::uint16_t USBGetDeviceDescriptor(std::uint8_t* descriptor18);
    std::uint16_t USBSetEndpointPairing(std::uint16_t pairing);      // kUsbOk, kUsbPairingFailed
    std::uint16_t USBResetEndpoint(std::int8_t endpoint);            // kUsbOk, kUsbResetEndpointFailed
    std::uint16_t USBResetPipe(int endpoint, EPDirection direction); // always kUsbOk
    std::uint16_t USBReset();                                        // the device; always kUsbOk
    // The driver's last error status, 0 when it cannot be read: kUsbOk, kUsbLastErrorFailed.
    std::uint16_t GetLastUSBError(std::uint32_t& status);
    // Endpoints 1 to 7 in order: 1, or 0 at the first that fails; later ones are then not reset.
    int ResetEndpoints();
    // Endpoints 1 to 7: 1; any other: 0.
    int LockEndpoint(int endpoint);
    int UnlockEndpoint(int endpoint);

    // One exchange on endpoint 2; callers are served in the order in which they came. Header bytes 0 to 15
    // are filled in here, big-endian. Response bytes 4 to 7 come back in host order, 0 to 3 too when the echo
    // was right, 8 to 9 too when the unit refused; 12 to 15 stay big-endian. kUsbOk, kUsbWriteFailed,
    // kUsbReadFailed, kUsbWrongEcho, or the code with which the unit refused. While the device is closed or
    // shutdown runs: kUsbOk, nothing sent or changed.
    std::uint16_t USBTransfer(const UsbExchange& exchange);
    // The same, telling a failure of the link, a refusal by the unit and a command that was not sent apart.
    ExchangeOutcome Exchange(const UsbExchange& exchange);
    // Throws away stale input of endpoint 2 and resets the device. Only the fifth read's failure ends in
    // kUsbReadFailed; `terminate` is called then, without a lock. kUsbNoDrainBuffer when memory ran out.
    std::uint16_t USBCleanupOutstandingData(int code, const std::function<void()>& terminate);
    // Tells the user of a failed operation as far as the settings ask for it; the code as a status. Before
    // bring-up has ended it shows nothing and answers 1.
    std::int16_t ReportUSBError(std::uint16_t code, const char* functionName, const CString& detail);
    std::int16_t Report(const ExchangeOutcome& outcome, const char* functionName, const CString& detail);

    // While on (shutdown), every exchange succeeds at once without touching anything.
    void SetTerminating(bool on);
    // Bring-up has ended once; from then on failures are shown.
    void SetInitialised(bool on);
    [[nodiscard]] bool IsInitialised() const;
    // Since the device was opened or bring-up ended.
    [[nodiscard]] int LinkErrors() const;
    void ClearLinkErrors();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace kalvio
