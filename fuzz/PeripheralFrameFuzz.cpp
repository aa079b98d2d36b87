// Frames of the peripheral bus: the checksum over any bytes, and what the builder makes.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "hardware/KvNetFrame.h"

namespace {

using namespace kalvio;
using fuzz::Require;

std::uint8_t SumOfAll(std::span<const std::uint8_t> bytes) {
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum += byte;
    }
    return static_cast<std::uint8_t>(sum);
}

void CheckAnyFrame(std::span<const std::uint8_t> frame) {
    const std::uint8_t checksum = CalculateChecksum(frame.data(), static_cast<int>(frame.size()));
    const auto summed =
        frame.size() > 3 ? frame.subspan(1, frame.size() - 3) : std::span<const std::uint8_t>();
    Require(static_cast<std::uint8_t>(checksum + SumOfAll(summed)) == kKvNetStart,
            "checksum and summed bytes make the start byte");
}

void CheckBuiltFrame(fuzz::FuzzInput input) {
    const std::uint8_t address = input.Byte();
    const std::uint8_t command = input.Byte();
    const bool useResponses = (input.Byte() & 1) != 0;
    const auto data = input.Rest();
    fuzz::Bytes frame(std::min(data.size(), kKvNetLongestData) + kKvNetFramingBytes);
    const std::size_t length =
        BuildKvNetFrame(frame.data(), address, command, data.data(), data.size(), useResponses);
    if (data.size() > kKvNetLongestData) {
        Require(length == 0, "too much data makes no frame");
        return;
    }
    Require(length == frame.size(), "a frame has its data and six bytes");
    Require(frame[0] == kKvNetStart && frame[1] == address && frame[2] == data.size() && frame[3] == command,
            "a frame begins with start, address, length and command");
    Require(std::ranges::equal(std::span(frame).subspan(kKvNetDataAt, data.size()), data),
            "a frame carries its data");
    Require(frame[length - 2] == CalculateChecksum(frame.data(), static_cast<int>(length)) &&
                frame[length - 1] == GetTerminator(address, useResponses),
            "a frame ends with checksum and terminator");
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    return {Bytes{0x55, 0x01, 0x02, 0x80, 0x10, 0x20, 0xA2, 0xAA}, Bytes(3 + kKvNetLongestData, 0xFF),
            Bytes(3 + kKvNetLongestData + 1, 1)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckAnyFrame({data, size});
    CheckBuiltFrame({data, size});
    return 0;
}
