#include "simulator/PeripheralBus.h"

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

constexpr std::uint8_t kStart = 0x55;
constexpr std::uint8_t kBroadcast = 255;
constexpr std::uint8_t kLastAddress = 63;
constexpr std::uint8_t kAnswerWanted = 0xAA;
constexpr std::uint8_t kNoAnswer = 0xA5;
constexpr std::size_t kFramingBytes = 6;
constexpr std::size_t kBlockFrame = 4; // where frame and answer stand in the blocks
constexpr std::size_t kLongestFrame = kPeripheralBlockBytes - kBlockFrame;

std::uint8_t Checksum(ByteView frame) {
    std::uint8_t rest = kStart;
    for (const std::uint8_t byte : frame.subspan(1, frame.size() - 3))
        rest = static_cast<std::uint8_t>(rest - byte);
    return rest;
}

// What a device on the bus would find wrong with a frame; empty when it is sound.
std::string FrameFault(ByteView frame) {
    if (frame.size() < kFramingBytes || frame.size() != kFramingBytes + frame[2])
        return "wrong length";
    if (frame[0] != kStart)
        return "wrong start byte";
    if (frame[1] > kLastAddress && frame[1] != kBroadcast)
        return "impossible address";
    if (frame[frame.size() - 2] != Checksum(frame))
        return "wrong checksum";
    const std::uint8_t terminator = frame.back();
    if (terminator != kNoAnswer && (terminator != kAnswerWanted || frame[1] == kBroadcast))
        return "wrong terminator";
    return {};
}

BusStatus Judge(ByteView answer, std::uint8_t address, std::size_t expected) {
    if (answer.empty())
        return BusStatus::Timeout;
    if (answer.size() != expected || expected < kFramingBytes || answer[2] != expected - kFramingBytes)
        return BusStatus::Length;
    if (answer[1] != address)
        return BusStatus::Address;
    if (answer[0] != kStart || answer[answer.size() - 2] != Checksum(answer))
        return BusStatus::InvalidResponse;
    return BusStatus::Answered;
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

void PeripheralBus::Attach(std::uint8_t address, Peripheral peripheral) {
    if (peripheral)
        m_peripherals[address] = std::move(peripheral);
    else
        m_peripherals.erase(address);
}

std::uint32_t PeripheralBus::Attempts(std::uint8_t address) const {
    const auto found = m_attempts.find(address);
    return found == m_attempts.end() ? 0 : found->second;
}

ByteVector PeripheralBus::Exchange(ByteView block, std::uint32_t command) {
    const std::size_t frameLength = block[0];
    const std::size_t answerLength = block[1];
    if (frameLength > kLongestFrame || answerLength > kLongestFrame) {
        m_protocolErrors.Add("peripheral exchange longer than its block");
        return Reply(BusStatus::Length);
    }
    const ByteView frame = block.subspan(kBlockFrame, frameLength);
    const std::string fault = FrameFault(frame);
    if (!fault.empty()) {
        m_protocolErrors.Add("peripheral frame: " + fault);
        return Reply(BusStatus::Timeout);
    }
    ++m_attempts[frame[1]];
    const ByteVector answer = Spoil(Deliver(frame), command);
    if (const auto forced = m_faults.Strike(FaultKind::PeripheralStatus, command))
        return Reply(static_cast<std::uint16_t>(forced->value));
    if (frame.back() == kNoAnswer)
        return Reply(BusStatus::Answered);
    const BusStatus status = Judge(answer, frame[1], answerLength);
    return status == BusStatus::Answered ? Reply(0, answer) : Reply(status);
}

ByteVector PeripheralBus::Deliver(ByteView frame) const {
    if (frame[1] == kBroadcast) {
        for (const auto& [address, peripheral] : m_peripherals)
            peripheral(frame);
        return {};
    }
    const auto found = m_peripherals.find(frame[1]);
    return found == m_peripherals.end() ? ByteVector{} : found->second(frame);
}

ByteVector PeripheralBus::Spoil(ByteVector answer, std::uint32_t command) {
    if (answer.size() < kFramingBytes || !m_faults.Strike(FaultKind::CorruptPeripheralEcho, command))
        return answer;
    const std::size_t echo = answer.size() > kFramingBytes ? 4 : 3; // the first data byte, else the command
    answer[echo] = static_cast<std::uint8_t>(~answer[echo]);
    answer[answer.size() - 2] = Checksum(answer);
    return answer;
}

} // namespace kalvio::simulator
