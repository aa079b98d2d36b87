#include "peripheral_network/KvNetSetupLayout.h"

namespace kalvio {
namespace {

constexpr int kGeneralPage = 255;
constexpr int kArraysPage = 256;
constexpr CRect kPage{0, 0, 364, 236};

// The columns' names stand over the tab stops of the list, at four units a letter.
constexpr ControlTemplate kGeneralControls[] = {
    {ControlKind::Static,
     0,
     "Address Class           Type           HW Version FW Version Status",
     {7, 7, 357, 17}},
    {ControlKind::ListBox, kCtrlDeviceList, "", {7, 19, 357, 190}},
    {ControlKind::PushButton,
     kCtrlDetectDevices,
     "Detect all attached Kv-NET peripherals",
     {7, 198, 177, 212}},
    {ControlKind::PushButton, kCtrlDownloadFirmware, "Download firmware", {187, 198, 287, 212}},
};

constexpr ControlTemplate kArraysControls[] = {
    {ControlKind::Static, 0, "Existing Channel Arrays:", {7, 7, 97, 27}},
    {ControlKind::ListBox, kCtrlArrayList, "", {100, 7, 247, 89}},
    {ControlKind::PushButton, kCtrlNewArray, "New", {253, 7, 357, 21}},
    {ControlKind::PushButton, kCtrlEditArray, "Edit", {253, 24, 357, 38}},
    {ControlKind::PushButton, kCtrlDeleteArray, "Delete", {253, 41, 357, 55}},
    {ControlKind::PushButton, kCtrlArrayUp, "Move up", {253, 58, 357, 72}},
    {ControlKind::PushButton, kCtrlArrayDown, "Move down", {253, 75, 357, 89}},
    {ControlKind::Static, 0, "Address:", {7, 97, 97, 109}},
    {ControlKind::EditableCombo, kCtrlDeviceAddress, "", {100, 97, 145, 109}},
    {ControlKind::Static, 0, "Device type:", {151, 97, 199, 109}},
    {ControlKind::ComboBox, kCtrlDeviceType, "", {201, 97, 281, 109}},
    {ControlKind::Static, kCtrlDescription, "", {100, 113, 357, 123}},
    {ControlKind::Static, 0, "Available on this device:", {7, 129, 97, 149}},
    {ControlKind::ListBox, kCtrlAvailable, "", {100, 129, 247, 177}},
    {ControlKind::PushButton, kCtrlAddDetail, "Add >>", {253, 129, 357, 143}},
    {ControlKind::PushButton, kCtrlRemoveDetail, "Remove", {253, 146, 357, 160}},
    {ControlKind::Static, 0, "Details of this Channel Array:", {7, 183, 97, 203}},
    {ControlKind::ListBox, kCtrlDetails, "", {100, 183, 247, 231}},
    {ControlKind::PushButton, kCtrlDetailUp, "Move up", {253, 183, 357, 197}},
    {ControlKind::PushButton, kCtrlDetailDown, "Move down", {253, 200, 357, 214}},
};

} // namespace

const DialogTemplate kSetupGeneralLayout{kGeneralPage, "General", kPage, kGeneralControls};
const DialogTemplate kSetupArraysLayout{kArraysPage, "Channel Arrays", kPage, kArraysControls};

} // namespace kalvio
