#pragma once

// The program memory of a peripheral: sectors of 512 blocks of 32 bytes, written in order. Block 0 erases
// its sector; a block may be sent again right after itself, as happens when its answer was lost.

#include "simulator/Bytes.h"

#include <map>
#include <optional>

namespace kalvio::simulator {

inline constexpr std::size_t kFirmwareRecordBytes = 34; // sector and block number, 32 bytes of program
inline constexpr std::uint8_t kSectorStored = 0xCF;     // the command byte of the answer
inline constexpr std::uint8_t kSectorRefused = 0xCE;

class FirmwareStore {
public:
    using Sectors = std::map<std::uint8_t, ByteVector>;

    // Stores a record. False, and nothing changes, for a sector that the device does not have (0 and 4), a
    // block that does not follow the one before it, or one beyond the sector's end.
    bool Write(ByteView record);
    // The device lost power: it no longer knows where it was.
    void LosePlace() { m_open.reset(); }

    // Whether a sector was begun and never got all of its blocks.
    [[nodiscard]] bool IsHalf() const;
    // What was written, by sector.
    [[nodiscard]] const Sectors& Written() const { return m_sectors; }

private:
    Sectors m_sectors;
    std::optional<std::uint8_t> m_open; // the sector that is being written
};

} // namespace kalvio::simulator
