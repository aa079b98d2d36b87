#pragma once

// Reads results from the unit as they come, hands them to the host's result fields and marks them ready.
//
// It has no thread of its own: the program's message loop polls it. A wait of the user-interface thread
// pumps messages anyway, so results flow during every wait, and ending the loop ends the engine. A thread
// would have added one more hand-over and one more thing to stop, and gained nothing at fifty blocks a
// second.

#include "hardware/Hardware.h"
#include "host/HostApplication.h"
#include "host/ResultCatalogue.h"
#include "reference_host/measurement/ResultWords.h"
#include "reference_host/measurement/SourceGate.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kalvio::reference_host {

// User-interface thread.
class MeasurementEngine {
public:
    MeasurementEngine(CHardware& hardware, CHostApplication& host, SourceGate& gate)
        : m_hardware(hardware), m_host(host), m_gate(gate) {}

    // Takes a block of results, if the unit has one; true when results were published. Blocks that a source
    // write overtook are dropped.
    bool Poll();
    // How many blocks were published so far.
    [[nodiscard]] std::uint64_t Blocks() const { return m_blocks; }

    // Called after every published block; must not pump messages.
    std::function<void()> onResults;

private:
    struct Readings {
        ChannelReading channelA;
        ChannelReading channelB;
        DigitalReading digital;
    };

    bool ReadBlock(std::uint8_t dsp, std::uint32_t address, CDSPMap& words);
    bool ReadAll(Readings& readings);
    void Publish(const Readings& readings);
    void Store(const Readings& readings);
    void StoreDetectors(const Readings& readings);
    void MarkReady(const Readings& readings);
    void MarkReady(ResultList list, int noNotify);
    [[nodiscard]] std::vector<CFFTDetectorSettings*> Detectors() const;

    CHardware& m_hardware;
    CHostApplication& m_host;
    SourceGate& m_gate;
    std::uint64_t m_blocks = 0;
};

} // namespace kalvio::reference_host
