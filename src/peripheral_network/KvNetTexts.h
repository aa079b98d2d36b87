#pragma once

// String ids of the network document's own texts.

#include "platform/Text.h"

namespace kalvio {

enum KvNetSettingsText : unsigned {
    kTextFirmwareBrowse = 13100,
    kTextFirmwareNotOpened,
    kTextFirmwareEnd,
    kTextFirmwareHeader,
    kTextFirmwareSector, // %d: sector
    kTextFirmwareBlock,  // %d: block
    kTextFirmwareSize,   // %d: sector, %d: bytes
    kTextFirmwareWrite,  // %d: sector, %d: tries
    kTextProgressCaption,
    kTextProgressTitle,
    kTextProgressFrame,  // %s: one of the next two
    kTextProgressSector, // %d: sector
    kTextProgressAgain,  // %d: sector

    kTextSetupCaption,
    kTextArrayPanel,
    kTextNoArraySelected, // %s: method
    kTextExclusiveArray,  // %s: method, %s: array

    kTextShowErrorMessages,
    kTextGetStatus,
    kTextReset,
    kTextChannelArrays,
    kTextDefineArray,
    kTextRemoveArray,
    kTextSetArray,
    kTextOnExclusively,
    kTextOffExclusively,
    kTextChannelOn,
    kTextChannelOff,
    kTextClearAll,
    kTextSetAll,
    kTextSetBalance,

    kTextFirmwareDone, // the setup sheet
    kTextFirmwareFailed,
    kTextSetupFailed,
    kTextNewArrayFailed,
    kTextBadAddress, // %d: lowest, %d: highest address
    kTextAskUseAddress,
    kTextDetailConflict,
    kTextArrayEmpty,
    kTextNameTaken,
    kTextArrayBusy,
    kTextAskDelete,
    kTextDeviceTypeUnknown,
    kTextBusA,
    kTextBusB,
    kTextGroupX,
    kTextGroupY,
    kTextConverterA,
    kTextConverterB,
    kTextGenerator,
    kTextAnalyzer,
};

// A text of the string table with two %d.
[[nodiscard]] inline CString FormatTwoNumbers(const CString& text, int first, int second) {
    // FormatText leaves what it has no argument for, so that the second number fills what is left.
    return FormatText(FormatText(text, first), second);
}

} // namespace kalvio
