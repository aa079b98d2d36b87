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
};

const TextTable kTable{kTexts};

} // namespace
} // namespace kalvio
