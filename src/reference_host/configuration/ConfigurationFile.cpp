#include "reference_host/configuration/ConfigurationFile.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace kalvio::reference_host {

namespace {

constexpr std::string_view kMagic = "KVCONFIG";
constexpr std::uint16_t kLayout = 1;
constexpr std::size_t kHeaderBytes = 22; // its checksum included
constexpr std::size_t kChecksumBytes = 4;
constexpr std::uint32_t kPolynomial = 0xEDB88320; // CRC-32, lowest bit first
constexpr std::uint32_t kAllBits = 0xFFFFFFFF;

std::uint32_t Checksum(std::span<const std::uint8_t> bytes) {
    std::uint32_t sum = kAllBits;
    for (const std::uint8_t byte : bytes) {
        sum ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? kPolynomial : 0);
        }
    }
    return ~sum;
}

std::span<const std::uint8_t> BytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void Append(std::vector<std::uint8_t>& file, CArchive& part) {
    part.WriteUInt32(Checksum(part.Bytes()));
    file.insert(file.end(), part.Bytes().begin(), part.Bytes().end());
}

class Decoder {
public:
    Decoder(std::span<const std::uint8_t> bytes, std::vector<Problem>& problems)
        : m_bytes(bytes), m_problems(problems) {}

    ConfigurationFile Decode() {
        std::uint16_t count = 0;
        if (!ReadHeader(count)) {
            return {};
        }
        std::size_t at = kHeaderBytes;
        for (unsigned number = 1; number <= count; ++number) {
            if (!ReadSection(number, at)) {
                return std::move(m_file);
            }
        }
        if (at != m_bytes.size()) {
            Add("file", "end",
                Format("must follow the last section; %zu bytes stand between", m_bytes.size() - at));
        }
        return std::move(m_file);
    }

private:
    void Add(const CString& section, const CString& field, const CString& what) {
        m_problems.push_back({section, field, what});
    }

    bool ReadHeader(std::uint16_t& count) {
        if (m_bytes.size() < kHeaderBytes) {
            Add("header", "length",
                Format("must be %zu bytes; the file has %zu", kHeaderBytes, m_bytes.size()));
            return false;
        }
        CArchive archive(m_bytes.first(kHeaderBytes));
        std::array<std::uint8_t, kMagic.size()> magic{};
        archive.ReadBytes(magic);
        if (!std::ranges::equal(magic, BytesOf(kMagic))) {
            Add("header", "magic", "must be \"KVCONFIG\"; the file is no configuration");
            return false;
        }
        const std::uint16_t layout = archive.ReadUInt16();
        m_file.version = archive.ReadUInt16();
        m_file.revision = archive.ReadUInt16();
        m_file.configuration = archive.ReadUInt16();
        count = archive.ReadUInt16();
        const std::uint32_t due = Checksum(m_bytes.first(kHeaderBytes - kChecksumBytes));
        if (const std::uint32_t sum = archive.ReadUInt32(); sum != due) {
            Add("header", "checksum", Format("must be %08X, is %08X", due, sum));
            return false;
        }
        return CheckVersions(layout);
    }

    bool CheckVersions(std::uint16_t layout) {
        const std::size_t before = m_problems.size();
        if (layout != kLayout) {
            Add("header", "layout", Format("must be %u, is %u", kLayout, layout));
        }
        if (std::tie(m_file.version, m_file.revision) > std::tie(kArchiveVersion, kArchiveRevision)) {
            Add("header", "archive version",
                Format("must be at most %u.%u, is %u.%u", kArchiveVersion, kArchiveRevision, m_file.version,
                       m_file.revision));
        }
        if (m_file.configuration > kConfigurationVersion) {
            Add("header", "configuration version",
                Format("must be at most %u, is %u", kConfigurationVersion, m_file.configuration));
        }
        return m_problems.size() == before;
    }

    // Moves `at` behind the section; false when its end cannot be told.
    bool ReadSection(unsigned number, std::size_t& at) {
        const std::span<const std::uint8_t> rest = m_bytes.subspan(at);
        const CString label = Format("section %u", number);
        FileSection section;
        std::size_t length = 0;
        try {
            CArchive archive(rest);
            std::vector<std::uint8_t> name(archive.ReadByte());
            archive.ReadBytes(name);
            section.name.assign(name.begin(), name.end());
            section.bytes.resize(LengthOf(archive));
            archive.ReadBytes(section.bytes);
            length = rest.size() - archive.Remaining();
            if (const std::uint32_t due = Checksum(rest.first(length)), sum = archive.ReadUInt32();
                sum != due) {
                Add(label, "checksum", Format("must be %08X, is %08X", due, sum));
                at += length + kChecksumBytes;
                return true;
            }
        } catch (const CArchiveException&) {
            Add(label, "length",
                Format("must fit the file; it ends after %zu bytes of the section", rest.size()));
            return false;
        }
        at += length + kChecksumBytes;
        m_file.sections.push_back(std::move(section));
        return true;
    }

    // A length that cannot be is refused before anything is made for it.
    static std::size_t LengthOf(CArchive& archive) {
        const std::uint32_t length = archive.ReadUInt32();
        if (length > archive.Remaining()) {
            throw CArchiveException("a section is longer than the file");
        }
        return length;
    }

    std::span<const std::uint8_t> m_bytes;
    std::vector<Problem>& m_problems;
    ConfigurationFile m_file;
};

} // namespace

CArchive ConfigurationFile::ArchiveOf(const FileSection& section) const {
    CArchive archive(section.bytes);
    archive.SetFileVersion(version, revision);
    archive.SetConfigVersion(configuration);
    return archive;
}

std::vector<std::uint8_t> Encode(const ConfigurationFile& file) {
    std::vector<std::uint8_t> bytes;
    CArchive header;
    header.WriteBytes(BytesOf(kMagic));
    for (const std::uint16_t word : {kLayout, file.version, file.revision, file.configuration}) {
        header.WriteUInt16(word);
    }
    header.WriteUInt16(static_cast<std::uint16_t>(file.sections.size()));
    Append(bytes, header);
    for (const FileSection& section : file.sections) {
        CArchive part;
        part.WriteByte(static_cast<std::uint8_t>(section.name.size()));
        part.WriteBytes(BytesOf(section.name));
        part.WriteUInt32(static_cast<std::uint32_t>(section.bytes.size()));
        part.WriteBytes(section.bytes);
        Append(bytes, part);
    }
    return bytes;
}

ConfigurationFile Decode(std::span<const std::uint8_t> bytes, std::vector<Problem>& problems) {
    return Decoder(bytes, problems).Decode();
}

} // namespace kalvio::reference_host
