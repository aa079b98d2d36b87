#include "simulator/peripherals/BusFrame.h"

#include <algorithm>

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kStart = 0x55;
constexpr std::uint8_t kAnswerWanted = 0xAA;
constexpr std::uint8_t kNoAnswer = 0xA5;
constexpr std::size_t kCommandAt = 3;
constexpr std::size_t kDataAt = 4;

std::uint8_t Checksum(ByteView frame) {
    std::uint8_t rest = kStart;
    for (const std::uint8_t byte : frame.subspan(1, frame.size() - 3)) {
        rest = static_cast<std::uint8_t>(rest - byte);
    }
    return rest;
}

} // namespace

ByteVector MakeFrame(std::uint8_t address, std::uint8_t command, ByteView data) {
    ByteVector frame(kFramingBytes + data.size());
    frame[0] = kStart;
    frame[1] = address;
    frame[2] = static_cast<std::uint8_t>(data.size());
    frame[kCommandAt] = command;
    std::copy(data.begin(), data.end(), frame.begin() + kDataAt);
    frame.back() = kAnswerWanted;
    Seal(frame);
    return frame;
}

std::string FrameFault(ByteView frame) {
    if (frame.size() < kFramingBytes || frame.size() != kFramingBytes + frame[2]) {
        return "wrong length";
    }
    if (frame[0] != kStart) {
        return "wrong start byte";
    }
    if (frame[1] > kLastPeripheralAddress && frame[1] != kBroadcastAddress) {
        return "impossible address";
    }
    if (frame[frame.size() - 2] != Checksum(frame)) {
        return "wrong checksum";
    }
    const std::uint8_t terminator = frame.back();
    if (terminator != kNoAnswer && (terminator != kAnswerWanted || frame[1] == kBroadcastAddress)) {
        return "wrong terminator";
    }
    return {};
}

bool IsFor(ByteView frame, std::uint8_t address) {
    return frame.size() > 1 && (frame[1] == address || frame[1] == kBroadcastAddress);
}

bool WantsAnswer(ByteView frame) {
    return frame.back() == kAnswerWanted;
}

ByteView FrameData(ByteView frame) {
    return frame.subspan(kDataAt, frame.size() - kFramingBytes);
}

void Seal(ByteVector& frame) {
    frame[frame.size() - 2] = Checksum(frame);
}

void InvertEcho(ByteVector& frame) {
    std::uint8_t& echo = frame[frame.size() > kFramingBytes ? kDataAt : kCommandAt];
    echo = static_cast<std::uint8_t>(~echo);
    Seal(frame);
}

} // namespace kalvio::simulator
