#include "platform/Archive.h"

#include "platform/formats/Endian.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

// Lengths and counts are stored in the shortest form that holds them; the highest values of a form say that
// a wider one follows. 0xFFFE after the byte form marks wide characters, which the archive does not have.
constexpr std::uint8_t kWiderThanByte = 0xFF;
constexpr std::uint16_t kWiderThanWord = 0xFFFF;
constexpr std::uint16_t kWideCharacters = 0xFFFE;

constexpr std::uint64_t kLongestText = std::numeric_limits<std::uint32_t>::max();

} // namespace

CArchive::CArchive() : m_loading(false) {}

CArchive::CArchive(std::span<const std::uint8_t> bytes) : m_loading(true), m_source(bytes) {}

std::size_t CArchive::Remaining() const {
    return m_source.size() - m_position;
}

void CArchive::SetFileVersion(int version, int revision) {
    m_version = version;
    m_revision = revision;
}

int CArchive::CheckFileVersion(int version, int revision) const {
    const auto compare = [](int own, int other) {
        return static_cast<int>(own > other) - static_cast<int>(own < other);
    };
    const int byVersion = compare(m_version, version);
    return byVersion != 0 ? byVersion : compare(m_revision, revision);
}

void CArchive::WriteByte(std::uint8_t value) {
    m_stored.push_back(value);
}

void CArchive::WriteInt16(std::int16_t value) {
    WriteUInt16(static_cast<std::uint16_t>(value));
}

void CArchive::WriteUInt16(std::uint16_t value) {
    std::uint8_t bytes[2];
    kalvio::PutLittle16(bytes, value);
    WriteBytes(bytes);
}

void CArchive::WriteInt32(std::int32_t value) {
    WriteUInt32(static_cast<std::uint32_t>(value));
}

void CArchive::WriteUInt32(std::uint32_t value) {
    std::uint8_t bytes[4];
    kalvio::PutLittle32(bytes, value);
    WriteBytes(bytes);
}

void CArchive::WriteDouble(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    WriteUInt32(static_cast<std::uint32_t>(bits));
    WriteUInt32(static_cast<std::uint32_t>(bits >> 32));
}

void CArchive::WriteString(const CString& text) {
    if (text.size() > kLongestText) {
        throw CArchiveException("a text is too long for the archive");
    }
    const auto length = static_cast<std::uint32_t>(text.size());
    if (length < kWiderThanByte) {
        WriteByte(static_cast<std::uint8_t>(length));
    } else {
        WriteByte(kWiderThanByte);
        if (length < kWideCharacters) {
            WriteUInt16(static_cast<std::uint16_t>(length));
        } else {
            WriteUInt16(kWiderThanWord);
            WriteUInt32(length);
        }
    }
    m_stored.insert(m_stored.end(), text.begin(), text.end());
}

void CArchive::WriteCount(std::uint32_t count) {
    if (count < kWiderThanWord) {
        WriteUInt16(static_cast<std::uint16_t>(count));
    } else {
        WriteUInt16(kWiderThanWord);
        WriteUInt32(count);
    }
}

void CArchive::WriteBytes(std::span<const std::uint8_t> bytes) {
    m_stored.insert(m_stored.end(), bytes.begin(), bytes.end());
}

std::span<const std::uint8_t> CArchive::Take(std::size_t length) {
    if (length > Remaining()) {
        throw CArchiveException("the archive ends too early");
    }
    const auto taken = m_source.subspan(m_position, length);
    m_position += length;
    return taken;
}

std::uint8_t CArchive::ReadByte() {
    return Take(1)[0];
}

std::int16_t CArchive::ReadInt16() {
    return static_cast<std::int16_t>(ReadUInt16());
}

std::uint16_t CArchive::ReadUInt16() {
    return kalvio::GetLittle16(Take(2).data());
}

std::int32_t CArchive::ReadInt32() {
    return static_cast<std::int32_t>(ReadUInt32());
}

std::uint32_t CArchive::ReadUInt32() {
    return kalvio::GetLittle32(Take(4).data());
}

double CArchive::ReadDouble() {
    const auto bytes = Take(8);
    const std::uint64_t high = kalvio::GetLittle32(bytes.data() + 4);
    return std::bit_cast<double>((high << 32) | kalvio::GetLittle32(bytes.data()));
}

CString CArchive::ReadString() {
    std::uint32_t length = ReadByte();
    if (length == kWiderThanByte) {
        length = ReadUInt16();
        if (length == kWideCharacters) {
            throw CArchiveException("a text of the archive has wide characters");
        }
        if (length == kWiderThanWord) {
            length = ReadUInt32();
        }
    }
    const auto bytes = Take(length);
    return CString(bytes.begin(), bytes.end());
}

std::uint32_t CArchive::ReadCount() {
    std::uint32_t count = ReadUInt16();
    if (count == kWiderThanWord) {
        count = ReadUInt32();
    }
    if (count > Remaining()) {
        throw CArchiveException("a count of the archive is larger than what follows");
    }
    return count;
}

void CArchive::ReadBytes(std::span<std::uint8_t> bytes) {
    const auto taken = Take(bytes.size());
    std::copy(taken.begin(), taken.end(), bytes.begin());
}
