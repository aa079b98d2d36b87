#pragma once

// One command on the peripheral bus and its answer: the frame is built, traced and sent in one place.

#include "hardware/KvNetFrame.h"
#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <span>

namespace kalvio {

// What is fixed about a command of the bus.
struct KvNetCommand {
    std::uint8_t code = 0;
    std::uint8_t dataBytes = 0;       // that it carries, 0 to 34
    std::uint8_t answerDataBytes = 0; // that its answer carries; the whole answer is 6 bytes longer
};

inline constexpr KvNetCommand kCommandGetStatus{0x00, 0, 3};
inline constexpr KvNetCommand kCommandReset{0xFF, 1, 3};
inline constexpr KvNetCommand kCommandWriteSector{0xB1, 34, 0};
inline constexpr std::uint8_t kAnswerSectorAccepted = 0xCF;
inline constexpr std::uint16_t kSectorTimeout = 2000; // handed to the unit; every other command passes 0

// Sends commands to one device and holds the last answer. User-interface thread; the unit's hardware-access
// lock serialises the exchange itself. It checks neither address nor echo and reports nothing: callers do.
class KALVIO_API KvNetExchange {
public:
    explicit KvNetExchange(std::uint8_t address) : m_address(address) {}

    // Sends a command with its data bytes, of which fewer than the command carries leave the rest 0. First
    // traces `operation` (a name line such as "CKvNetSettings::GetStatus\n"; null: none) and the frame, and
    // after success the answer. 0, KVNET_ERR_HARDWARE without a unit or when the exchange failed, or the
    // unit's status (-3 to -6). KVNET_ERR_PARAMETER for more data than the command carries.
    short Send(const KvNetCommand& command, std::span<const std::uint8_t> data = {},
               const char* operation = nullptr, std::uint16_t timeout = 0);

    // Of the last answer: its command byte and data; zeroes before a successful send.
    [[nodiscard]] std::uint8_t AnswerCommand() const { return m_answer[3]; }
    [[nodiscard]] std::span<const std::uint8_t> AnswerData() const {
        return std::span(m_answer).subspan(kKvNetDataAt, m_answerDataBytes);
    }
    // The whole answer, framing included.
    [[nodiscard]] std::span<const std::uint8_t> AnswerFrame() const {
        return std::span(m_answer).first(m_answerDataBytes + kKvNetFramingBytes);
    }
    [[nodiscard]] std::uint8_t Address() const { return m_address; }

private:
    std::uint8_t m_address;
    std::size_t m_answerDataBytes = 0;
    std::array<std::uint8_t, kKvNetLongestFrame> m_answer{};
};

} // namespace kalvio
