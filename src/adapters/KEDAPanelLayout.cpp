#include "adapters/KEDAPanelLayout.h"

namespace kalvio::keda {
namespace {

// Drop-down lists are given without their list. The three tabs share the space below them.
constexpr ControlTemplate kControls[] = {
    {ControlKind::GroupBox, 0, " Adapter ", {3, 1, 397, 23}},
    {ControlKind::Static, 0, "Address", {9, 9, 39, 17}},
    {ControlKind::EditableCombo, kCtrlAddress, "", {41, 7, 81, 19}},
    {ControlKind::PushButton, kCtrlReset, "Reset to defaults", {90, 6, 170, 20}},
    {ControlKind::PushButton, kCtrlRefresh, "Refresh list", {176, 6, 236, 20}},
    {ControlKind::PushButton, kCtrlStandby, "Standby", {242, 6, 302, 20}},
    {ControlKind::GroupBox, 0, " Paths and outputs ", {3, 25, 397, 77}},
    {ControlKind::CheckBox, kCtrlGenEnabled, "Generator through adapter", {9, 34, 129, 44}},
    {ControlKind::CheckBox, kCtrlAnaEnabled, "Analyzer through adapter", {140, 34, 260, 44}},
    {ControlKind::CheckBox, kCtrlAudioOn, "Audio outputs on", {9, 47, 101, 57}},
    {ControlKind::RadioButton, kCtrlAudioVoltage4, "5 V TTL", {108, 47, 160, 57}},
    {ControlKind::RadioButton, kCtrlAudioVoltage4 + 1, "5 V CMOS", {164, 47, 216, 57}},
    {ControlKind::RadioButton, kCtrlAudioVoltage4 + 2, "3.3 V", {220, 47, 272, 57}},
    {ControlKind::RadioButton, kCtrlAudioVoltage4 + 3, "2.5 V", {276, 47, 328, 57}},
    {ControlKind::RadioButton, kCtrlAudioVoltage4 + 4, "1.8 V", {332, 47, 384, 57}},
    {ControlKind::CheckBox, kCtrlControlOn, "Control outputs on", {9, 61, 101, 71}},
    {ControlKind::RadioButton, kCtrlControlVoltage4, "5 V TTL", {108, 61, 160, 71}},
    {ControlKind::RadioButton, kCtrlControlVoltage4 + 1, "5 V CMOS", {164, 61, 216, 71}},
    {ControlKind::RadioButton, kCtrlControlVoltage4 + 2, "3.3 V", {220, 61, 272, 71}},
    {ControlKind::RadioButton, kCtrlControlVoltage4 + 3, "2.5 V", {276, 61, 328, 71}},
    {ControlKind::RadioButton, kCtrlControlVoltage4 + 4, "1.8 V", {332, 61, 384, 71}},
    {ControlKind::Tabs, kCtrlTabs, "", {3, 80, 397, 94}},
    {ControlKind::Static, kCtrlSlotLengthLabel, "Slot length", {9, 100, 55, 108}},
    {ControlKind::ComboBox, kCtrlSlotLength, "", {56, 98, 88, 110}},
    {ControlKind::CheckBox, kCtrlLsbFirst, "LSB first", {94, 99, 148, 109}},
    {ControlKind::Static, kCtrlDataLengthLabel, "Data length", {152, 100, 198, 108}},
    {ControlKind::Edit, kCtrlDataLength, "", {200, 98, 224, 110}},
    {ControlKind::Spin, kCtrlDataLengthSpin, "", {224, 98, 234, 110}},
    {ControlKind::Static, kCtrlSlotsLabel, "Slots per wire", {242, 100, 300, 108}},
    {ControlKind::ComboBox, kCtrlSlotsPerWire, "", {302, 98, 334, 110}},
    {ControlKind::CheckBox, kCtrlSignExtend, "Sign extend", {338, 99, 398, 109}},
    {ControlKind::Static, kCtrlLeadPadLabel, "Lead pad: 0", {9, 117, 69, 125}},
    {ControlKind::ScrollBar, kCtrlFormatBar, "", {72, 115, 322, 127}},
    {ControlKind::Static, kCtrlTrailPadLabel, "Trail pad: 0", {330, 117, 392, 125}},
    {ControlKind::Picture, kCtrlTiming, "", {9, 131, 391, 183}},
    {ControlKind::Static, kCtrlSerialLabel, "Serial clocks", {9, 188, 61, 196}},
    {ControlKind::RadioButton, kCtrlSerialIn, "In", {64, 187, 94, 197}},
    {ControlKind::RadioButton, kCtrlSerialOut, "Out", {96, 187, 130, 197}},
    {ControlKind::Static, kCtrlMasterDirLabel, "Master clock", {140, 188, 190, 196}},
    {ControlKind::RadioButton, kCtrlMasterIn, "In", {192, 187, 222, 197}},
    {ControlKind::RadioButton, kCtrlMasterOut, "Out", {224, 187, 258, 197}},
    {ControlKind::RadioButton, kCtrlMasterNone, "None", {260, 187, 300, 197}},
    {ControlKind::Static, kCtrlDelayLabel, "Delay", {304, 188, 328, 196}},
    {ControlKind::ColorCombo, kCtrlDelay, "", {330, 186, 390, 198}},
    {ControlKind::Static, kCtrlFrameLabel, "Frame clock", {9, 203, 59, 211}},
    {ControlKind::TextEdit, kCtrlFrameFreq, "", {64, 202, 126, 214}},
    {ControlKind::CheckBox, kCtrlFrameInvert, "Invert", {140, 203, 186, 213}},
    {ControlKind::CheckBox, kCtrlFrame1Bit, "1 bit wide", {190, 203, 250, 213}},
    {ControlKind::CheckBox, kCtrlFrameEarly, "Early", {254, 203, 296, 213}},
    {ControlKind::Static, kCtrlBitLabel, "Bit clock", {9, 218, 59, 226}},
    {ControlKind::TextEdit, kCtrlBitFreq, "", {64, 217, 126, 229}},
    {ControlKind::CheckBox, kCtrlBitInvert, "Invert", {140, 218, 186, 228}},
    {ControlKind::Static, kCtrlMasterLabel, "Master clock", {9, 233, 59, 241}},
    {ControlKind::TextEdit, kCtrlMasterFreq, "", {64, 232, 126, 244}},
    {ControlKind::Static, kCtrlMultiplierLabel, "Multiplier", {140, 233, 184, 241}},
    {ControlKind::ComboBox, kCtrlMultiplier, "", {190, 232, 230, 244}},
    {ControlKind::Static, kCtrlWireLabel, "Wire 1", {9, 249, 89, 257}},
    {ControlKind::Static, kCtrlWireLabel + 1, "Wire 2", {106, 249, 186, 257}},
    {ControlKind::Static, kCtrlWireLabel + 2, "Wire 3", {203, 249, 283, 257}},
    {ControlKind::Static, kCtrlWireLabel + 3, "Wire 4", {300, 249, 380, 257}},
    {ControlKind::PushButton, kCtrlRouting, "", {9, 259, 27, 273}},
    {ControlKind::PushButton, kCtrlRouting + 1, "", {32, 259, 50, 273}},
    {ControlKind::PushButton, kCtrlRouting + 2, "", {55, 259, 73, 273}},
    {ControlKind::PushButton, kCtrlRouting + 3, "", {78, 259, 96, 273}},
    {ControlKind::PushButton, kCtrlRouting + 4, "", {106, 259, 124, 273}},
    {ControlKind::PushButton, kCtrlRouting + 5, "", {129, 259, 147, 273}},
    {ControlKind::PushButton, kCtrlRouting + 6, "", {152, 259, 170, 273}},
    {ControlKind::PushButton, kCtrlRouting + 7, "", {175, 259, 193, 273}},
    {ControlKind::PushButton, kCtrlRouting + 8, "", {203, 259, 221, 273}},
    {ControlKind::PushButton, kCtrlRouting + 9, "", {226, 259, 244, 273}},
    {ControlKind::PushButton, kCtrlRouting + 10, "", {249, 259, 267, 273}},
    {ControlKind::PushButton, kCtrlRouting + 11, "", {272, 259, 290, 273}},
    {ControlKind::PushButton, kCtrlRouting + 12, "", {300, 259, 318, 273}},
    {ControlKind::PushButton, kCtrlRouting + 13, "", {323, 259, 341, 273}},
    {ControlKind::PushButton, kCtrlRouting + 14, "", {346, 259, 364, 273}},
    {ControlKind::PushButton, kCtrlRouting + 15, "", {369, 259, 387, 273}},
    {ControlKind::PushButton, kCtrlAllToA, "All to A", {9, 277, 69, 291}},
    {ControlKind::PushButton, kCtrlAllToB, "All to B", {75, 277, 135, 291}},
    {ControlKind::PushButton, kCtrlAllOff, "All off", {141, 277, 201, 291}},
    {ControlKind::PushButton, kCtrlStereoPairs, "Stereo pairs", {207, 277, 267, 291}},
    {ControlKind::Static, kCtrlAnaLabelA, "Channel A from wire", {9, 251, 85, 259}},
    {ControlKind::ComboBox, kCtrlAnaWireA, "", {86, 249, 122, 261}},
    {ControlKind::Static, kCtrlAnaLabelSlotA, "slot", {128, 251, 146, 259}},
    {ControlKind::ComboBox, kCtrlAnaSlotA, "", {150, 249, 186, 261}},
    {ControlKind::Static, kCtrlAnaLabelB, "Channel B from wire", {9, 267, 85, 275}},
    {ControlKind::ComboBox, kCtrlAnaWireB, "", {86, 265, 122, 277}},
    {ControlKind::Static, kCtrlAnaLabelSlotB, "slot", {128, 267, 146, 275}},
    {ControlKind::ComboBox, kCtrlAnaSlotB, "", {150, 265, 186, 277}},
    {ControlKind::RadioButton, kCtrlModeSpi, "SPI", {9, 99, 49, 109}},
    {ControlKind::RadioButton, kCtrlModeI2c, "I2C", {52, 99, 92, 109}},
    {ControlKind::CheckBox, kCtrlSpiPolarity, "Clock polarity", {110, 99, 186, 109}},
    {ControlKind::CheckBox, kCtrlSpiPhase, "Clock phase", {190, 99, 256, 109}},
    {ControlKind::Static, kCtrlSlaveLabel, "Slave address (hex)", {9, 118, 85, 126}},
    {ControlKind::Edit, kCtrlSlaveAddress, "", {86, 116, 110, 128}},
    {ControlKind::Static, kCtrlI2cLabel, "Last I2C command", {130, 118, 200, 126}},
    {ControlKind::TextEdit, kCtrlI2cStatus, "", {202, 116, 242, 128}},
    {ControlKind::Static, kCtrlTransmitLabel, "Transmit", {9, 136, 83, 144}},
    {ControlKind::HexEdit, kCtrlTransmit, "", {86, 134, 242, 146}},
    {ControlKind::PushButton, kCtrlSend, "Send", {250, 133, 300, 147}},
    {ControlKind::Static, kCtrlReceiveLabel, "Received", {9, 154, 83, 162}},
    {ControlKind::HexEdit, kCtrlReceive, "", {86, 152, 242, 164}},
};

constexpr DialogTemplate kPanel{kPanelDialog, "KEDA Adapter Control", {0, 0, 400, 297}, kControls};

constexpr ControlRun kFormatRuns[] = {{kCtrlSlotLengthLabel, kCtrlSlotsPerWire},
                                      {kCtrlSlotsLabel, kCtrlTiming}};
constexpr ControlRun kGeneratorRuns[] = {
    {kCtrlSignExtend, kCtrlSignExtend}, {kCtrlRouting, kCtrlWireLabelLast}, {kCtrlAllToA, kCtrlStereoPairs}};
constexpr ControlRun kAnalyserRuns[] = {{kCtrlAnaLabelA, kCtrlAnaSlotB}};
constexpr ControlRun kPortRuns[] = {{kCtrlModeSpi, kCtrlSend}};

} // namespace

std::span<const ControlRun> FormatControls() {
    return kFormatRuns;
}

std::span<const ControlRun> GeneratorControls() {
    return kGeneratorRuns;
}

std::span<const ControlRun> AnalyserControls() {
    return kAnalyserRuns;
}

std::span<const ControlRun> PortControls() {
    return kPortRuns;
}

const DialogTemplate& PanelLayout() {
    return kPanel;
}

} // namespace kalvio::keda
