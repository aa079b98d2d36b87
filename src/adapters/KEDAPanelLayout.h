#pragma once

// The control panel of a KEDA adapter: its controls and where they stand.

#include "platform/Dialog.h"

#include <span>

namespace kalvio::keda {

inline constexpr int kPanelDialog = 269;
inline constexpr int kPanelWindowType = 37;
// Buttons of the routing grid stand in groups of at least four, one group a wire.
inline constexpr int kLeastButtonsPerWire = 4;

enum PanelControl : int {
    kCtrlAddress = 2555,
    kCtrlReset = 2556,
    kCtrlRefresh = 2557,
    kCtrlStandby = 2558,
    kCtrlModeSpi = 2752,
    kCtrlSpiPolarity = 2753,
    kCtrlSpiPhase = 2754,
    kCtrlModeI2c = 2756,
    kCtrlSlaveLabel = 2757,
    kCtrlSlaveAddress = 2758,
    kCtrlI2cLabel = 2759,
    kCtrlI2cStatus = 2760,
    kCtrlTransmitLabel = 2762,
    kCtrlTransmit = 2763,
    kCtrlReceiveLabel = 2764,
    kCtrlReceive = 2765,
    kCtrlSend = 2766,
    kCtrlGenEnabled = 2900,
    kCtrlAnaEnabled = 2901,
    kCtrlAudioOn = 2902,
    kCtrlAudioVoltage4 = 2903,
    kCtrlAudioVoltage0 = 2907,
    kCtrlControlOn = 2908,
    kCtrlControlVoltage4 = 2909,
    kCtrlControlVoltage0 = 2913,
    kCtrlTabs = 2914,
    kCtrlSlotLengthLabel = 2916,
    kCtrlSlotLength = 2917,
    kCtrlLsbFirst = 2918,
    kCtrlDataLengthLabel = 2920,
    kCtrlDataLength = 2921,
    kCtrlDataLengthSpin = 2922,
    kCtrlLeadPadLabel = 2923,
    kCtrlFormatBar = 2924,
    kCtrlTrailPadLabel = 2925,
    kCtrlSlotsPerWire = 2926,
    kCtrlSignExtend = 2927,
    kCtrlSlotsLabel = 2928,
    kCtrlSerialIn = 2929,
    kCtrlSerialOut = 2930,
    kCtrlSerialLabel = 2931,
    kCtrlFrameInvert = 2932,
    kCtrlFrame1Bit = 2933,
    kCtrlFrameEarly = 2934,
    kCtrlFrameLabel = 2935,
    kCtrlFrameFreq = 2936,
    kCtrlBitInvert = 2938,
    kCtrlBitLabel = 2939,
    kCtrlBitFreq = 2940,
    kCtrlMasterDirLabel = 2941,
    kCtrlMasterIn = 2942,
    kCtrlMasterOut = 2943,
    kCtrlMasterNone = 2944,
    kCtrlMultiplier = 2945,
    kCtrlMultiplierLabel = 2946,
    kCtrlMasterLabel = 2947,
    kCtrlMasterFreq = 2948,
    kCtrlDelay = 2949,
    kCtrlDelayLabel = 2950,
    kCtrlTiming = 2954,
    kCtrlRouting = 2956,
    kCtrlRoutingLast = 2971,
    kCtrlWireLabel = 2972, // of the first of four
    kCtrlWireLabelLast = 2975,
    kCtrlAllToA = 2984,
    kCtrlAllToB = 2985,
    kCtrlAllOff = 2986,
    kCtrlStereoPairs = 2987,
    kCtrlAnaLabelA = 2989,
    kCtrlAnaLabelSlotA = 2990,
    kCtrlAnaLabelB = 2991,
    kCtrlAnaLabelSlotB = 2992,
    kCtrlAnaWireA = 2993,
    kCtrlAnaSlotA = 2994,
    kCtrlAnaWireB = 2995,
    kCtrlAnaSlotB = 2996,
};

// First and last control of a run.
struct ControlRun {
    int first;
    int last;
};
// Shown on the Generator and the Analyzer tab, on the first only, on the second only, on the Control tab.
[[nodiscard]] std::span<const ControlRun> FormatControls();
[[nodiscard]] std::span<const ControlRun> GeneratorControls();
[[nodiscard]] std::span<const ControlRun> AnalyserControls();
[[nodiscard]] std::span<const ControlRun> PortControls();

[[nodiscard]] const DialogTemplate& PanelLayout();

} // namespace kalvio::keda
