#pragma once

// The unit's commands: parameter blocks, header and response lengths, detail texts for reports.

#include "hardware/UsbTransport.h"
#include "platform/Export.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>

namespace kalvio {

class CommandFrame;
class QuietLock;

// Local failure codes of the command layer.
inline constexpr std::int16_t kImageNotOpened = 16;
inline constexpr std::int16_t kImageNoMemory = 17;
inline constexpr std::int16_t kUnknownRegisterRead = 272;
inline constexpr std::int16_t kUnknownRegisterWrite = 274;
inline constexpr std::uint16_t kPeripheralFailed = 0xFFFE;  // no unit, or the exchange with it failed
inline constexpr std::uint16_t kPeripheralTooLong = 0xFFFF; // -1: more than the block to the unit holds

// Memory spaces, as the unit names them. DSPs are 0 for A and 1 for B.
inline constexpr std::uint8_t kSpaceX = 'X'; // micro-controller data; first data memory of a DSP
inline constexpr std::uint8_t kSpaceY = 'Y'; // second data memory of a DSP
inline constexpr std::uint8_t kSpaceS = 'S'; // hardware registers of the micro-controller
inline constexpr std::uint8_t kSpaceI2c = '2';

// General commands that DoCommand carries.
inline constexpr std::uint8_t kCommandMainBoardRelay = 2;
inline constexpr std::uint8_t kCommandPeakDetectors = 5;
inline constexpr std::uint8_t kCommandVideoSync = 6;
inline constexpr std::uint8_t kCommandDivisors = 7;
inline constexpr std::uint8_t kCommandArmAddressCheck = 8;
inline constexpr std::uint8_t kCommandPeripheralBus = 12;
inline constexpr std::uint8_t kCommandGenerator = 13;
inline constexpr std::uint8_t kCommandAutoRange = 14;

// Any thread; each operation is one exchange of the transport and allocates nothing (image loads read their
// file). While no device is open or the unit is suspended every operation answers 0, sends nothing and
// leaves its out values alone; after a failure they mean nothing. Otherwise the status is 0, or what
// UsbTransport::ReportUSBError makes of the transport's or the unit's code.
//
// Addresses: micro-controller 16 bits, bit addresses 32 bits (byte address << 8 | mask), DSP 24-bit words.
// Block lengths are bytes, DSP blocks three bytes a word, most significant first, as the unit keeps them.
class KALVIO_API CommandSet {
public:
    explicit CommandSet(UsbTransport& transport);
    ~CommandSet();
    CommandSet(const CommandSet&) = delete;
    CommandSet& operator=(const CommandSet&) = delete;

    void SetSuspended(bool on) { m_suspended.store(on); }
    [[nodiscard]] bool IsSuspended() const { return m_suspended.load(); }
    [[nodiscard]] bool IsActive() const { return m_transport.IsOpen() && !IsSuspended(); }

    // Sent to a suspended unit too when forced.
    std::int16_t Initialise(std::uint16_t parameter, int force);
    std::int16_t Terminate(std::uint16_t parameter, int force);
    std::int16_t MicroGetMem(std::uint8_t space, std::uint16_t address, std::uint8_t& data);
    std::int16_t MicroGetBit(std::uint8_t space, std::uint32_t bitAddress, int& value);
    std::int16_t DSPGetMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                             std::uint32_t& data);
    std::int16_t DSPGetBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask,
                           int& value);
    // With `check` the unit is first told the address and refuses a write to another (0x0118).
    std::int16_t MicroPutMem(std::uint8_t space, std::uint16_t address, std::uint8_t data, int check);
    std::int16_t MicroPutBit(std::uint8_t space, std::uint32_t bitAddress, int value);
    std::int16_t DSPPutMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t data);
    std::int16_t DSPPutBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask,
                           int state);
    // Read from a suspended unit too when asked.
    std::int16_t MicroGetMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                  std::uint8_t* buffer, int evenIfSuspended);
    std::int16_t DSPGetMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                  std::uint32_t length, std::uint8_t* buffer);
    std::int16_t MicroPutMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                  const std::uint8_t* buffer, int check);
    std::int16_t DSPPutMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                  std::uint32_t length, const std::uint8_t* buffer);
    std::int16_t MicroFillMemBlock(std::uint8_t space, std::uint16_t address, std::uint16_t length,
                                   std::uint8_t value);
    std::int16_t DSPFillMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t length, std::uint32_t value);
    // The unit waits until the bit has the state or the time is over; `value` is the bit then.
    std::int16_t MicroWaitBit(std::uint8_t space, std::uint32_t bitAddress, std::uint8_t state,
                              std::uint16_t timeout, int& value);
    std::int16_t DSPWaitBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask,
                            std::uint8_t state, std::uint16_t timeout, int& value);
    // A whole file goes to the unit: kImageNotOpened, kImageNoMemory, or a command's status. DSP images are
    // padded to whole words, and a refusal of the unit comes back without being reported.
    std::int16_t MicroLoad(std::uint8_t which, const CString& path);
    std::int16_t FPGALoad(const CString& path);
    std::int16_t DSPLoad(std::uint8_t dsp, const CString& path, int flag);
    std::int16_t DoCommand(std::uint8_t id, std::uint32_t outLength, const std::uint8_t* outData,
                           std::uint32_t inLength, std::uint8_t* inData);
    // The same; nothing when the command was not sent.
    std::optional<std::int16_t> DoCommandIfActive(std::uint8_t id, std::uint32_t outLength,
                                                  const std::uint8_t* outData, std::uint32_t inLength,
                                                  std::uint8_t* inData);
    std::int16_t DSPSendCommand(std::uint8_t dsp, std::uint8_t command);
    std::int16_t MicroPutBits(std::uint8_t space, std::uint16_t address, std::uint8_t offBits,
                              std::uint8_t onBits);
    // Arms the address check of the next checked write.
    std::int16_t InitMemAddress(std::uint16_t address);

    // The hardware-access lock: arming the address check and the checked write stand inside it together,
    // as does every sequence that another thread must not part. Taken before the relay guard's lock and the
    // endpoint's.
    QuietLock& HardwareAccess() { return *m_hardwareAccess; }

private:
    // Sends a frame to an active unit, if asked to a parked one too.
    ExchangeOutcome Send(const CommandFrame& frame, bool evenIfSuspended = false);
    // 0, or the status of a failure after it was reported with the text that `detail()` gives.
    template<typename Detail>
    std::int16_t Finish(const ExchangeOutcome& outcome, const CommandFrame& frame, Detail detail);
    template<typename Detail>
    std::int16_t Run(const CommandFrame& frame, Detail detail);
    // The response's byte at 12, widened, goes to `value`.
    template<typename Detail>
    std::int16_t RunForBit(const CommandFrame& frame, int& value, Detail detail);
    // Runs `write()`, for a checked one after arming the check of its address.
    template<typename Write>
    std::int16_t ArmAndWrite(std::uint16_t address, int check, Write write);
    std::int16_t StartOrStop(CommandFrame& frame, std::uint16_t parameter, int force);
    std::int16_t DownloadImage(CommandFrame& frame, const CString& path);
    std::int16_t ReportGeneralCommand(const ExchangeOutcome& outcome, std::uint8_t id);

    UsbTransport& m_transport;
    std::unique_ptr<QuietLock> m_hardwareAccess;
    std::atomic<bool> m_suspended{false};
};

} // namespace kalvio
