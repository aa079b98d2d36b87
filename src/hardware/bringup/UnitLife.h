#pragma once

// The unit's life after bring-up: demo mode, parking and waking, shutdown.

#include "hardware/calibration/BoardTables.h"
#include "hardware/results/SampleStore.h"

namespace kalvio {

// Keeps in the registry whether the unit runs ("Power Management", "HWRunning").
void RecordRunning(int running);

// User-interface thread.
class UnitLife {
public:
    UnitLife(UsbTransport& transport, CommandSet& commands, SampleStore& samples, BoardTables& boards)
        : m_transport(transport), m_commands(commands), m_samples(samples), m_boards(boards) {}

    void EnterDemoMode(); // closes the device
    // Nothing without a unit. The main window gets message 0x8033.
    void Suspend();
    void Resume();
    // Stops the unit, closes it and frees what bring-up made. Does nothing twice; bring-up may follow.
    void Terminate();

private:
    UsbTransport& m_transport;
    CommandSet& m_commands;
    SampleStore& m_samples;
    BoardTables& m_boards;
};

} // namespace kalvio
