#pragma once

// Sends a firmware file to a peripheral, record by record.

#include "host/ProgressWnd.h"
#include "peripheral_network/FirmwareFile.h"
#include "platform/Export.h"

#include <functional>

namespace kalvio {

inline constexpr int kMostFailedWrites = 3; // of one download; the last one ends it

enum class DownloadOutcome {
    Sent,        // the whole file was taken
    NotOpened,   // the file could not be read
    FileRefused, // no firmware for this device, or a fault in it, which may show after part of it was sent
    WriteFailed, // the device did not take a record
    Cancelled,   // by the user
};

// How a download ended, and what the user is to be told of it (empty: nothing).
struct DownloadResult {
    DownloadOutcome outcome = DownloadOutcome::Sent;
    CString text;
};

// Hands one record to the device; whether the device took it.
using SectorWriter = std::function<bool(const FirmwareRecord& record)>;

// Opens a file, checks that it is for a device of the class type and sends it. A record that is not taken
// sends its sector once more from its first record on. `progress` comes up once the header was accepted,
// moves on with every fourth record, and stays for the caller to take away; a cancel is looked for after
// each record. User-interface thread.
[[nodiscard]] KALVIO_API DownloadResult SendFirmware(const CString& path, std::uint8_t classType,
                                                     const SectorWriter& write, ProgressDisplay& progress);
// The same for a file that was opened and whose header was checked, class type included.
[[nodiscard]] KALVIO_API DownloadResult SendRecords(FirmwareFile& file, const SectorWriter& write,
                                                    ProgressDisplay& progress);

} // namespace kalvio
