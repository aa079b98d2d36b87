#pragma once

// How an exchange with the unit ended. A failure of the link and a refusal by the unit are different things;
// they become one 16-bit code only where a status is handed out.

#include <cstdint>
#include <optional>

namespace kalvio {

// Result codes of the transport; any other code is an error of the unit itself.
inline constexpr std::uint16_t kUsbOk = 0x4000;
inline constexpr std::uint16_t kUsbNoDrainBuffer = 0x4001;
inline constexpr std::uint16_t kUsbPairingFailed = 0x4002;
inline constexpr std::uint16_t kUsbResetEndpointFailed = 0x4003;
inline constexpr std::uint16_t kUsbWriteFailed = 0x4011;
inline constexpr std::uint16_t kUsbReadFailed = 0x4021;
inline constexpr std::uint16_t kUsbWrongEcho = 0x4024;
inline constexpr std::uint16_t kUsbLastErrorFailed = 0x4031;

// An error code of the unit: a checked write went to another address than the armed one.
inline constexpr std::uint16_t kUnitAddressCheckFailed = 0x0118;

// What of an exchange failed on the way to the unit or back.
enum class LinkFailure : std::uint16_t {
    Write = kUsbWriteFailed,
    Read = kUsbReadFailed,
    WrongEcho = kUsbWrongEcho, // the response belongs to another command
};

// The unit got the command and did not carry it out; its own error code.
struct UnitRefusal {
    std::uint16_t error = 0;
};

struct CommandNotSent {}; // no device, a parked unit or a shutdown that runs: nothing was touched
struct CommandAccepted {};

// One of the four.
class ExchangeOutcome {
public:
    constexpr ExchangeOutcome(CommandNotSent) : m_kind(Kind::NotSent) {}
    constexpr ExchangeOutcome(CommandAccepted) : m_kind(Kind::Accepted) {}
    constexpr ExchangeOutcome(LinkFailure failure)
        : m_kind(Kind::LinkFailed), m_code(static_cast<std::uint16_t>(failure)) {}
    constexpr ExchangeOutcome(UnitRefusal refusal) : m_kind(Kind::Refused), m_code(refusal.error) {}

    [[nodiscard]] constexpr bool WasSent() const { return m_kind != Kind::NotSent; }
    [[nodiscard]] constexpr bool HasFailed() const {
        return m_kind == Kind::LinkFailed || m_kind == Kind::Refused;
    }
    [[nodiscard]] constexpr std::optional<UnitRefusal> Refusal() const {
        return m_kind == Kind::Refused ? std::optional(UnitRefusal{m_code}) : std::nullopt;
    }
    // The 16-bit code that stands for it; kUsbOk when nothing failed.
    [[nodiscard]] constexpr std::uint16_t Code() const { return m_code; }

private:
    // A register's worth together: outcomes are handed through every command.
    enum class Kind : std::uint16_t { NotSent, Accepted, LinkFailed, Refused };
    Kind m_kind;
    std::uint16_t m_code = kUsbOk;
};

} // namespace kalvio
