#include "switching/panels/ChannelArrayControlPanelLayout.h"

#include <array>

namespace kalvio {
namespace {

constexpr int kArrayDetailsDialog = 254;
constexpr int kLeft = 8;
constexpr int kRight = 340;
constexpr int kInRow = 8;
constexpr int kBoxPitch = 40;
constexpr int kFirstRow = 57;
constexpr int kRowPitch = 14;

constexpr ControlTemplate kHead[] = {
    {ControlKind::Static, 0, "Channel Array", {kLeft, 7, 62, 19}},
    {ControlKind::ComboBox, kCtrlArray, "", {64, 7, 204, 19}},
    {ControlKind::Static, 0, "Range", {216, 7, 242, 19}},
    {ControlKind::ComboBox, kCtrlArrayRange, "", {244, 7, kRight, 19}},
    {ControlKind::Static, kCtrlArrayDescription, "", {kLeft, 23, 204, 33}},
    {ControlKind::CheckBox, kCtrlArrayBalance, "Balanced measurement mode", {216, 23, kRight, 33}},
    {ControlKind::Static, 0, "Channels are ", {kLeft, 39, 62, 49}},
    {ControlKind::RadioButton, kCtrlExclusivelyOn, "Exclusively on", {64, 39, 140, 49}},
    {ControlKind::RadioButton, kCtrlExclusivelyOff, "Exclusively off", {144, 39, 224, 49}},
    {ControlKind::RadioButton, kCtrlIndependent, "Independently controlled", {228, 39, kRight, 49}},
};

constexpr ControlTemplate kFoot[] = {
    {ControlKind::PushButton, kCtrlClearAll, "Clear all ", {kLeft, 117, 67, 131}},
    {ControlKind::PushButton, kCtrlSetAll, "Set all ", {73, 117, 133, 131}},
    {ControlKind::Static, kCtrlArrayWarning, "", {141, 117, kRight, 131}},
};

consteval auto MakeControls() {
    std::array<ControlTemplate, std::size(kHead) + 2 * kArrayBoxes + std::size(kFoot)> controls{};
    std::size_t next = 0;
    for (const ControlTemplate& control : kHead) {
        controls[next++] = control;
    }
    for (int box = 0; box < kArrayBoxes; ++box) {
        const int left = kLeft + kBoxPitch * (box % kInRow);
        const int top = kFirstRow + kRowPitch * (box / kInRow);
        controls[next++] = {ControlKind::Static, kCtrlFirstNumber + box, "",
                            CRect{left, top, left + 18, top + 10}};
        controls[next++] = {ControlKind::CheckBox, kCtrlFirstBox + box, "",
                            CRect{left + 20, top, left + 32, top + 10}};
    }
    for (const ControlTemplate& control : kFoot) {
        controls[next++] = control;
    }
    return controls;
}

constexpr auto kControls = MakeControls();

constexpr ControlTemplate kDetailsControls[] = {
    {ControlKind::Static, 0, "Name", {kLeft, 7, 40, 19}},
    {ControlKind::TextEdit, kCtrlArrayName, "", {42, 7, 192, 19}},
    {ControlKind::CheckBox, kCtrlArrayStereo, "Stereo array", {42, 25, 192, 35}},
    {ControlKind::CheckBox,
     kCtrlArrayExclusiveOnly,
     "Array channels can be exclusive only",
     {42, 39, 192, 49}},
    {ControlKind::PushButton, IDOK, "OK", {86, 57, 136, 71}},
    {ControlKind::PushButton, IDCANCEL, "Cancel", {142, 57, 192, 71}},
};

} // namespace

const DialogTemplate kArrayPanelLayout{
    kArrayPanel, "Channel Array Control", {0, 0, kRight + kLeft, 138}, kControls};

const DialogTemplate kArrayDetailsLayout{
    kArrayDetailsDialog, "New Switcher Channel Array", {0, 0, 199, 78}, kDetailsControls};

} // namespace kalvio
