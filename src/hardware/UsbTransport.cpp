#include "hardware/UsbTransport.h"

#include "hardware/HardwareTexts.h"
#include "hardware/link/DriverRequests.h"
#include "hardware/link/FailureReport.h"
#include "hardware/link/FairLock.h"
#include "hardware/link/FrameExchange.h"
#include "hardware/link/Holding.h"
#include "hardware/link/QuietLock.h"

#include <array>
#include <atomic>
#include <new>

namespace kalvio {

namespace {

constexpr int kEndpoints = 7;
constexpr int kCommandEndpoint = 2;
constexpr int kFirstInPipe = kEndpoints;
constexpr int kDrainReads = 5;
constexpr int kLinkErrorsForMessage = 3;
constexpr std::int16_t kNotToldYet = 1; // the status of every failure before bring-up has ended

} // namespace

struct UsbTransport::Parts {
    explicit Parts(DeviceDriver& driver) : requests(driver) {}

    [[nodiscard]] bool IsInert() const { return terminating.load() || !requests.IsOpen(); }
    FairLock& LockOf(int endpoint) { return endpoints[static_cast<std::size_t>(endpoint - 1)]; }
    // One exchange, opening and closing.
    FairLock& CommandLock() { return LockOf(kCommandEndpoint); }
    void WarnOfBadLink();
    bool DrainInput(std::span<std::uint8_t> buffer);

    DriverRequests requests;
    std::array<FairLock, kEndpoints> endpoints; // [0] is endpoint 1's
    std::atomic<bool> terminating{false};
    std::atomic<bool> initialised{false};
    std::atomic<int> linkErrors{0};
    std::atomic<bool> linkMessageShown{false}; // in this opening; decided under the command lock
    FrameExchange frames{requests, linkErrors};
};

std::uint16_t GetPipe(int endpoint, int direction) {
    switch (direction) {
    case static_cast<int>(EPDirection::Out):
        return static_cast<std::uint16_t>(endpoint - 1);
    case static_cast<int>(EPDirection::In):
        return static_cast<std::uint16_t>(endpoint + kFirstInPipe - 1);
    default:
        return 0xFFFF;
    }
}

int GetEndpoint(int pipe) {
    return pipe < kFirstInPipe ? pipe + 1 : pipe - kFirstInPipe + 1;
}

UsbTransport::UsbTransport(DeviceDriver& driver) : m_parts(std::make_unique<Parts>(driver)) {}

UsbTransport::~UsbTransport() = default;

bool UsbTransport::USBInitialise() {
    const Holding hold(m_parts->CommandLock());
    if (IsOpen()) {
        return true;
    }
    if (!m_parts->requests.Open()) {
        return false;
    }
    m_parts->linkErrors.store(0);
    m_parts->linkMessageShown.store(false);
    return true;
}

void UsbTransport::USBTerminate() {
    const Holding hold(m_parts->CommandLock());
    m_parts->requests.Close();
}

bool UsbTransport::IsOpen() const {
    return m_parts->requests.IsOpen();
}

std::uint16_t UsbTransport::GetLastUSBError(std::uint32_t& status) {
    status = 0;
    return !IsOpen() || m_parts->requests.LastError(status) ? kUsbOk : kUsbLastErrorFailed;
}

std::uint16_t UsbTransport::USBGetDeviceDescriptor(std::uint8_t* descriptor18) {
    const std::span<std::uint8_t, kDescriptorBytes> descriptor(descriptor18, kDescriptorBytes);
    return !IsOpen() || m_parts->requests.ReadDescriptor(descriptor) ? kUsbOk : kUsbReadFailed;
}

std::uint16_t UsbTransport::USBSetEndpointPairing(std::uint16_t pairing) {
    return !IsOpen() || m_parts->requests.SetPairing(pairing) ? kUsbOk : kUsbPairingFailed;
}

std::uint16_t UsbTransport::USBResetEndpoint(std::int8_t endpoint) {
    const auto widened = static_cast<std::uint16_t>(static_cast<std::int16_t>(endpoint));
    return !IsOpen() || m_parts->requests.ResetEndpoint(widened) ? kUsbOk : kUsbResetEndpointFailed;
}

int UsbTransport::ResetEndpoints() {
    for (std::int8_t endpoint = 1; endpoint <= kEndpoints; ++endpoint) {
        if (USBResetEndpoint(endpoint) != kUsbOk) {
            return 0;
        }
    }
    return 1;
}

std::uint16_t UsbTransport::USBResetPipe(int endpoint, EPDirection direction) {
    if (IsOpen()) {
        m_parts->requests.ResetPipe(
            static_cast<std::int16_t>(GetPipe(endpoint, static_cast<int>(direction))));
    }
    return kUsbOk;
}

std::uint16_t UsbTransport::USBReset() {
    if (IsOpen()) {
        m_parts->requests.ResetDevice();
    }
    return kUsbOk;
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS int UsbTransport::LockEndpoint(int endpoint) {
    if (endpoint < 1 || endpoint > kEndpoints) {
        return 0;
    }
    m_parts->LockOf(endpoint).lock();
    return 1;
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS int UsbTransport::UnlockEndpoint(int endpoint) {
    if (endpoint < 1 || endpoint > kEndpoints) {
        return 0;
    }
    m_parts->LockOf(endpoint).unlock();
    return 1;
}

std::uint16_t UsbTransport::USBTransfer(const UsbExchange& exchange) {
    return Exchange(exchange).Code();
}

ExchangeOutcome UsbTransport::Exchange(const UsbExchange& exchange) {
    Parts& parts = *m_parts;
    if (parts.IsInert()) {
        return CommandNotSent{};
    }
    if (parts.linkErrors.load() >= kLinkErrorsForMessage) {
        parts.WarnOfBadLink();
    }
    const Holding hold(parts.CommandLock());
    return parts.IsInert() ? ExchangeOutcome(CommandNotSent{}) : parts.frames.Run(exchange);
}

// Whether to show is decided under the command lock, so that only one thread does; the box itself comes up
// without it.
void UsbTransport::Parts::WarnOfBadLink() {
    {
        const Holding hold(CommandLock());
        if (!initialised.load() || linkMessageShown.exchange(true)) {
            return;
        }
    }
    ShowMessageWhenQuiet(LoadText(kTextBadLink));
}

std::uint16_t UsbTransport::USBCleanupOutstandingData([[maybe_unused]] int code,
                                                      const std::function<void()>& terminate) {
    if (!IsOpen()) {
        return kUsbOk;
    }
    std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[kBulkChunkBytes]);
    if (!buffer) {
        return kUsbNoDrainBuffer;
    }
    const bool drained = m_parts->DrainInput({buffer.get(), kBulkChunkBytes});
    buffer.reset();
    if (!drained) {
        terminate();
        return kUsbReadFailed;
    }
    return USBReset();
}

// False when the last of the reads failed.
bool UsbTransport::Parts::DrainInput(std::span<std::uint8_t> buffer) {
    const Holding hold(CommandLock());
    bool failed = false;
    for (int read = 0; read < kDrainReads; ++read) {
        const DriverReply reply = requests.Drain(buffer);
        failed = !reply.ok;
        if (failed && reply.error == kErrorSemaphoreTimeout) {
            return true;
        }
        if (failed) {
            requests.DropLastError();
            requests.ResetDevice();
        }
    }
    return !failed;
}

std::int16_t UsbTransport::Report(const ExchangeOutcome& outcome, const char* functionName,
                                  const CString& detail) {
    return IsInitialised() ? ReportFailure(outcome, functionName, detail) : kNotToldYet;
}

// A bare code no longer says whose it was; what is told goes by the code alone.
std::int16_t UsbTransport::ReportUSBError(std::uint16_t code, const char* functionName,
                                          const CString& detail) {
    return Report(UnitRefusal{code}, functionName, detail);
}

void UsbTransport::SetTerminating(bool on) {
    m_parts->terminating.store(on);
}

void UsbTransport::SetInitialised(bool on) {
    m_parts->initialised.store(on);
}

bool UsbTransport::IsInitialised() const {
    return m_parts->initialised.load();
}

int UsbTransport::LinkErrors() const {
    return m_parts->linkErrors.load();
}

void UsbTransport::ClearLinkErrors() {
    m_parts->linkErrors.store(0);
}

} // namespace kalvio
