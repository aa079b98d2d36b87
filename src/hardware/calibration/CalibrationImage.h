#pragma once

// The image of a calibration table as it stands in the memory: a header of 128 bytes and a data area.
// Fields of more than one byte are little-endian.

#include "platform/Clock.h"
#include "platform/Export.h"
#include "platform/Text.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

struct CalibTableRecord;

namespace kalvio {

// Offsets of the header's fields.
namespace calibration_header {
inline constexpr std::size_t kChecksum = 0; // 2 bytes
inline constexpr std::size_t kYear = 2;     // 2 bytes
inline constexpr std::size_t kMonth = 4;    // then day, hour, minute, second; 1 byte each
inline constexpr std::size_t kDay = 5;
inline constexpr std::size_t kHour = 6;
inline constexpr std::size_t kMinute = 7;
inline constexpr std::size_t kSecond = 8;
inline constexpr std::size_t kSoftwareMinor = 9; // of the software that wrote the image
inline constexpr std::size_t kSoftwareMajor = 10;
inline constexpr std::size_t kHardwareOptions = 11; // of the board
inline constexpr std::size_t kHardwareVersion = 12;
inline constexpr std::size_t kCalibrationVersion = 13; // 2 bytes
inline constexpr std::size_t kSoftwareLetter = 15;
inline constexpr std::size_t kOrganisation = 16;     // 32 bytes of text, zero-filled
inline constexpr std::size_t kOperator = 48;         // the same
inline constexpr std::size_t kUnitSerialNumber = 80; // 2 bytes
inline constexpr std::size_t kDataSize = 82;         // 2 bytes
inline constexpr std::size_t kBytes = 128;           // the data area starts here
} // namespace calibration_header

inline constexpr std::size_t kCalibrationTextBytes = 32;

struct BoardIdentity {
    std::uint8_t version = 0;
    std::uint8_t options = 0;
};

// Not shared between threads. What lies outside the image reads 0 and ignores writes.
class CalibrationImage {
public:
    // Takes memory for a header and so many bytes of data, all zero; false when memory ran out.
    bool Allocate(std::uint16_t dataSize);
    [[nodiscard]] std::size_t DataSize() const;
    [[nodiscard]] std::span<std::uint8_t> Bytes() { return m_bytes; }
    [[nodiscard]] std::span<const std::uint8_t> Bytes() const { return m_bytes; }

    // The sum of all bytes after the checksum field, modulo 65535 (65535 itself gives 0).
    [[nodiscard]] std::uint16_t ComputeChecksum() const;
    [[nodiscard]] bool IsChecksumRight() const;
    // Writes the date, the software's version, the board's identity and the data size into the header, then
    // the checksum over it all.
    void Stamp(const LocalTime& time, BoardIdentity board);

    [[nodiscard]] std::uint8_t Byte(std::size_t at) const;
    void SetByte(std::size_t at, std::uint8_t value);
    [[nodiscard]] std::uint16_t Word(std::size_t at) const;
    void SetWord(std::size_t at, std::uint16_t value);
    // The characters up to the first zero, at most `length`.
    [[nodiscard]] CString Text(std::size_t at, std::size_t length) const;
    // Zeroes `length` bytes and puts the text's first characters there, at most `most` and `length`.
    void SetText(std::size_t at, std::size_t length, const CString& text, std::size_t most);

    // The number of an entry; 0.0 for one that holds none.
    [[nodiscard]] double Value(const CalibTableRecord& record) const;
    // Stores the integer part of the (scaled) value modulo the entry's width: 2.0 in a gain entry is 0x10000
    // and leaves 0. NaN and the infinities store 0. False for an entry that holds no number.
    bool SetValue(const CalibTableRecord& record, double value);

private:
    [[nodiscard]] std::size_t Room(std::size_t at, std::size_t length) const;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace kalvio
