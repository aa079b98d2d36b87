#include "hardware/generator/GeneratorRecord.h"

#include "platform/formats/Endian.h"

#include <algorithm>

namespace kalvio {

namespace {

constexpr std::size_t kChannelBytes = 24;
constexpr std::size_t kPassThroughAt = 16; // within a channel
constexpr std::size_t kMicroValue = 48;
constexpr std::size_t kFlagsA = 49;
constexpr std::size_t kFlagsB = 50;
constexpr std::size_t kRegisterT = 51;
constexpr std::size_t kRegisterU = 52;
constexpr std::size_t kRegisterVForA = 53;
constexpr std::size_t kRegisterVForB = 54;

// Bits of the flag bytes. The unit toggles relays of its own for the last two requests.
constexpr std::uint8_t kFirstRequest = 2;
constexpr std::uint8_t kOutputRequest = 4; // touches the relays 0xC0 of 't' (A) or 'u' (B)
constexpr std::uint8_t kRangeRequest = 8;  // touches the relays of 'v' that belong to the channel
constexpr std::uint8_t kOutputChanged = 16;
constexpr std::uint8_t kRangeChanged = 32;

constexpr std::uint8_t kOutputRelays = 0xC0;
constexpr std::uint8_t kRangeRelaysA = 0x07;
constexpr std::uint8_t kRangeRelaysB = 0x70;

std::uint8_t Masked(std::uint8_t value, std::uint8_t clear, std::uint8_t set) {
    return static_cast<std::uint8_t>((value & ~clear) | set);
}

std::uint8_t Differing(std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(a ^ b);
}

void Mark(std::uint8_t& bits, std::uint8_t more, bool condition) {
    if (condition) {
        bits = static_cast<std::uint8_t>(bits | more);
    }
}

void PutChannel(std::uint8_t* at, const DSPGeneratorChannel& channel) {
    for (std::size_t i = 0; i < channel.values.size(); ++i) {
        PutBig32(at + 4 * i, channel.values[i]);
    }
    std::copy(channel.bytes.begin(), channel.bytes.end(), at + kPassThroughAt);
}

std::uint8_t Requests(const std::uint8_t* flags) {
    std::uint8_t bits = 0;
    Mark(bits, kFirstRequest, flags[0] != 0);
    Mark(bits, kOutputRequest, flags[1] != 0);
    Mark(bits, kRangeRequest, flags[2] != 0);
    return bits;
}

// The output relays 't' or 'u' of one channel: the masks of both channels, one after the other.
std::uint8_t OutputRegister(std::uint8_t now, const std::uint8_t* masksA, const std::uint8_t* masksB) {
    return Masked(Masked(now, masksA[0], masksA[1]), masksB[0], masksB[1]);
}

// The range relays 'v' are shared: each channel owns some bits, and only a change of those counts for it.
void PutRangeRegister(GeneratorRecord& record, std::uint8_t now, const MicroGeneratorDetails& micro) {
    const std::uint8_t forA = Masked(now, micro.m[8], micro.m[9]);
    const bool changesA = (Differing(now, forA) & kRangeRelaysA) != 0;
    const std::uint8_t forB = Masked(changesA ? forA : now, micro.m[17], micro.m[18]);
    const bool changesB = (Differing(now, forB) & kRangeRelaysB) != 0;
    record.bytes[kRegisterVForA] = forA;
    record.bytes[kRegisterVForB] = forB;
    Mark(record.bytes[kFlagsA], kRangeChanged, changesA);
    Mark(record.bytes[kFlagsB], kRangeChanged, changesB);
    record.values.v = changesB ? forB : (changesA ? forA : now);
    record.changed.v = Differing(now, record.values.v);
}

// A request makes the unit pass through the complement of the relays it touches.
void AddOwnToggles(GeneratorRecord& record) {
    const auto& bytes = record.bytes;
    const auto asked = [&bytes](std::size_t at, std::uint8_t bit) { return (bytes[at] & bit) != 0; };
    const auto either = [](std::uint8_t a, std::uint8_t b, std::uint8_t relays) {
        return static_cast<std::uint8_t>((a ^ relays) | (b ^ relays));
    };
    GeneratorRegisters& changed = record.changed;
    const GeneratorRegisters& values = record.values;
    Mark(changed.v, either(values.v, bytes[kRegisterVForA], kRangeRelaysA), asked(kFlagsA, kRangeRequest));
    Mark(changed.v, either(values.v, bytes[kRegisterVForB], kRangeRelaysB), asked(kFlagsB, kRangeRequest));
    Mark(changed.t, either(values.t, bytes[kRegisterT], kOutputRelays), asked(kFlagsA, kOutputRequest));
    Mark(changed.u, either(values.u, bytes[kRegisterU], kOutputRelays), asked(kFlagsB, kOutputRequest));
}

} // namespace

GeneratorRecord BuildGeneratorRecord(const GeneratorRegisters& now, const DSPGeneratorDetails& dsp,
                                     const MicroGeneratorDetails& micro) {
    GeneratorRecord record;
    auto& bytes = record.bytes;
    const std::uint8_t* m = micro.m.data();
    PutChannel(bytes.data(), dsp.channels[0]);
    PutChannel(bytes.data() + kChannelBytes, dsp.channels[1]);
    bytes[kMicroValue] = m[0];
    bytes[kFlagsA] = Requests(m + 1);
    bytes[kFlagsB] = Requests(m + 10);

    record.values.t = OutputRegister(now.t, m + 4, m + 13);
    record.values.u = OutputRegister(now.u, m + 6, m + 15);
    record.changed.t = Differing(now.t, record.values.t);
    record.changed.u = Differing(now.u, record.values.u);
    bytes[kRegisterT] = record.values.t;
    bytes[kRegisterU] = record.values.u;
    Mark(bytes[kFlagsA], kOutputChanged, record.changed.t != 0);
    Mark(bytes[kFlagsB], kOutputChanged, record.changed.u != 0);

    PutRangeRegister(record, now.v, micro);
    AddOwnToggles(record);
    return record;
}

} // namespace kalvio
