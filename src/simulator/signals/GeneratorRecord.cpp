#include "simulator/signals/GeneratorRecord.h"

namespace kalvio::simulator {

namespace {

constexpr std::size_t kChannelBytes = 24;
constexpr std::size_t kFlagsA = 49;
constexpr std::size_t kFlagsB = 50;
constexpr std::uint8_t kAttenuatorChanged = 0x10; // 't' in the flags of A, 'u' in those of B
constexpr std::uint8_t kRoutingChanged = 0x20;    // 'v' in either
constexpr double kMilli = 1e-3;
constexpr double kMicro = 1e-6;

double Unsigned(ByteView record, std::size_t offset, double unit) {
    return ReadBig(record, offset, 4) * unit;
}

Stimulus DecodeChannel(ByteView channel) {
    Stimulus stimulus;
    stimulus.frequencyHz = Unsigned(channel, 0, kMilli);
    stimulus.amplitudeVolts = Unsigned(channel, 4, kMicro);
    stimulus.dcOffsetVolts = static_cast<std::int32_t>(ReadBig(channel, 8, 4)) * kMicro;
    stimulus.on = channel[16] == 1;
    return stimulus;
}

void ApplyRegister(AnalogueBoard& board, char reg, bool flagged, std::uint8_t value, std::uint32_t tick) {
    if (flagged) {
        board.Write(reg, value, tick, WriteSource::GeneratorRecord);
    } else {
        board.Leave(reg, tick, WriteSource::GeneratorRecord);
    }
}

} // namespace

std::array<Stimulus, 2> DecodeStimuli(ByteView record) {
    const ByteView channelA = record.subspan(0, kChannelBytes);
    const ByteView channelB = record.subspan(kChannelBytes, kChannelBytes);
    std::array<Stimulus, 2> stimuli{DecodeChannel(channelA), DecodeChannel(channelB)};
    for (Stimulus& stimulus : stimuli) {
        stimulus.jitterFrequencyHz = Unsigned(channelA, 12, kMilli);
        stimulus.jitterAmplitudeUi = Unsigned(channelB, 12, kMicro);
    }
    return stimuli;
}

void ApplyGeneratorRegisters(ByteView record, AnalogueBoard& board, std::uint32_t tick) {
    const std::uint8_t flagsA = record[kFlagsA];
    const std::uint8_t flagsB = record[kFlagsB];
    ApplyRegister(board, 't', (flagsA & kAttenuatorChanged) != 0, record[51], tick);
    ApplyRegister(board, 'u', (flagsB & kAttenuatorChanged) != 0, record[52], tick);
    // The value for B is made from the one for A, so that it alone counts when both are flagged.
    const bool routesB = (flagsB & kRoutingChanged) != 0;
    ApplyRegister(board, 'v', routesB || (flagsA & kRoutingChanged) != 0, record[routesB ? 54 : 53], tick);
}

} // namespace kalvio::simulator
