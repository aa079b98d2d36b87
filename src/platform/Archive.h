#pragma once

// The document archive: a stream of little-endian, unpadded values that is either stored or loaded. Used by
// one thread at a time.

#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

// The one error of an archive: a read past its end or a damaged length. A document's load turns it into a
// refusal that changes nothing; it never leaves an exported call.
class KALVIO_API CArchiveException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class KALVIO_API CArchive {
public:
    // Stores into its own bytes.
    CArchive();
    // Loads from the bytes given, which must outlive the archive.
    explicit CArchive(std::span<const std::uint8_t> bytes);

    [[nodiscard]] bool IsLoading() const { return m_loading; }
    [[nodiscard]] bool IsStoring() const { return !m_loading; }
    [[nodiscard]] const std::vector<std::uint8_t>& Bytes() const { return m_stored; } // while storing
    [[nodiscard]] std::size_t Remaining() const;                                      // while loading

    // The version that the archive's file carries, for CheckFileVersion; the current one by default.
    void SetFileVersion(int version, int revision);
    // Three-way comparison of the archive's version with the one given: -1 older, 0 equal, 1 newer.
    [[nodiscard]] int CheckFileVersion(int version, int revision) const;
    // The version of the configuration that the archive belongs to; the current one, 21, by default.
    void SetConfigVersion(int version) { m_configVersion = version; }
    [[nodiscard]] int GetConfigVersion() const { return m_configVersion; }

    // Integers take their own width; a BOOL goes as 32 bits. A text is its length (one byte below 0xFF; else
    // 0xFF and 16 bits below 0xFFFE; else 0xFF, 0xFFFF and 32 bits) and its bytes, without a terminator. A
    // count is 16 bits below 0xFFFF, else 0xFFFF and 32 bits.
    void WriteByte(std::uint8_t value);
    void WriteInt16(std::int16_t value);
    void WriteUInt16(std::uint16_t value);
    void WriteInt32(std::int32_t value);
    void WriteUInt32(std::uint32_t value);
    void WriteDouble(double value);
    void WriteString(const CString& text);
    void WriteCount(std::uint32_t count);
    void WriteBytes(std::span<const std::uint8_t> bytes);

    // Each throws CArchiveException when too few bytes are left, and then has read nothing of the value's
    // own bytes. A length or count above what is left is damage (every element takes a byte at least), so
    // that no caller allocates for elements that cannot be there.
    std::uint8_t ReadByte();
    std::int16_t ReadInt16();
    std::uint16_t ReadUInt16();
    std::int32_t ReadInt32();
    std::uint32_t ReadUInt32();
    double ReadDouble();
    CString ReadString();
    std::uint32_t ReadCount();
    void ReadBytes(std::span<std::uint8_t> bytes);

private:
    std::span<const std::uint8_t> Take(std::size_t length);

    bool m_loading;
    std::vector<std::uint8_t> m_stored;
    std::span<const std::uint8_t> m_source;
    std::size_t m_position = 0;
    int m_version = 101;
    int m_revision = 99;
    int m_configVersion = 21;
};
