#include "regulation/RegulationViewLayout.h"

#include "regulation/RegulationFields.h"

namespace kalvio::regulation {
namespace {

using enum ControlKind;

constexpr ControlTemplate kResultControls[] = {
    {GroupBox, 0, " Result ", Area(3, 1, 236, 86)},
    {Static, 0, "Regulate", Area(9, 15, 30, 8)},
    {ComboBox, kCtrlResult, "", Area(44, 12, 115, 186)},
    {ComboBox, kCtrlChannel, "", Area(161, 12, 72, 202)},
    {Static, 0, "to", Area(9, 30, 8, 8)},
    {ComboBox, kCtrlRegulationType, "", Area(44, 27, 91, 186)},
    {Edit, kCtrlRegulateTo, "", Area(137, 27, 43, 12)},
    {ComboBox, kCtrlResultUnit, "", Area(184, 27, 50, 202)},
    {Static, 0, "Tolerance", Area(9, 44, 33, 8)},
    {ComboBox, kCtrlToleranceType, "", Area(44, 42, 91, 176)},
    {Edit, kCtrlTolerance, "", Area(137, 42, 43, 12)},
    {ComboBox, kCtrlToleranceUnit, "", Area(184, 42, 50, 121)},
    {Static, 0, "Trend", Area(9, 58, 20, 8)},
    {ComboBox, kCtrlTrend, "", Area(44, 56, 114, 144)},
    {Static, 0, "Sensitivity", Area(161, 58, 32, 8)},
    {Edit, kCtrlSensitivity, "", Area(196, 56, 27, 12)},
    {Static, 0, "%", Area(225, 58, 8, 8)},
    {Static, 0, "Timeout", Area(10, 73, 26, 8)},
    {Edit, kCtrlTimeout, "", Area(44, 71, 28, 12)},
    {Static, 0, "seconds", Area(75, 73, 28, 8)},
    {CheckBox, kCtrlContinuous, "Continuous", Area(108, 73, 50, 10)},
    {CheckBox, kCtrlUseSettling, "Use Sweep settling", Area(161, 73, 73, 10)},
};

constexpr ControlTemplate kSourceControls[] = {
    {GroupBox, 0, " Source ", Area(3, 0, 236, 58)},
    {Static, 0, "Vary", Area(9, 13, 15, 8)},
    {ComboBox, kCtrlSource, "", Area(44, 11, 115, 297)},
    {CheckBox, kCtrlOppositeChannel, "Opposite channel", Area(165, 13, 71, 10)},
    {Static, 0, "Limits", Area(9, 28, 18, 8)},
    {Edit, kCtrlSourceMinLimit, "", Area(44, 26, 45, 12)},
    {Static, 0, "to", Area(96, 28, 8, 8)},
    {Edit, kCtrlSourceMaxLimit, "", Area(113, 26, 45, 12)},
    {ComboBox, kCtrlSourceUnit, "", Area(165, 26, 68, 121)},
    {Static, 0, "Initial step", Area(9, 42, 32, 8)},
    {Edit, kCtrlStepSize, "", Area(43, 40, 46, 12)},
    {CheckBox, kCtrlStepSizeAuto, "Auto", Area(95, 42, 30, 10)},
    {Static, 0, "Direction", Area(129, 42, 29, 8)},
    {ComboBox, kCtrlDirection, "", Area(165, 40, 68, 144)},
};

constexpr ControlTemplate kOperationControls[] = {
    {PushButton, kCtrlStart, "Regulate", Area(4, 6, 53, 14)},
    {PushButton, kCtrlAbort, "Abort", Area(62, 6, 53, 14)},
    {Static, kCtrlStatus, "Regulation in progress...\nReason for failure", Area(123, 4, 115, 17)},
};

constexpr DialogTemplate kPanels[] = {
    {kResultPanel, "Regulation Result", Area(0, 0, 243, 90), kResultControls},
    {kSourcePanel, "Regulation Source", Area(0, 0, 243, 60), kSourceControls},
    {kOperationPanel, "Regulation Operation", Area(0, 0, 243, 26), kOperationControls},
};

} // namespace

std::span<const DialogTemplate> PanelLayouts() {
    return kPanels;
}

} // namespace kalvio::regulation
