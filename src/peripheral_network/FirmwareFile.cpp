#include "peripheral_network/FirmwareFile.h"

#include "peripheral_network/KvNetTexts.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace kalvio {
namespace {

// With its zero, which stands in the file as well.
constexpr char kHeaderText[] = "Kv-NET DOWNLOAD";
constexpr std::size_t kClassTypeAt = 18;

// More records than sector and block numbers tell apart cannot be in order, so the rest of a longer file is
// never reached.
constexpr std::size_t kMostRecords = 16 * 4096;
constexpr std::size_t kMostBytes = kFirmwareHeaderBytes + kMostRecords * kFirmwareRecordBytes;

struct FaultText {
    FirmwareFault::Kind kind;
    unsigned text;
};

constexpr FaultText kFaultTexts[] = {
    {FirmwareFault::Kind::NotOpened, kTextFirmwareNotOpened},
    {FirmwareFault::Kind::EndOfFile, kTextFirmwareEnd},
    {FirmwareFault::Kind::Header, kTextFirmwareHeader},
    {FirmwareFault::Kind::Sector, kTextFirmwareSector},
    {FirmwareFault::Kind::Block, kTextFirmwareBlock},
    {FirmwareFault::Kind::SectorSize, kTextFirmwareSize},
};

} // namespace

CString FirmwareFault::Text() const {
    const auto* found = std::ranges::find(kFaultTexts, kind, &FaultText::kind);
    if (found == std::end(kFaultTexts)) {
        return {};
    }
    const CString text = LoadText(found->text);
    return kind == Kind::SectorSize ? FormatTwoNumbers(text, number, bytes) : FormatText(text, number);
}

FirmwareFile::FirmwareFile(std::span<const std::uint8_t> content)
    : m_content(content.begin(),
                content.begin() + static_cast<std::ptrdiff_t>(std::min(content.size(), kMostBytes))),
      m_length(content.size()) {}

FirmwareFault FirmwareFile::Open(const CString& path) {
    std::error_code error;
    // A pipe of that name would keep the caller waiting for a writer.
    if (!std::filesystem::is_regular_file(path, error)) {
        return {FirmwareFault::Kind::NotOpened};
    }
    const std::uint64_t length = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file) {
        return {FirmwareFault::Kind::NotOpened};
    }
    std::vector<std::uint8_t> content(static_cast<std::size_t>(std::min<std::uint64_t>(length, kMostBytes)));
    file.read(reinterpret_cast<char*>(content.data()), static_cast<std::streamsize>(content.size()));
    const auto got = static_cast<std::size_t>(file.gcount());
    if (got < content.size()) {
        return {.kind = FirmwareFault::Kind::EndOfFile, .offset = got};
    }
    m_content = std::move(content);
    m_length = length;
    m_position = kFirmwareHeaderBytes;
    return CheckHeader();
}

FirmwareFault FirmwareFile::CheckHeader() const {
    if (m_content.size() < kFirmwareHeaderBytes) {
        return {.kind = FirmwareFault::Kind::EndOfFile, .offset = m_content.size()};
    }
    const bool named = std::equal(std::begin(kHeaderText), std::end(kHeaderText), m_content.begin());
    return {named ? FirmwareFault::Kind::None : FirmwareFault::Kind::Header};
}

std::uint8_t FirmwareFile::ClassType() const {
    return m_content.size() > kClassTypeAt ? m_content[kClassTypeAt] : std::uint8_t{0};
}

FirmwareFile::Read FirmwareFile::Next(FirmwareRecord& record) {
    const std::size_t left = m_content.size() - std::min(m_position, m_content.size());
    if (left < kFirmwareRecordBytes) {
        return left == 0 ? Read::End : Read::CutOff;
    }
    std::copy_n(m_content.begin() + static_cast<std::ptrdiff_t>(m_position), kFirmwareRecordBytes,
                record.bytes.begin());
    m_position += kFirmwareRecordBytes;
    return Read::Record;
}

FirmwareFault FirmwareOrder::Check(const FirmwareRecord& record, std::size_t offset) const {
    using Kind = FirmwareFault::Kind;
    const int sector = record.Sector();
    const int block = record.Block();
    const bool ascends = m_retrying || block != 0 || sector > m_sector;
    if (sector == 0 || sector == 4 || !ascends) {
        return {.kind = Kind::Sector, .number = sector, .offset = offset};
    }
    if (m_retrying) {
        return {};
    }
    if (block != 0 && block != m_block + 1) {
        return {.kind = Kind::Block, .number = block, .offset = offset};
    }
    if (BeginsSector(record) && m_block != -1 && m_block != kBlocksPerSector - 1) {
        return {Kind::SectorSize, m_sector, (m_block + 1) * static_cast<int>(kFirmwareDataBytes), offset};
    }
    return {};
}

bool FirmwareOrder::BeginsSector(const FirmwareRecord& record) const {
    return record.Sector() != m_sector;
}

void FirmwareOrder::Begin(const FirmwareRecord& record) {
    m_sector = record.Sector();
    m_retrying = false;
}

void FirmwareOrder::Accept(const FirmwareRecord& record) {
    m_block = record.Block();
}

void FirmwareOrder::Retry(const FirmwareRecord& record) {
    m_sector = record.Sector() - 1;
    m_block = record.Block() - 1;
    m_retrying = true;
}

FirmwareContent InspectFirmware(FirmwareFile& file) {
    FirmwareContent content;
    FirmwareOrder order;
    FirmwareRecord record;
    file.Seek(kFirmwareHeaderBytes);
    for (;;) {
        const std::size_t at = file.Position();
        const FirmwareFile::Read read = file.Next(record);
        if (read == FirmwareFile::Read::CutOff) {
            content.fault = {.kind = FirmwareFault::Kind::EndOfFile, .offset = at};
        } else if (read == FirmwareFile::Read::Record) {
            content.fault = order.Check(record, at);
        }
        if (read != FirmwareFile::Read::Record || content.fault) {
            return content;
        }
        if (order.BeginsSector(record)) {
            content.sectors.push_back({record.Sector(), 0});
        }
        ++content.sectors.back().blocks;
        order.Begin(record);
        order.Accept(record);
    }
}

} // namespace kalvio
