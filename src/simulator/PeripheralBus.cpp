#include "simulator/PeripheralBus.h"

#include "simulator/peripherals/BusFrame.h"

#include <algorithm>
#include <utility>

namespace kalvio::simulator {

namespace {

enum class BusStatus : std::uint16_t {
    Answered = 0,
    Timeout = 0xFFFD,         // -3
    Address = 0xFFFC,         // -4
    Length = 0xFFFB,          // -5
    InvalidResponse = 0xFFFA, // -6
};

constexpr std::size_t kBlockFrame = 4; // where frame and answer stand in the blocks
constexpr std::size_t kLongestFrame = kPeripheralBlockBytes - kBlockFrame;

BusStatus Judge(ByteView answer, std::uint8_t address, std::size_t expected) {
    if (answer.empty()) {
        return BusStatus::Timeout;
    }
    if (answer.size() != expected || expected < kFramingBytes || answer[2] != expected - kFramingBytes) {
        return BusStatus::Length;
    }
    if (answer[1] != address) {
        return BusStatus::Address;
    }
    return FrameFault(answer).empty() ? BusStatus::Answered : BusStatus::InvalidResponse;
}

ByteVector Reply(std::uint16_t status, ByteView answer = {}) {
    ByteVector block(kPeripheralBlockBytes);
    StoreBig(block, 0, status, 2);
    std::copy(answer.begin(), answer.end(), block.begin() + kBlockFrame);
    return block;
}

ByteVector Reply(BusStatus status) {
    return Reply(static_cast<std::uint16_t>(status));
}

} // namespace

PeripheralBus::PeripheralBus(FaultPlan& faults, Log<std::string>& protocolErrors)
    : m_faults(faults), m_protocolErrors(protocolErrors) {}

void PeripheralBus::Attach(std::shared_ptr<Peripheral> peripheral) {
    m_peripherals.push_back(std::move(peripheral));
}

void PeripheralBus::Detach(const Peripheral& peripheral) {
    std::erase_if(m_peripherals, [&peripheral](const auto& one) { return one.get() == &peripheral; });
}

void PeripheralBus::Vacate(std::uint8_t address) {
    std::erase_if(m_peripherals, [address](const auto& one) { return one->Address() == address; });
}

std::uint32_t PeripheralBus::Attempts(std::uint8_t address) const {
    const auto found = m_attempts.find(address);
    return found == m_attempts.end() ? 0 : found->second;
}

SignalPath PeripheralBus::Path() const {
    SignalPath path;
    for (const auto& peripheral : m_peripherals) {
        peripheral->Route(path);
    }
    return path;
}

BusExchange PeripheralBus::Exchange(ByteView block, std::uint32_t command, std::uint32_t tick) {
    const std::size_t frameLength = block[0];
    const std::size_t answerLength = block[1];
    const std::uint32_t asked = ReadBig(block, 2, 2);
    const std::uint32_t timeoutMs = asked == 0 ? kDefaultPeripheralTimeoutMs : asked;
    if (frameLength > kLongestFrame || answerLength > kLongestFrame) {
        m_protocolErrors.Add("peripheral exchange longer than its block");
        return {Reply(BusStatus::Length), 0};
    }
    const ByteView frame = block.subspan(kBlockFrame, frameLength);
    const std::string fault = FrameFault(frame);
    if (!fault.empty()) {
        m_protocolErrors.Add("peripheral frame: " + fault);
        Send(frame, tick, timeoutMs);
        return {Reply(BusStatus::Timeout), timeoutMs};
    }
    ++m_attempts[frame[1]];
    Heard heard = Send(frame, tick, timeoutMs);
    Spoil(heard.answer, command);
    if (const auto forced = m_faults.Strike(FaultKind::PeripheralStatus, command)) {
        return {Reply(static_cast<std::uint16_t>(forced->value)), 0};
    }
    if (!WantsAnswer(frame)) {
        return {Reply(BusStatus::Answered), 0};
    }
    if (heard.collided) {
        return {Reply(BusStatus::InvalidResponse), heard.afterMs};
    }
    const BusStatus status = Judge(heard.answer, frame[1], answerLength);
    if (status == BusStatus::Answered) {
        return {Reply(0, heard.answer), heard.afterMs};
    }
    return {Reply(status), status == BusStatus::Timeout ? timeoutMs : heard.afterMs};
}

// What comes too late is not heard; of two that speak at once neither can be understood.
PeripheralBus::Heard PeripheralBus::Send(ByteView frame, std::uint32_t tick, std::uint32_t timeoutMs) {
    Heard heard;
    std::size_t voices = 0;
    for (const auto& peripheral : m_peripherals) {
        PeripheralReply reply = peripheral->Answer(frame, tick);
        if (reply.bytes.empty() || reply.delayMs > timeoutMs) {
            continue;
        }
        ++voices;
        heard.afterMs = std::max(heard.afterMs, reply.delayMs);
        heard.answer = std::move(reply.bytes);
    }
    heard.collided = voices > 1;
    m_collisions += heard.collided ? 1U : 0U;
    return heard;
}

void PeripheralBus::Spoil(ByteVector& answer, std::uint32_t command) {
    if (answer.size() < kFramingBytes || !m_faults.Strike(FaultKind::CorruptPeripheralEcho, command)) {
        return;
    }
    InvertEcho(answer);
}

} // namespace kalvio::simulator
