#pragma once

// Sends what the generator document holds to the unit, as generator records.

#include "hardware/Hardware.h"
#include "host/GeneratorSettings.h"
#include "reference_host/measurement/SourceGate.h"

namespace kalvio::reference_host {

// The two channels' values: millihertz, microvolts RMS, microvolts of DC; in the fourth place channel A
// carries the jitter frequency in millihertz and channel B the jitter amplitude in millionths of a unit
// interval; then on or off and the waveform (0, sine).
DSPGeneratorDetails PackGenerator(const GeneratorState& state);

// Relays for balanced outputs at full range, the same with every record, so that no relay moves while a
// source is varied.
MicroGeneratorDetails OutputRelays();

// Called from the user-interface and the pre-processor thread, one call at a time.
class GeneratorRecords final : public GeneratorOutput {
public:
    GeneratorRecords(CHardware& hardware, SourceGate& gate) : m_hardware(hardware), m_gate(gate) {}

    // Sends the record and clears both HF2 flags, so that blocks measured with the former values are not
    // taken for new ones.
    std::int16_t Apply(const GeneratorState& state) override;

private:
    std::int16_t Send(const GeneratorState& state);

    CHardware& m_hardware;
    SourceGate& m_gate;
};

} // namespace kalvio::reference_host
