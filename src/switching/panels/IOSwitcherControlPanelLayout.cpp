#include "switching/panels/IOSwitcherControlPanelLayout.h"

namespace kalvio {
namespace {

constexpr int kLabelLeft = 7;
constexpr int kFirstBox = 44;
constexpr int kBoxWidth = 24;
constexpr int kSecondGroup = kFirstBox + 8 * kBoxWidth + 8;
constexpr int kFlags = kSecondGroup + 8 * kBoxWidth + 8;
constexpr int kRight = kFlags + 66;
constexpr int kRowTops[] = {40, 54}; // of bus A and bus B
constexpr int kRowHeight = 10;

constexpr const char* kRelayNumbers[] = {"1", "2", "3", "4", "5", "6", "7", "8"};
constexpr const char* kFlagNames[] = {"Bal", "Load"};
constexpr const char* kBusLabels[] = {"Bus A", "Bus B"};

constexpr ControlTemplate Box(const SwitcherBox& box) {
    const int top = kRowTops[box.bus];
    const int left = box.IsRelay() ? (box.part == 0 ? kFirstBox : kSecondGroup) + kBoxWidth * box.bit
                                   : kFlags + 32 * box.bit;
    const int right = left + (box.IsRelay() ? kBoxWidth - 1 : 31);
    return {ControlKind::CheckBox, box.id, box.IsRelay() ? kRelayNumbers[box.bit] : kFlagNames[box.bit],
            CRect{left, top, right, top + kRowHeight}};
}

constexpr ControlTemplate kHead[] = {
    {ControlKind::Static, 0, "Address", {kLabelLeft, 7, 40, 20}},
    {ControlKind::EditableCombo, kCtrlSwitcherAddress, "", {kFirstBox, 7, 100, 20}},
    {ControlKind::PushButton, kCtrlSwitcherDetect, "Auto-detect", {108, 7, 166, 20}},
    {ControlKind::PushButton, kCtrlSwitcherOn, "On/Reset", {174, 7, 224, 20}},
    {ControlKind::PushButton, kCtrlSwitcherStandby, "Standby", {232, 7, 282, 20}},
    {ControlKind::Static, 0, "Group X", {kFirstBox, 28, kFirstBox + 48, 38}},
    {ControlKind::Static, 0, "Group Y", {kSecondGroup, 28, kSecondGroup + 48, 38}},
};

constexpr ControlTemplate kFoot[] = {
    {ControlKind::Static, 2744, "DC Voltage: Bus A: +ve", {kLabelLeft, 72, 97, 84}},
    {ControlKind::Edit, kCtrlPositiveA, "", {99, 72, 129, 84}},
    {ControlKind::Static, 2745, "-ve", {135, 72, 151, 84}},
    {ControlKind::Edit, kCtrlNegativeA, "", {153, 72, 183, 84}},
    {ControlKind::Static, 2746, "Bus B: +ve", {195, 72, 237, 84}},
    {ControlKind::Edit, kCtrlPositiveB, "", {239, 72, 269, 84}},
    {ControlKind::Static, 2747, "-ve", {275, 72, 291, 84}},
    {ControlKind::Edit, kCtrlNegativeB, "", {293, 72, 323, 84}},
    {ControlKind::Static,
     0,
     "NOTE: This panel is for diagnostic use only. Changes made here will NOT alter the setup of any Channel "
     "Arrays, and these changes will NOT be saved in Configurations.",
     {kLabelLeft, 92, kRight, 112}},
};

constexpr std::size_t kRows = std::size(kSwitcherBoxes) + std::size(kBusLabels);

consteval auto MakeControls() {
    std::array<ControlTemplate, std::size(kHead) + kRows + std::size(kFoot)> controls{};
    std::size_t next = 0;
    for (const ControlTemplate& control : kHead) {
        controls[next++] = control;
    }
    int bus = -1;
    for (const SwitcherBox& box : kSwitcherBoxes) {
        if (box.bus != bus) {
            bus = box.bus;
            controls[next++] = {ControlKind::Static, 0, kBusLabels[bus],
                                CRect{kLabelLeft, kRowTops[bus], 40, kRowTops[bus] + kRowHeight}};
        }
        controls[next++] = Box(box);
    }
    for (const ControlTemplate& control : kFoot) {
        controls[next++] = control;
    }
    return controls;
}

constexpr auto kControls = MakeControls();

} // namespace

const DialogTemplate kSwitcherPanelLayout{
    kSwitcherPanel, "I/O Switcher Diagnostic Control", {0, 0, kRight + kLabelLeft, 119}, kControls};

} // namespace kalvio
