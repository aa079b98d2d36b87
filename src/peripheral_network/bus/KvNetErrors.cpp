#include "peripheral_network/bus/KvNetErrors.h"

#include "platform/Text.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr kalvio::TextResource kTexts[] = {
    {kTextClassSwitcher, "Switcher"},
    {kTextClassFormatConverter, "Format converter"},
    {kTextTypeIOSwitcher, "I/O Switcher"},
    {kTextTypeKedaAdapter, "KEDA Adapter"},
    {kTextClassUnknown, "Unknown"},
    {kTextReasonUnknown, "an unknown error occurred"},
    {kTextReasonHardware, "the call to the hardware failed"},
    {kTextReasonTimeout, "the hardware timed out waiting for a response from the device"},
    {kTextReasonAddress, "the address returned by the device was incorrect"},
    {kTextReasonLength, "the response from the device was not the correct length"},
    {kTextReasonInvalidResponse, "the response from the device was invalid"},
    {kTextReasonMemory, "there is not enough memory"},
    {kTextReasonArrayNotDefined, "the specified Channel Array has not been defined"},
    {kTextReasonChannelNotInArray, "the specified channel does not exist in the Channel Array"},
    {kTextReasonMismatch, "the response from the device does not match the parameters passed"},
    {kTextReasonArrayExists, "the specified array already exists"},
    {kTextReasonStereoMismatch,
     "an attempt was made to add stereo channels to a non-stereo Channel Array, or vice versa"},
    {kTextReasonDeviceType, "an invalid Kv-NET device type was specified"},
    {kTextReasonUnknownDevice, "the Kalvio does not know about this type of Kv-Net device"},
    {kTextReasonArrayInUse, "the array was in use somewhere else in Kalvio (for example, as a Sweep source)"},
    {kTextReasonExclusiveOnly,
     "an invalid operation was attempted on a Channel Array set up to be \"exclusive only\""},
    {kTextReasonConflict, "a conflict was detected with some details already in the Channel Array"},
    {kTextReasonParameter, "the %s parameter passed is invalid"},
    {kTextReasonFieldMismatch, "the %s field of the response disagrees with the parameters passed"},
    {kTextParameterAddress, "'sAddress'"},
    {kTextParameterBus, "'sBus'"},
    {kTextParameterGroup, "'sGroup'"},
    {kTextParameterOn, "'On' status"},
    {kTextParameterMask, "'Mask' status"},
    {kTextParameterChannel, "'sChannel'"},
    {kTextKvNetMethodFailed, "The %s method failed because %s."},
};

const kalvio::TextTable kTable{kTexts};

struct Reason {
    short code;
    unsigned text;
};

constexpr Reason kReasons[] = {
    {KVNET_ERR_HARDWARE, kTextReasonHardware},
    {KVNET_ERR_TIMEOUT, kTextReasonTimeout},
    {KVNET_ERR_ADDRESS, kTextReasonAddress},
    {KVNET_ERR_LENGTH, kTextReasonLength},
    {KVNET_ERR_INVALID_RESPONSE, kTextReasonInvalidResponse},
    {KVNET_ERR_MEMORY, kTextReasonMemory},
    {KVNET_ERR_ARRAY_NOT_DEFINED, kTextReasonArrayNotDefined},
    {KVNET_ERR_CHANNEL_NOT_IN_ARRAY, kTextReasonChannelNotInArray},
    {KVNET_ERR_RESPONSE_MISMATCH, kTextReasonMismatch},
    {KVNET_ERR_ARRAY_EXISTS, kTextReasonArrayExists},
    {KVNET_ERR_STEREO_MISMATCH, kTextReasonStereoMismatch},
    {KVNET_ERR_DEVICE_TYPE, kTextReasonDeviceType},
    {KVNET_ERR_UNKNOWN_DEVICE, kTextReasonUnknownDevice},
    {KVNET_ERR_ARRAY_IN_USE, kTextReasonArrayInUse},
    {KVNET_ERR_EXCLUSIVE_ONLY, kTextReasonExclusiveOnly},
    {KVNET_ERR_CONFLICT, kTextReasonConflict},
};

constexpr short kHighestDeviceAddress = 63;

} // namespace

unsigned GetErrorMessageID(short code) {
    const auto* found = std::ranges::find(kReasons, code, &Reason::code);
    return found == std::end(kReasons) ? kTextReasonUnknown : found->text;
}

int IsValidAddress(short address, int allowBroadcast) {
    const bool device = address >= 0 && address <= kHighestDeviceAddress;
    return device || (allowBroadcast != 0 && address == KVNET_ADDRESS_BROADCAST) ? 1 : 0;
}
