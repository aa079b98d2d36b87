#pragma once

// The controls of the setup sheet's pages.

#include "platform/Dialog.h"

namespace kalvio {

enum SetupGeneralControl : int {
    kCtrlDeviceList = 2560,
    kCtrlDetectDevices = 2561,
    kCtrlDownloadFirmware = 2586,
};

enum SetupArrayControl : int {
    kCtrlArrayList = 2570,
    kCtrlNewArray,
    kCtrlDeleteArray,
    kCtrlDetailUp,
    kCtrlDetailDown,
    kCtrlDescription,
    kCtrlDeviceType = 2577,
    kCtrlAvailable,
    kCtrlAddDetail,
    kCtrlRemoveDetail,
    kCtrlArrayUp,
    kCtrlArrayDown,
    kCtrlDetails,
    kCtrlEditArray,
    kCtrlDeviceAddress,
};

extern const DialogTemplate kSetupGeneralLayout;
extern const DialogTemplate kSetupArraysLayout;

} // namespace kalvio
