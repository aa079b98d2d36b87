#pragma once

// What an operation on the peripheral network can end with, and what the user is told of it.

#include "platform/Export.h"

#include <cstdint>

inline constexpr std::uint8_t KVNET_ADDRESS_NONE = 254;
inline constexpr std::uint8_t KVNET_ADDRESS_BROADCAST = 255;

enum KvNetError : short {
    KVNET_OK = 0,
    KVNET_ERR_PARAMETER = -1,
    KVNET_ERR_HARDWARE = -2,         // no unit, or the exchange with it failed
    KVNET_ERR_TIMEOUT = -3,          // told by the unit: the device did not answer
    KVNET_ERR_ADDRESS = -4,          // told by the unit: another device answered
    KVNET_ERR_LENGTH = -5,           // told by the unit
    KVNET_ERR_INVALID_RESPONSE = -6, // told by the unit
    KVNET_ERR_MEMORY = -7,
    KVNET_ERR_ARRAY_NOT_DEFINED = -8,
    KVNET_ERR_CHANNEL_NOT_IN_ARRAY = -9,
    KVNET_ERR_RESPONSE_MISMATCH = -10, // the echo differs from what was sent
    KVNET_ERR_ARRAY_EXISTS = -11,
    KVNET_ERR_STEREO_MISMATCH = -12,
    KVNET_ERR_ARRAY_INDEX = -13, // a place outside the array list; has no text of its own
    KVNET_ERR_DEVICE_TYPE = -14,
    KVNET_ERR_UNKNOWN_DEVICE = -15,
    KVNET_ERR_ARRAY_IN_USE = -16,
    KVNET_ERR_EXCLUSIVE_ONLY = -18,
    KVNET_ERR_CONFLICT = -19,
};

// Reasons and parameter texts of ReportMethodError (peripheral_network/bus/PeripheralNetwork.h).
enum KvNetText : unsigned {
    kTextClassSwitcher = 12500,
    kTextClassFormatConverter,
    kTextTypeIOSwitcher,
    kTextTypeKedaAdapter,
    kTextClassUnknown,
    kTextReasonUnknown, // the reasons complete "The ... method failed because ..."
    kTextReasonHardware,
    kTextReasonTimeout,
    kTextReasonAddress,
    kTextReasonLength,
    kTextReasonInvalidResponse,
    kTextReasonMemory,
    kTextReasonArrayNotDefined,
    kTextReasonChannelNotInArray,
    kTextReasonMismatch,
    kTextReasonArrayExists,
    kTextReasonStereoMismatch,
    kTextReasonDeviceType,
    kTextReasonUnknownDevice,
    kTextReasonArrayInUse,
    kTextReasonExclusiveOnly,
    kTextReasonConflict,
    kTextReasonParameter,     // %s: a parameter
    kTextReasonFieldMismatch, // %s: a parameter
    kTextParameterAddress,
    kTextParameterBus,
    kTextParameterGroup,
    kTextParameterOn,
    kTextParameterMask,
    kTextParameterChannel,
    kTextKvNetMethodFailed, // %s: the method, %s: the reason
};

// The string id of the reason that belongs to a code; the unknown reason for every code without one. Any
// thread.
[[nodiscard]] KALVIO_API unsigned GetErrorMessageID(short code);

// Whether an address may be used: 0 to 63, and 255 where a broadcast is allowed. Any thread.
[[nodiscard]] KALVIO_API int IsValidAddress(short address, int allowBroadcast);
