#pragma once

// How an exchange with the unit ended. A failure of the link and a refusal by the unit are different things;
// they become one 16-bit code only where a status is handed out.

#include <cstdint>
#include <variant>

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

using ExchangeOutcome = std::variant<CommandNotSent, CommandAccepted, LinkFailure, UnitRefusal>;

[[nodiscard]] constexpr bool WasSent(const ExchangeOutcome& outcome) {
    return !std::holds_alternative<CommandNotSent>(outcome);
}

[[nodiscard]] constexpr bool HasFailed(const ExchangeOutcome& outcome) {
    return std::holds_alternative<LinkFailure>(outcome) || std::holds_alternative<UnitRefusal>(outcome);
}

// The 16-bit code that stands for it; kUsbOk when nothing failed.
[[nodiscard]] constexpr std::uint16_t CodeOf(const ExchangeOutcome& outcome) {
    if (const auto* failure = std::get_if<LinkFailure>(&outcome)) {
        return static_cast<std::uint16_t>(*failure);
    }
    const auto* refusal = std::get_if<UnitRefusal>(&outcome);
    return refusal != nullptr ? refusal->error : kUsbOk;
}

} // namespace kalvio
