#pragma once

// A virtual analyser unit behind the driver interface. It knows the unit through bytes alone: requests
// come in, bytes go out, and anything malformed is refused and noted where a test can see it. All
// operations may be called from any thread.

#include "platform/DeviceDriver.h"
#include "simulator/DeviceUnderTest.h"
#include "simulator/Faults.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::simulator {

// The unit's own sense of time, in milliseconds; both are given by whoever builds the unit, so that a
// test's clock rules here too. `sleep` is used for slow answers only. Neither is called while the unit
// holds its lock.
struct UnitClock {
    std::function<std::uint32_t()> now;
    std::function<void(std::uint32_t)> sleep;
};

struct UnitOptions {
    std::string deviceName = R"(\\.\kvusb-0)";
    std::uint16_t releaseNumber = 267;    // bcdDevice of the descriptor
    std::uint32_t absentOpens = 0;        // so many first opens fail, as if the unit were not plugged in
    bool present = true;                  // false: every open fails
    std::uint8_t mainBoardVersion = 0x21; // micro 'X' 0x8000
    std::uint8_t mainBoardOptions = 0x05; // micro 'X' 0x8001
    std::uint8_t analogueVersion = 0x12;  // analogue register 'p' read back
    std::uint8_t linkFit = 0x13;          // analogue register 'q' read back
    std::int16_t mainTemperatureHalfDegrees = 61;     // 30.5 degrees
    std::int16_t analogueTemperatureHalfDegrees = 66; // 33.0 degrees
    std::uint32_t resultCadenceMs = 20;               // a new result block every so often
    double digitalFrameRateHz = 48000.0;
    double referenceFrameRateHz = 48000.0;
};

// One decoded exchange: a command frame with its response, as the unit saw it. A frame that never came
// whole is not among them.
struct Exchange {
    std::uint32_t command = 0;
    std::vector<std::uint8_t> parameters; // header bytes from offset 16
    std::vector<std::uint8_t> outData;
    std::uint32_t expectedInLength = 0;
    bool refused = false;
    std::uint16_t error = 0;
    std::uint32_t tick = 0; // unit clock when the header arrived
};

// One driver request as it arrived, faulty and refused ones included.
struct RequestRecord {
    std::uint32_t code = 0;
    std::vector<std::uint8_t> input;
    std::uint32_t dataLength = 0;
    bool ok = false;
};

// A write to a register of the analogue board, for judging relay timing from outside. A generator
// record writes only the registers that it flags, an auto-range record all of 'p' to 's'.
struct RegisterWrite {
    char reg = 0; // 'p' to 'w'
    std::uint8_t value = 0;
    std::uint8_t changed = 0;
    std::uint32_t tick = 0;
};

// An image that was loaded: which load command, its selector, the bytes.
struct LoadedImage {
    std::uint32_t command = 0; // 19 micro, 20 gate array, 21 DSP
    std::uint8_t which = 0;
    std::vector<std::uint8_t> bytes;
};

enum class CalibrationMemory : std::uint8_t { MainBoard = 0x52, AnalogueBoard = 0x54 };

class VirtualUnit final : public DeviceDriver {
public:
    explicit VirtualUnit(UnitClock clock, UnitOptions options = {});
    ~VirtualUnit() override;
    VirtualUnit(const VirtualUnit&) = delete;
    VirtualUnit& operator=(const VirtualUnit&) = delete;

    DeviceHandle Open(std::string_view name) override;
    DriverReply Control(DeviceHandle device, const DriverRequest& request) override;
    void Close(DeviceHandle device) override;

    // What the unit is and what is plugged in.
    void SetPresent(bool present);
    void SetReleaseNumber(std::uint16_t release);
    void SetDeviceUnderTest(DeviceUnderTest device);
    void SetResultCadence(std::uint32_t milliseconds);
    [[nodiscard]] Stimulus GetStimulus(int channel) const;

    // Faults. Clearing them also plugs a disconnected unit in again.
    void AddFault(const Fault& fault);
    void ClearFaults();
    [[nodiscard]] std::uint32_t FaultsShown() const;

    // What happened, for tests and traces.
    [[nodiscard]] std::vector<std::string>
    ProtocolErrors() const; // one sentence each; empty when all was well
    void ClearProtocolErrors();
    [[nodiscard]] std::vector<Exchange> Exchanges() const;
    [[nodiscard]] std::vector<RequestRecord> Requests() const;
    void ClearLogs();                                 // exchanges and requests
    [[nodiscard]] std::uint32_t RequestCount() const; // since construction, never cleared
    [[nodiscard]] std::vector<RegisterWrite> RegisterWrites() const;
    [[nodiscard]] std::vector<LoadedImage> Images() const;
    [[nodiscard]] bool IsInitialised() const; // between the Initialise and the Terminate command
    [[nodiscard]] bool IsOpen() const;
    // Analogue relay bits that two writes in a row to a register toggled within 120 ms, one sentence each.
    // Only what the host's guard promises is judged: not 's' and 'w'; 'v' only in generator records; not
    // a direct write that changes bit 0 alone of 'p', 'q', 't' or 'u'; and no write across an Initialise.
    [[nodiscard]] std::vector<std::string> RelayViolations() const;

    // Memories, past the wire. Spaces as the commands name them: 'X', 'S', 'C', 'I'; DSP 'X', 'Y'. What
    // does not exist reads 0 and ignores writes. A register gives the value last written.
    [[nodiscard]] std::uint8_t PeekMicro(char space, std::uint16_t address) const;
    void PokeMicro(char space, std::uint16_t address, std::uint8_t value);
    [[nodiscard]] std::uint32_t PeekDsp(int dsp, char space, std::uint32_t address) const;
    void PokeDsp(int dsp, char space, std::uint32_t address, std::uint32_t value);
    [[nodiscard]] std::uint8_t PeekRegister(char reg) const;
    [[nodiscard]] std::array<std::uint8_t, 8> MainBoardRelays() const;
    [[nodiscard]] std::vector<std::uint8_t> ReadCalibration(CalibrationMemory memory) const; // 4096 bytes
    void WriteCalibration(CalibrationMemory memory, std::size_t offset, std::span<const std::uint8_t> bytes);
    // Fills both copies of a memory with a valid image of the unit's own making.
    void SetDefaultCalibration(CalibrationMemory memory);

    // The peripheral bus: a peripheral answers one request frame with one reply frame, or stays silent
    // (empty). It is called with the unit's lock held and must not call the unit; an empty function takes
    // it off the bus. Attempts are counted per address; broadcasts count at 255 and reach everyone.
    using Peripheral = std::function<std::vector<std::uint8_t>(std::span<const std::uint8_t> frame)>;
    void AttachPeripheral(std::uint8_t address, Peripheral peripheral);
    [[nodiscard]] std::uint32_t PeripheralAttempts(std::uint8_t address) const;

private:
    struct State;
    std::unique_ptr<State> m_state; // guarded by State::lock
};

} // namespace kalvio::simulator
