#pragma once

// Endpoint 2 seen from the unit: header, out data, response and in data strictly in turn.

#include "simulator/FaultPlan.h"
#include "simulator/commands/CommandFrame.h"
#include "simulator/commands/Transfer.h"

#include <functional>

namespace kalvio::simulator {

inline constexpr std::uint32_t kDrainTimeoutMs = 10;

// What a carried-out command sends back.
struct Answer {
    ByteVector response;
    ByteVector inData;
    std::uint32_t delayMs = 0;    // the response comes so late
    std::uint32_t staleReads = 0; // so many reads of old input stand before it
    bool silent = false;          // nothing comes back
};

class CommandEndpoint {
public:
    using Carrier = std::function<Answer(const CommandFrame& frame)>;

    CommandEndpoint(FaultPlan& faults, Carrier carry);

    // A bulk write on pipe 1, a bulk read on pipe 8.
    Transfer Write(ByteView data, std::uint32_t tick);
    Transfer Read(ByteSpan buffer, std::uint32_t timeoutMs);

    // Drops a half-received frame and pending output. Stale input survives: only a drain or a reset of
    // the whole device takes it away.
    void Reset();
    void ResetDevice();

    // The command whose header came last, refused or not.
    [[nodiscard]] std::uint32_t LastCommand() const { return m_lastCommand; }
    // Takes note of the command that a coming write announces, before anything can go wrong with it.
    void Announce(ByteView data);

private:
    enum class Phase { Header, OutData, Response, InData };

    Transfer TakeHeader(ByteView data, std::uint32_t tick);
    Transfer TakeOutData(ByteView data);
    void CarryOut();
    Transfer Deliver(ByteSpan buffer, ByteView due);
    [[nodiscard]] ByteView Due() const;
    void Advance(std::size_t delivered);

    FaultPlan& m_faults;
    Carrier m_carry;
    Phase m_phase = Phase::Header;
    CommandFrame m_frame;
    Answer m_answer;
    std::size_t m_inSent = 0;
    std::uint32_t m_staleReads = 0;
    std::uint32_t m_lastCommand = 0;
};

} // namespace kalvio::simulator
