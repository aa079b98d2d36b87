// The texts of the hardware layer.

#include "hardware/HardwareTexts.h"

#include "platform/Text.h"

namespace kalvio {
namespace {

constexpr TextResource kTexts[] = {
    {kTextTooFewSamples,
     "The Kalvio cannot read enough sample data to perform frequency correction for the current input "
     "and output sample rates.\n\nThe Window function has been reset to Rectangular; please reduce the "
     "number of FFT points before resetting the Window function."},

    {kTextInitialiseFailed, "Hardware Error : Initialise failed"},
    {kTextMicroGetMemFailed, "Hardware Error : MicroGetMem failed"},
    {kTextMicroGetBitFailed, "Hardware Error : MicroGetBit failed"},
    {kTextDSPGetMem24Failed, "Hardware Error : DSPGetMem24 failed"},
    {kTextDSPGetBitFailed, "Hardware Error : DSPGetBit failed"},
    {kTextMicroPutMemFailed, "Hardware Error : MicroPutMem failed"},
    {kTextMicroPutBitFailed, "Hardware Error : MicroPutBit failed"},
    {kTextDSPPutMem24Failed, "Hardware Error : DSPPutMem24 failed"},
    {kTextDSPPutBitFailed, "Hardware Error : DSPPutBit failed"},
    {kTextMicroGetMemBlockFailed, "Hardware Error : MicroGetMemBlock failed"},
    {kTextDSPGetMemBlock24Failed, "Hardware Error : DSPGetMemBlock24 failed"},
    {kTextMicroPutMemBlockFailed, "Hardware Error : MicroPutMemBlock failed"},
    {kTextDSPPutMemBlock24Failed, "Hardware Error : DSPPutMemBlock24 failed"},
    {kTextMicroFillMemBlockFailed, "Hardware Error : MicroFillMemBlock24 failed"},
    {kTextDSPFillMemBlock24Failed, "Hardware Error : DSPFillMemBlock24 failed"},
    {kTextMicroPutBitsFailed, "Hardware Error : MicroPutBits failed"},
    {kTextMicroLoadFailed, "Hardware Error : MicroLoad failed"},
    {kTextFPGALoadFailed, "Hardware Error : FPGALoad failed"},
    {kTextDSPLoadFailed, "Hardware Error : DSPLoad failed"},
    {kTextBadLink,
     "The Kalvio software has encountered errors in the USB connection with the hardware. Please exit "
     "the software, restart the Kalvio hardware, and then restart the software."},
    {kTextAddressCheck,
     "The I2C memory address check failed on a call to %s%s.\nPlease report this error to Morvell, "
     "with details of this message and what you were doing at the time this happened."},

    {kTextConvertersInReset, "Failed to bring the analogue converters out of reset. Kalvio will now exit."},
    {kTextMirrorUnreadable,
     "The system failed to read the %s calibration table. Default values will be used but these will "
     "probably cause incorrect results.\nPlease restart Kalvio and try again; if this problem "
     "persists then the hardware may need to be re-calibrated."},
    {kTextMasterUnreadable,
     "The system failed to read the %s MASTER calibration table. Default values will be used but "
     "these will probably cause incorrect results.\nPlease restart Kalvio and try again; if this "
     "problem persists then the hardware may need to be re-calibrated."},
    {kTextBothDamaged,
     "The %s calibration table has an invalid checksum. Default values will be used but these will "
     "probably cause incorrect results.\nThe hardware will need to be re-calibrated."},
    {kTextAskFactoryReset,
     "The %s calibration table has an invalid checksum. The factory defaults will be used for this "
     "session.\nDo you wish to reset to the factory defaults for all further sessions?\n\n(Note : if "
     "the hardware has been re-calibrated since it was new then any intermediate calibration will be "
     "lost)."},
    {kTextFactoryResetFailed, "Failed to reset the calibration to factory defaults. "},
    {kTextSecurityTooLow,
     "You do not have a high enough security level to write the %s calibration table to the "
     "hardware. These calibration values have not been saved."},
    {kTextFactoryResetDone, "The calibration details have been successfully reset to the factory defaults."},
    {kTextVerifyFailed, "VERIFY FAILED : The calibration table does not match the values in the hardware."},
    {kTextMaster, "master"},
    {kTextMainBoard, "Main Board"},
    {kTextAnalogueBoard, "Analogue board"},
    {kTextMirror, "mirror"},

    {kTextHelpGetMainCalibByte, "Get single byte from main board calibration table"},
    {kTextHelpGetMainCalibValue, "Get value from main board calibration table"},
    {kTextHelpGetMainCalibString, "Get text from main board calibration table"},
    {kTextHelpSetMainCalibByte, "Set single byte in main board calibration table"},
    {kTextHelpSetMainCalibValue, "Set value in main board calibration table"},
    {kTextHelpSetMainCalibString, "Set text in main board calibration table"},
    {kTextHelpGetAnalogueCalibByte, "Get single byte from analogue board calibration table"},
    {kTextHelpGetAnalogueCalibValue, "Get value from analogue board calibration table"},
    {kTextHelpGetAnalogueCalibString, "Get text from analogue board calibration table"},
    {kTextHelpSetAnalogueCalibByte, "Set single byte in analogue board calibration table"},
    {kTextHelpSetAnalogueCalibValue, "Set value in analogue board calibration table"},
    {kTextHelpSetAnalogueCalibString, "Set text in analogue board calibration table"},
    {kTextHelpWriteMainTable, "Write calibration table to main board"},
    {kTextHelpWriteMainMasterTable, "Write MASTER calibration table to main board"},
    {kTextHelpWriteAnalogueTable, "Write calibration table to analogue board"},
    {kTextHelpWriteAnalogueMasterTable, "Write MASTER calibration table to analogue board"},
    {kTextHelpGetMainCalibDate, "Get main board calibration date"},
    {kTextHelpGetMainCalibVersion, "Get main board calibration version"},
    {kTextHelpGetAnalogueCalibDate, "Get analogue board calibration date"},
    {kTextHelpGetAnalogueCalibVersion, "Get analogue board calibration version"},
    {kTextHelpSetMainCalibVersion, "Set main board calibration version"},
    {kTextHelpSetAnalogueCalibVersion, "Set analogue board calibration version"},
    {kTextHelpGetMainCalibOrganisation, "Get main board calibration organisation"},
    {kTextHelpGetMainCalibOperator, "Get main board calibration operator"},
    {kTextHelpGetAnalogueCalibOrganisation, "Get analogue board calibration organisation"},
    {kTextHelpGetAnalogueCalibOperator, "Get analogue board calibration operator"},
    {kTextHelpSetMainCalibOrganisation, "Set main board calibration organisation"},
    {kTextHelpSetMainCalibOperator, "Set main board calibration operator"},
    {kTextHelpSetAnalogueCalibOrganisation, "Set analogue board calibration organisation"},
    {kTextHelpSetAnalogueCalibOperator, "Set analogue board calibration operator"},
    {kTextHelpMicroGetMem, "Get byte from Micro memory"},
    {kTextHelpMicroPutMem, "Put byte into Micro memory"},
    {kTextHelpDSPGetMem, "Get word from DSP memory"},
    {kTextHelpDSPPutMem, "Put word into DSP memory"},
    {kTextHelpGetMainTemp, "Get main board temperature"},
    {kTextHelpGetAnalogueTemp, "Get analogue board temperature"},
    {kTextHelpGetMainUnitSerialNum, "Get the unit serial number from the main board table"},
    {kTextHelpGetAnalogueUnitSerialNum, "Get the unit serial number from the analogue board table"},
    {kTextHelpSetMainUnitSerialNum, "Set the unit serial number in the main board table"},
    {kTextHelpSetAnalogueUnitSerialNum, "Set the unit serial number in the analogue board table"},
    {kTextWrongFirmware,
     "The system has detected an incorrect firmware version in the hardware. This can occur if the "
     "hardware is switched off and on again too quickly, or if a software installation has been "
     "performed while the hardware was switched on.\n\nAfter closing this message, please switch the "
     "hardware off, wait a few seconds, then switch it back on again.\n\nIf this problem persists, "
     "restart Windows and try running the software again.\n\nIf this does not fix the problem, the "
     "software may need to be re-installed.\n"},
    {kTextNotStarted,
     "The system has failed to initialise the hardware. After clicking OK, please switch the hardware "
     "off, leave it for a few seconds, and then switch it on again before restarting the software."},
    {kTextHelpGetMainHWVersion, "Get main board hardware version"},
    {kTextHelpGetMainHWOptions, "Get main board hardware options"},
    {kTextHelpGetMainSWVersion, "Get software version of main board calibration table"},
    {kTextHelpGetAnalogueHWVersion, "Get analogue board hardware version"},
    {kTextHelpGetAnalogueHWOptions, "Get analogue board hardware options"},
    {kTextHelpGetAnalogueSWVersion, "Get software version of analogue board calibration table"},
    {kTextHelpTDACHalfUI, "1/2 UI interval in TDAC steps"},
    {kTextHelpTDACJitterStart, "Start of jitter range in TDAC steps"},
    {kTextHelpTDACJitterEnd, "End of jitter range in TDAC steps"},
    {kTextHelpGetMainSWVersionLetter, "Get software version letter of main board calibration table"},
    {kTextHelpGetAnalogueSWVersionLetter, "Get software version letter of analogue board calibration table"},
};

const TextTable kRegistered{kTexts};

} // namespace
} // namespace kalvio
