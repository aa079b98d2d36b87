#pragma once

// What becomes of one driver request inside the unit.

#include <cstdint>
#include <string>
#include <utility>

namespace kalvio::simulator {

// System error codes that the driver gives with a failed request.
inline constexpr std::uint32_t kErrorInvalidFunction = 1;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorGeneralFailure = 31;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorNotConnected = 1167;

struct Transfer {
    bool ok = false;
    std::uint32_t bytes = 0;
    std::uint32_t error = 0;
    std::string complaint; // a sentence when the request broke the protocol
    std::uint32_t delayMs = 0;

    static Transfer Done(std::size_t count = 0) {
        return {true, static_cast<std::uint32_t>(count), 0, {}, 0};
    }
    static Transfer Failed(std::uint32_t systemError) { return {false, 0, systemError, {}, 0}; }
    static Transfer Malformed(std::string sentence, std::uint32_t systemError = kErrorInvalidParameter) {
        return {false, 0, systemError, std::move(sentence), 0};
    }
};

} // namespace kalvio::simulator
