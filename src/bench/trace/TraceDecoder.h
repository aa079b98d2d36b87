#pragma once

// Makes readable lines of driver requests: one for every command exchange, one for every other request.

#include "platform/DeviceDriver.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kalvio::bench {

// One request after it was carried out; the data are those that were moved.
struct TracedRequest {
    std::uint32_t code = 0;
    std::span<const std::uint8_t> input;
    std::span<const std::uint8_t> toUnit;
    std::span<const std::uint8_t> fromUnit; // as many bytes as came back
    bool ok = false;
    std::uint32_t error = 0;
    std::uint32_t tick = 0;     // when it began
    std::uint32_t duration = 0; // milliseconds
};

// Not shared between threads without a lock around it.
class TraceDecoder {
public:
    using Sink = std::function<void(const std::string& line)>;

    // `bytes`: every transfer's bytes follow in hex.
    TraceDecoder(Sink sink, bool bytes, std::uint32_t startTick);

    void Take(const TracedRequest& request);

private:
    // A command whose response, data out or data in are still to come.
    struct Exchange {
        std::string call;
        std::uint32_t command = 0;
        std::uint32_t outLength = 0;
        std::uint32_t outLeft = 0;
        std::uint32_t inLength = 0;
        std::uint32_t inLeft = 0;
        std::vector<std::uint8_t> outStart; // the first bytes of the data
        std::vector<std::uint8_t> inStart;
        bool responded = false;
        bool isPeripheral = false; // it carries a frame of the peripheral bus
        std::string answer;
        std::uint32_t tick = 0;
        std::vector<std::string> hex;
    };

    void TakeWrite(const TracedRequest& request);
    void TakeRead(const TracedRequest& request);
    void Begin(const TracedRequest& request);
    void TakeResponse(std::span<const std::uint8_t> response);
    void TakeInData(std::span<const std::uint8_t> data);
    void FinishIfComplete(const TracedRequest& request);
    void AppendCall(const Exchange& exchange, const std::string& outcome);
    static std::string PeripheralText(const Exchange& exchange, const std::string& outcome);
    void Finish(const std::string& outcome, const TracedRequest& request);
    void NoteBytes(const char* arrow, std::span<const std::uint8_t> bytes);
    void BeginLine(std::uint32_t tick);
    void EmitLine(const std::string& rest, std::uint32_t duration);

    Sink m_sink;
    bool m_bytes;
    std::uint32_t m_startTick;
    std::optional<Exchange> m_exchange;
    std::string m_line; // under construction; kept for its room
};

} // namespace kalvio::bench
