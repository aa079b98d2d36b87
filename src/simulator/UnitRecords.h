#pragma once

// What happened in a virtual unit, for tests and traces. Any thread.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kalvio::simulator {

struct UnitState;

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

class UnitRecords {
public:
    explicit UnitRecords(std::shared_ptr<UnitState> state);

    // What the host did that no unit takes, one sentence each; empty when all was well.
    [[nodiscard]] std::vector<std::string> ProtocolErrors() const;
    void ClearProtocolErrors();
    [[nodiscard]] std::vector<Exchange> Exchanges() const;
    [[nodiscard]] std::vector<RequestRecord> Requests() const;
    void ClearLogs();                                 // exchanges and requests
    [[nodiscard]] std::uint32_t RequestCount() const; // since construction, never cleared
    [[nodiscard]] std::vector<RegisterWrite> RegisterWrites() const;
    [[nodiscard]] std::vector<LoadedImage> Images() const;
    // Analogue relay bits that two writes in a row to a register toggled within 120 ms, one sentence each.
    // Only what the host's guard promises is judged: not 's' and 'w'; 'v' only in generator records; not
    // a direct write that changes bit 0 alone of 'p', 'q', 't' or 'u'; and no write across an Initialise.
    [[nodiscard]] std::vector<std::string> RelayViolations() const;

private:
    std::shared_ptr<UnitState> m_state;
};

} // namespace kalvio::simulator
