// The texts of the hardware layer.

#include "platform/Text.h"

namespace {

constexpr kalvio::TextResource kTexts[] = {
    {12533,
     "The Kalvio cannot read enough sample data to perform frequency correction for the current input "
     "and output sample rates.\n\nThe Window function has been reset to Rectangular; please reduce the "
     "number of FFT points before resetting the Window function."},

    {12610, "Hardware Error : Initialise failed"},
    {12611, "Hardware Error : MicroGetMem failed"},
    {12612, "Hardware Error : MicroGetBit failed"},
    {12613, "Hardware Error : DSPGetMem24 failed"},
    {12614, "Hardware Error : DSPGetBit failed"},
    {12615, "Hardware Error : MicroPutMem failed"},
    {12616, "Hardware Error : MicroPutBit failed"},
    {12617, "Hardware Error : DSPPutMem24 failed"},
    {12618, "Hardware Error : DSPPutBit failed"},
    {12619, "Hardware Error : MicroGetMemBlock failed"},
    {12620, "Hardware Error : DSPGetMemBlock24 failed"},
    {12621, "Hardware Error : MicroPutMemBlock failed"},
    {12622, "Hardware Error : DSPPutMemBlock24 failed"},
    {12623, "Hardware Error : MicroFillMemBlock24 failed"},
    {12624, "Hardware Error : DSPFillMemBlock24 failed"},
    {12625, "Hardware Error : MicroPutBits failed"},
    {12626, "Hardware Error : MicroLoad failed"},
    {12627, "Hardware Error : FPGALoad failed"},
    {12628, "Hardware Error : DSPLoad failed"},
    {12629, "The Kalvio software has encountered errors in the USB connection with the hardware. Please exit "
            "the software, restart the Kalvio hardware, and then restart the software."},
    {12630, "The I2C memory address check failed on a call to %s%s.\nPlease report this error to Morvell, "
            "with details of this message and what you were doing at the time this happened."},

    {12669, "Failed to bring the analogue converters out of reset. Kalvio will now exit."},
    {12682, "The system failed to read the %s calibration table. Default values will be used but these will "
            "probably cause incorrect results.\nPlease restart Kalvio and try again; if this problem "
            "persists then the hardware may need to be re-calibrated."},
    {12683, "The system failed to read the %s MASTER calibration table. Default values will be used but "
            "these will probably cause incorrect results.\nPlease restart Kalvio and try again; if this "
            "problem persists then the hardware may need to be re-calibrated."},
    {12684, "The %s calibration table has an invalid checksum. Default values will be used but these will "
            "probably cause incorrect results.\nThe hardware will need to be re-calibrated."},
    {12685, "The %s calibration table has an invalid checksum. The factory defaults will be used for this "
            "session.\nDo you wish to reset to the factory defaults for all further sessions?\n\n(Note : if "
            "the hardware has been re-calibrated since it was new then any intermediate calibration will be "
            "lost)."},
    {12686, "Failed to reset the calibration to factory defaults. "},
    {12687, "You do not have a high enough security level to write the %s calibration table to the "
            "hardware. These calibration values have not been saved."},
    {12688, "The calibration details have been successfully reset to the factory defaults."},
    {12690, "VERIFY FAILED : The calibration table does not match the values in the hardware."},
    {12691, "master"},
    {12692, "Main Board"},
    {12693, "Analogue board"},
    {12694, "mirror"},

    {12700, "Get single byte from main board calibration table"},
    {12701, "Get value from main board calibration table"},
    {12702, "Get text from main board calibration table"},
    {12703, "Set single byte in main board calibration table"},
    {12704, "Set value in main board calibration table"},
    {12705, "Set text in main board calibration table"},
    {12706, "Get single byte from analogue board calibration table"},
    {12707, "Get value from analogue board calibration table"},
    {12708, "Get text from analogue board calibration table"},
    {12709, "Set single byte in analogue board calibration table"},
    {12710, "Set value in analogue board calibration table"},
    {12711, "Set text in analogue board calibration table"},
    {12712, "Write calibration table to main board"},
    {12713, "Write MASTER calibration table to main board"},
    {12714, "Write calibration table to analogue board"},
    {12715, "Write MASTER calibration table to analogue board"},
    {12716, "Get main board calibration date"},
    {12717, "Get main board calibration version"},
    {12718, "Get analogue board calibration date"},
    {12719, "Get analogue board calibration version"},
    {12720, "Set main board calibration version"},
    {12721, "Set analogue board calibration version"},
    {12722, "Get main board calibration organisation"},
    {12723, "Get main board calibration operator"},
    {12724, "Get analogue board calibration organisation"},
    {12725, "Get analogue board calibration operator"},
    {12726, "Set main board calibration organisation"},
    {12727, "Set main board calibration operator"},
    {12728, "Set analogue board calibration organisation"},
    {12729, "Set analogue board calibration operator"},
    {12730, "Get byte from Micro memory"},
    {12731, "Put byte into Micro memory"},
    {12732, "Get word from DSP memory"},
    {12733, "Put word into DSP memory"},
    {12734, "Get main board temperature"},
    {12735, "Get analogue board temperature"},
    {12736, "Get the unit serial number from the main board table"},
    {12737, "Get the unit serial number from the analogue board table"},
    {12738, "Set the unit serial number in the main board table"},
    {12739, "Set the unit serial number in the analogue board table"},
    {12741, "The system has detected an incorrect firmware version in the hardware. This can occur if the "
            "hardware is switched off and on again too quickly, or if a software installation has been "
            "performed while the hardware was switched on.\n\nAfter closing this message, please switch the "
            "hardware off, wait a few seconds, then switch it back on again.\n\nIf this problem persists, "
            "restart Windows and try running the software again.\n\nIf this does not fix the problem, the "
            "software may need to be re-installed.\n"},
    {12743, "The system has failed to initialise the hardware. After clicking OK, please switch the hardware "
            "off, leave it for a few seconds, and then switch it on again before restarting the software."},
    {12744, "Get main board hardware version"},
    {12745, "Get main board hardware options"},
    {12746, "Get software version of main board calibration table"},
    {12747, "Get analogue board hardware version"},
    {12748, "Get analogue board hardware options"},
    {12749, "Get software version of analogue board calibration table"},
    {12750, "1/2 UI interval in TDAC steps"},
    {12751, "Start of jitter range in TDAC steps"},
    {12752, "End of jitter range in TDAC steps"},
    {12753, "Get software version letter of main board calibration table"},
    {12754, "Get software version letter of analogue board calibration table"},
};

const kalvio::TextTable kRegistered{kTexts};

} // namespace
