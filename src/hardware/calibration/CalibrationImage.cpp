#include "hardware/calibration/CalibrationImage.h"

#include "hardware/ByteAllocation.h"
#include "hardware/CalibrationTable.h"
#include "hardware/Truncate.h"
#include "hardware/bringup/SoftwareVersion.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace kalvio {

namespace {

// How one entry type stands in the image.
struct EntryFormat {
    std::size_t bytes; // 0: no number
    bool isSigned;
    double scale; // stored number for a value of 1.0
};

constexpr double kGainScale = 32768.0;
constexpr std::array<EntryFormat, 8> kFormats{{
    {1, false, 1.0},
    {2, false, 1.0},
    {2, false, kGainScale},
    {2, true, 1.0},
    {3, false, 1.0},
    {0, false, 1.0},
    {2, true, 1.0},
    {2, false, kGainScale},
}};
constexpr EntryFormat kNoNumber{0, false, 1.0};

const EntryFormat& FormatOf(const CalibTableRecord& record) {
    return record.type < kFormats.size() ? kFormats[record.type] : kNoNumber;
}

std::size_t PlaceOf(const CalibTableRecord& record) {
    return calibration_header::kBytes + record.offset;
}

} // namespace

bool CalibrationImage::Allocate(std::uint16_t dataSize) {
    return AllocateBytes(m_bytes, calibration_header::kBytes + dataSize);
}

std::size_t CalibrationImage::DataSize() const {
    return m_bytes.empty() ? 0 : m_bytes.size() - calibration_header::kBytes;
}

std::uint16_t CalibrationImage::ComputeChecksum() const {
    const auto counted = Bytes().subspan(std::min(calibration_header::kYear, m_bytes.size()));
    return static_cast<std::uint16_t>(std::accumulate(counted.begin(), counted.end(), 0U) % 65535U);
}

bool CalibrationImage::IsChecksumRight() const {
    return Word(calibration_header::kChecksum) == ComputeChecksum();
}

void CalibrationImage::Stamp(const LocalTime& time, BoardIdentity board) {
    using namespace calibration_header;
    SetWord(kYear, time.year);
    SetByte(kMonth, static_cast<std::uint8_t>(time.month));
    SetByte(kDay, static_cast<std::uint8_t>(time.day));
    SetByte(kHour, static_cast<std::uint8_t>(time.hour));
    SetByte(kMinute, static_cast<std::uint8_t>(time.minute));
    SetByte(kSecond, static_cast<std::uint8_t>(time.second));
    SetByte(calibration_header::kSoftwareMinor, kalvio::kSoftwareMinor);
    SetByte(calibration_header::kSoftwareMajor, kalvio::kSoftwareMajor);
    SetByte(calibration_header::kSoftwareLetter, static_cast<std::uint8_t>(kalvio::kSoftwareLetter));
    SetByte(kHardwareOptions, board.options);
    SetByte(kHardwareVersion, board.version);
    SetWord(kDataSize, static_cast<std::uint16_t>(DataSize()));
    SetWord(kChecksum, ComputeChecksum());
}

std::uint8_t CalibrationImage::Byte(std::size_t at) const {
    return at < m_bytes.size() ? m_bytes[at] : std::uint8_t{0};
}

void CalibrationImage::SetByte(std::size_t at, std::uint8_t value) {
    if (at < m_bytes.size()) {
        m_bytes[at] = value;
    }
}

std::uint16_t CalibrationImage::Word(std::size_t at) const {
    return static_cast<std::uint16_t>(Byte(at) | (Byte(at + 1) << 8));
}

void CalibrationImage::SetWord(std::size_t at, std::uint16_t value) {
    SetByte(at, static_cast<std::uint8_t>(value));
    SetByte(at + 1, static_cast<std::uint8_t>(value >> 8));
}

std::size_t CalibrationImage::Room(std::size_t at, std::size_t length) const {
    return at < m_bytes.size() ? std::min(length, m_bytes.size() - at) : 0;
}

CString CalibrationImage::Text(std::size_t at, std::size_t length) const {
    const auto field = Bytes().subspan(std::min(at, m_bytes.size()), Room(at, length));
    return CString(field.begin(), std::find(field.begin(), field.end(), std::uint8_t{0}));
}

void CalibrationImage::SetText(std::size_t at, std::size_t length, const CString& text, std::size_t most) {
    const auto field = Bytes().subspan(std::min(at, m_bytes.size()), Room(at, length));
    std::fill(field.begin(), field.end(), std::uint8_t{0});
    const std::size_t count = std::min({text.size(), field.size(), most});
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(count), field.begin(),
                   [](char c) { return static_cast<std::uint8_t>(c); });
}

double CalibrationImage::Value(const CalibTableRecord& record) const {
    const EntryFormat& format = FormatOf(record);
    std::int32_t number = 0;
    for (std::size_t i = 0; i < format.bytes; ++i) {
        number |= Byte(PlaceOf(record) + i) << (8 * i);
    }
    if (format.isSigned) {
        number = static_cast<std::int16_t>(number);
    }
    return number / format.scale;
}

bool CalibrationImage::SetValue(const CalibTableRecord& record, double value) {
    const EntryFormat& format = FormatOf(record);
    const std::uint32_t bits = TruncatedBits(value * format.scale);
    for (std::size_t i = 0; i < format.bytes; ++i) {
        SetByte(PlaceOf(record) + i, static_cast<std::uint8_t>(bits >> (8 * i)));
    }
    return format.bytes != 0;
}

} // namespace kalvio
