#pragma once

// A driver that follows a script: these requests in this order, these bytes in, these bytes out. It throws
// nothing: what did not fit the script, and what of it was not used, is collected as sentences.

#include "platform/DeviceDriver.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::test {

// Bytes from hex digits; blanks are skipped.
[[nodiscard]] std::vector<std::uint8_t> Hex(std::string_view digits);
[[nodiscard]] std::string ToHex(std::span<const std::uint8_t> bytes);

// One thread at a time.
class ScriptedDriver final : public DeviceDriver {
public:
    // The next request must be a bulk write of these bytes to endpoint 2 out.
    ScriptedDriver& Write(std::string_view hex);
    // The next request must be a bulk read of as many bytes from endpoint 2 in; it gets these.
    ScriptedDriver& Read(std::string_view hex);
    // Reads and writes of so many bytes whatever they are (zeroes are read), for large data.
    ScriptedDriver& WriteBytes(std::uint32_t length);
    ScriptedDriver& ReadBytes(std::uint32_t length);
    // The same with the time-out of a drain read, the longest one too.
    ScriptedDriver& DrainRead();
    // Vendor requests, resets, last error.
    ScriptedDriver& ResetEndpoint(int endpoint);
    ScriptedDriver& Pairing(std::uint16_t word);
    ScriptedDriver& ResetPipe(int pipe);
    ScriptedDriver& ResetDevice();
    ScriptedDriver& LastError(std::uint32_t status = 0);
    ScriptedDriver& Descriptor(std::string_view hex);
    // The request that was just told fails with this system error; the read of the last error that follows
    // a failure is a step of its own.
    ScriptedDriver& Fails(std::uint32_t error = 31);

    // What did not fit, then what was left over. Empty when the script was followed.
    [[nodiscard]] std::vector<std::string> Mismatches() const;

    DeviceHandle Open(std::string_view name) override;
    DriverReply Control(DeviceHandle device, const DriverRequest& request) override;
    void Close(DeviceHandle device) override;

    bool openFails = false;
    std::vector<std::string> openedNames;
    int closed = 0;

private:
    struct Step {
        std::uint32_t code = 0;
        std::vector<std::uint8_t> input{};
        std::vector<std::uint8_t> toUnit{};
        std::vector<std::uint8_t> fromUnit{};
        std::uint32_t length = 0; // of the data
        bool anyBytes = false;    // data to the unit is not looked at
        bool ok = true;
        std::uint32_t error = 0;
    };
    ScriptedDriver& Add(Step step);
    static std::string Describe(const Step& step);
    static std::string Compare(const Step& step, const DriverRequest& request);

    std::deque<Step> m_steps;
    std::vector<std::string> m_mismatches;
};

} // namespace kalvio::test
