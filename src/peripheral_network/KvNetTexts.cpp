#include "peripheral_network/KvNetTexts.h"

namespace kalvio {
namespace {

constexpr TextResource kTexts[] = {
    {kTextFirmwareBrowse, "Download Kv-NET firmware..."},
    {kTextFirmwareNotOpened, "Cannot open this Kv-NET firmware file."},
    {kTextFirmwareEnd,
     "Reached end of Kv-NET firmware file while data or header still expected. This firmware "
     "download cannot continue."},
    {kTextFirmwareHeader, "The header of the Kv-NET firmware file is either invalid, or does not match the "
                          "device to download into."},
    {kTextFirmwareSector,
     "Invalid sector (%d) found in Kv-NET firmware file. This firmware download cannot continue."},
    {kTextFirmwareBlock,
     "Invalid block counter (%d) found in Kv-NET firmware file. This firmware download cannot continue."},
    {kTextFirmwareSize, "Sector %d was an invalid size of %d bytes. This firmware download cannot continue."},
    {kTextFirmwareWrite, "Failed to write sector %d after %d tries. This firmware download cannot continue."},
    {kTextProgressCaption, "Downloading Kv-NET Firmware..."},
    {kTextProgressTitle, "Progress"},
    {kTextProgressFrame, "Please wait while downloading firmware...\n\n%s"},
    {kTextProgressSector, "Downloading sector %d..."},
    {kTextProgressAgain, "DOWNLOAD OF SECTOR %d FAILED, trying again..."},

    {kTextSetupCaption, "Kv-NET Peripheral Setup"},
    {kTextArrayPanel, "Channel Array Control"},
    {kTextNoArraySelected, "You must use the %s(strName) method to select the current Channel Array before "
                           "trying to use Channel Array methods."},
    {kTextExclusiveArray,
     "The %s method failed because the %s Channel Array can only have its channels turned "
     "on exclusively. "},

    {kTextShowErrorMessages, "Show error messages"},
    {kTextGetStatus, "Get Status"},
    {kTextReset, "Reset"},
    {kTextChannelArrays, "Channel Arrays"},
    {kTextDefineArray, "Define Channel Array"},
    {kTextRemoveArray, "Remove Channel Array"},
    {kTextSetArray, "Set current Channel Array"},
    {kTextOnExclusively, "Turn channel on exclusively"},
    {kTextOffExclusively, "Turn channel off exclusively"},
    {kTextChannelOn, "Turn channel on (independently)"},
    {kTextChannelOff, "Turn channel off (independently)"},
    {kTextClearAll, "Clear all channels"},
    {kTextSetAll, "Set all channels"},
    {kTextSetBalance, "Set Balance for Channel Array"},

    {kTextFirmwareDone, "The Kv-NET firmware was downloaded successfully."},
    {kTextFirmwareFailed, "Failed to download firmware to this Kv-NET device."},
    {kTextSetupFailed, "Failed to initialise the Kv-NET setup window."},
    {kTextNewArrayFailed, "Failed to create a new Channel Array! This may be because of a lack of memory."},
    {kTextBadAddress, "The address you have entered is not a valid Kv-NET peripheral address. Please enter a "
                      "number between %d and %d."},
    {kTextAskUseAddress,
     "The Kv-NET peripheral with this address is either not switched on, or is a device that cannot be used "
     "in a Channel Array. Are you sure you wish to use this address?"},
    {kTextDetailConflict, "Cannot add these details to the Channel Array, because they conflict with details "
                          "that are already in the array."},
    {kTextArrayEmpty, "This Channel Array does not contain any channels! Please enter some details, or "
                      "delete this Channel Array."},
    {kTextNameTaken,
     "The name you have entered is already in use for a Channel Array. Please amend your entry."},
    {kTextArrayBusy, "Cannot delete this Channel Array, because it is in use elsewhere in the system (for "
                     "example, as a Sweep source)."},
    {kTextAskDelete, "Are you sure you wish to delete this Channel Array?"},
    {kTextDeviceTypeUnknown, "- Unknown -"},
    {kTextBusA, "Bus A"},
    {kTextBusB, "Bus B"},
    {kTextGroupX, "Group X"},
    {kTextGroupY, "Group Y"},
    {kTextConverterA, "Ch A"},
    {kTextConverterB, "Ch B"},
    {kTextGenerator, "Generator"},
    {kTextAnalyzer, "Analyzer"},
};

const TextTable kTable{kTexts};

} // namespace
} // namespace kalvio
