#pragma once

// A peripheral's firmware as a file holds it: a header of 128 bytes, then records of 34 bytes to the end.

#include "platform/Export.h"
#include "platform/Text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kalvio {

inline constexpr std::size_t kFirmwareHeaderBytes = 128;
inline constexpr std::size_t kFirmwareRecordBytes = 34;
inline constexpr std::size_t kFirmwareDataBytes = 32; // of one record
inline constexpr int kBlocksPerSector = 512;

// One record: the sector in the high nibble of the first byte, the block within it in the 12 bits that
// follow, then 32 bytes of firmware.
struct FirmwareRecord {
    std::array<std::uint8_t, kFirmwareRecordBytes> bytes{};

    [[nodiscard]] int Sector() const { return bytes[0] >> 4U; }
    [[nodiscard]] int Block() const { return (bytes[0] & 0x0F) * 256 + bytes[1]; }
    [[nodiscard]] std::span<const std::uint8_t> Data() const { return std::span(bytes).subspan(2); }
};

// What can be wrong with a file. `number` is the sector or block that the fault is about, `bytes` the size of
// a sector that ended early or late, `offset` where in the file it shows.
struct FirmwareFault {
    enum class Kind { None, NotOpened, EndOfFile, Header, Sector, Block, SectorSize };
    Kind kind = Kind::None;
    int number = 0;
    int bytes = 0;
    std::size_t offset = 0;

    explicit operator bool() const { return kind != Kind::None; }
    [[nodiscard]] KALVIO_API CString Text() const; // as the user is told; empty without a fault
};

// The content as it was when the file was opened, so that a sector that is sent again is the same one even if
// the file was changed meanwhile. Any thread, one at a time.
class KALVIO_API FirmwareFile {
public:
    enum class Read { Record, End, CutOff };

    FirmwareFile() = default;
    explicit FirmwareFile(std::span<const std::uint8_t> content); // of a file that is in memory

    // Reads a file and checks its header. NotOpened: missing, no plain file, unreadable; EndOfFile: shorter
    // than a header, or it became shorter meanwhile; Header: no firmware file.
    FirmwareFault Open(const CString& path);
    [[nodiscard]] FirmwareFault CheckHeader() const;
    // The device class-type byte that the firmware is made for; 0 without a header.
    [[nodiscard]] std::uint8_t ClassType() const;

    // The file's whole length in bytes. More than any firmware can have is counted, not read.
    [[nodiscard]] std::uint64_t Length() const { return m_length; }
    // The next record; End at the end, CutOff when less than a record is left.
    Read Next(FirmwareRecord& record);
    [[nodiscard]] std::size_t Position() const { return m_position; }
    void Seek(std::size_t position) { m_position = position; }

private:
    std::vector<std::uint8_t> m_content;
    std::uint64_t m_length = 0;
    std::size_t m_position = kFirmwareHeaderBytes;
};

// Knows which record may come next: blocks in order from 0, sectors ascending, each of 512 blocks but the
// last, which may end anywhere; there is no sector 0 and no sector 4.
class KALVIO_API FirmwareOrder {
public:
    // What is wrong with the record as the next one.
    [[nodiscard]] FirmwareFault Check(const FirmwareRecord& record, std::size_t offset) const;
    [[nodiscard]] bool BeginsSector(const FirmwareRecord& record) const;
    [[nodiscard]] bool IsRetrying() const { return m_retrying; }
    void Begin(const FirmwareRecord& record);  // it is being sent
    void Accept(const FirmwareRecord& record); // it was taken
    // It was not: the next record is the first of its sector again, and comes out of order.
    void Retry(const FirmwareRecord& record);

private:
    int m_sector = -1;
    int m_block = -1; // the one before
    bool m_retrying = false;
};

// What a file holds, up to its first fault.
struct FirmwareContent {
    struct Sector {
        int number = 0;
        int blocks = 0;
    };
    std::vector<Sector> sectors;
    FirmwareFault fault;
};

// Walks through a file whose header was checked, from its first record on.
[[nodiscard]] KALVIO_API FirmwareContent InspectFirmware(FirmwareFile& file);

} // namespace kalvio
