#pragma once

// What general command 13 says: the stimuli of both channels and the registers 't', 'u' and 'v'.

#include "simulator/Bytes.h"
#include "simulator/DeviceUnderTest.h"
#include "simulator/boards/AnalogueBoard.h"

namespace kalvio::simulator {

inline constexpr std::size_t kGeneratorRecordBytes = 56;

// The stimuli of channels A and B; both carry the jitter that the two records describe together.
std::array<Stimulus, 2> DecodeStimuli(ByteView record);

// Writes the registers that the record flags as changed; the others count as left alone.
void ApplyGeneratorRegisters(ByteView record, AnalogueBoard& board, std::uint32_t tick);

} // namespace kalvio::simulator
