// The trace: whatever passes between the library and a unit, each line that it makes is one line of text.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "bench/trace/TraceDecoder.h"
#include "hardware/KvNetFrame.h"

namespace {

using namespace kalvio;
using fuzz::Bytes;

constexpr std::uint32_t kCodes[] = {
    kControlBulkWrite,   kControlBulkRead,  kControlGetDescriptor, kControlVendorRequest,
    kControlResetDevice, kControlResetPipe, kControlLastUsbError,  0};

// The switcher's and the adapter's commands with as many data bytes as they have.
struct BusCommand {
    std::uint8_t first;
    std::uint8_t last;
    std::uint8_t dataBytes;
};
constexpr BusCommand kBusCommands[] = {
    {0x00, 0x00, 6}, {0x80, 0x81, 6},  {0x82, 0x8B, 3}, {0x8C, 0x8F, 1}, {0x92, 0x92, 4}, {0xB1, 0xB1, 34},
    {0xFF, 0xFF, 1}, {0xC0, 0xC0, 20}, {0xC1, 0xC2, 1}, {0xC3, 0xC3, 4}, {0xC4, 0xC4, 3}, {0xC5, 0xC6, 2},
    {0xC7, 0xC7, 3}, {0xC8, 0xC8, 2},  {0xC9, 0xC9, 1}, {0xCA, 0xCD, 2}, {0xCE, 0xCE, 1}};

void CheckLine(const std::string& line) {
    const bool printable =
        std::ranges::all_of(line, [](char letter) { return letter >= 0x20 && letter < 0x7F; });
    fuzz::Require(!line.empty() && printable, "a line of a trace is a line of text");
}

void Append(Bytes& bytes, std::initializer_list<Bytes> parts) {
    for (const Bytes& part : parts) {
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
}

// One request as the target reads it: what it is, the number of bytes, the bytes.
Bytes Request(std::uint8_t how, const Bytes& bytes) {
    Bytes request{how, static_cast<std::uint8_t>(bytes.size())};
    Append(request, {bytes});
    return request;
}

// A whole command: header, data out, response, data in.
Bytes Exchange(std::uint8_t command, const Bytes& parameters, const Bytes& out, const Bytes& in) {
    Bytes header{0, 0, 0xAB, 0xCD,
                 0, 0, 0,    command,
                 0, 0, 0,    static_cast<std::uint8_t>(out.size()),
                 0, 0, 0,    static_cast<std::uint8_t>(in.size())};
    Append(header, {parameters});
    Bytes response{0, 0, 0x60, 0x0D, 0, 0, 0, command, 0, 0, 0, 0, 0x12, 0x34, 0x56, 0x78};
    Bytes exchange = Request(0, header);
    if (!out.empty()) {
        Append(exchange, {Request(0, out)});
    }
    Append(exchange, {Request(1, response), Request(1, in)});
    return exchange;
}

// The block of a frame on the peripheral bus.
Bytes Frame(std::uint8_t address, std::uint8_t command, const Bytes& data) {
    Bytes block(44);
    BuildKvNetFrame(&block[4], address, command, data.data(), data.size(), true);
    return block;
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    Bytes plain;
    for (std::uint8_t command = 1; command <= 25; ++command) {
        Append(plain, {Exchange(command, Bytes(16, 'X'), {}, {})});
    }
    std::vector<Bytes> seeds{plain, Exchange(14, Bytes(16, 'Y'), Bytes(30, 7), {}),
                             Exchange(12, Bytes(16, 'P'), {}, Bytes(60, 9))};
    for (const BusCommand& row : kBusCommands) {
        Bytes exchanges;
        for (unsigned command = row.first; command <= row.last; ++command) {
            const Bytes block = Frame(3, static_cast<std::uint8_t>(command), Bytes(row.dataBytes, 0x41));
            Append(exchanges, {Exchange(22, {12, 0, 0, 0}, block, block)});
        }
        seeds.push_back(exchanges);
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    bench::TraceDecoder decoder(CheckLine, true, 1000);
    for (std::uint32_t tick = 1000; !input.IsAtEnd(); ++tick) {
        const std::uint8_t how = input.Byte();
        const auto bytes = input.Take(input.Byte());
        const std::uint32_t code = kCodes[how % std::size(kCodes)];
        const bool toUnit = code == kControlBulkWrite;
        const std::span<const std::uint8_t> none;
        decoder.Take({.code = code,
                      .input = toUnit ? none : bytes,
                      .toUnit = toUnit ? bytes : none,
                      .fromUnit = toUnit ? none : bytes,
                      .ok = how < 0xF0,
                      .error = how,
                      .tick = tick,
                      .duration = how});
    }
    return 0;
}
