#pragma once

// From a closed device to a running unit or demo mode.

#include "hardware/bringup/InitialSettings.h"
#include "hardware/bringup/ProgramImages.h"
#include "hardware/measurement/DspClock.h"
#include "hardware/results/ResultArrivals.h"
#include "hardware/results/SampleStore.h"
#include "platform/Window.h"

namespace kalvio {

// What bring-up opens, prepares and starts.
struct BringUpTargets {
    UsbTransport& transport;
    CommandSet& commands;
    MainBoard& mainBoard;
    BoardTables& boards;
    SampleStore& samples;
    ResultArrivals& results;
    DspClock& clock;
};

// User-interface thread.
class BringUp {
public:
    BringUp(const BringUpTargets& targets, const SettingsTargets& settings)
        : m_targets(targets), m_images(targets.commands), m_settings(settings) {}

    // Opens the unit (or asks the user), checks its firmware, starts and loads it and writes its initial
    // settings. False: failed, which was told to the user or to `window`, or left by the user. What was made
    // stays.
    bool Run(WindowHandle window);
    // The unit's firmware is the one that goes with this software, or no unit is open.
    bool IsFirmwareRight();

private:
    bool OpenDeviceOrAsk();
    bool AcceptFirmware();
    bool PrepareResults();
    bool StartUnit();
    bool InitialiseUnit();
    bool ReleaseConverters();
    bool LoadCalibration();
    bool WriteSettings(WindowHandle window);

    BringUpTargets m_targets;
    ProgramImages m_images;
    InitialSettings m_settings;
};

} // namespace kalvio
