#include "hardware/CalibrationTable.h"

#include "hardware/ByteAllocation.h"
#include "hardware/HardwareTexts.h"
#include "hardware/calibration/CalibrationImage.h"
#include "hardware/calibration/CalibrationMemory.h"
#include "hardware/registers/UnitAddresses.h"
#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "platform/Clock.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <utility>

using namespace kalvio;

namespace {

constexpr int kLevelForMirror = 3;
constexpr int kLevelForMaster = 4;

constexpr char kAnalogueVersionRegister = 'p';
constexpr char kAnalogueOptionsRegister = 'q';

constexpr std::uint8_t kFirstFixedMinor = 98; // software 0.98 writes version and letter where they belong
constexpr std::uint8_t kFirstStrayByte = 42;

void SetShort(VARIANT* target, unsigned value) {
    if (target != nullptr) {
        *target = VARIANT::Short(static_cast<std::int16_t>(value));
    }
}

} // namespace

CCalibrationTable::CCalibrationTable(MemoryAccess& memory)
    : m_access(memory), m_image(std::make_unique<CalibrationImage>()) {}

CCalibrationTable::~CCalibrationTable() = default;

int CCalibrationTable::InitialiseTable(std::uint8_t device, std::uint8_t pageSize, std::uint8_t addressBytes,
                                       std::uint16_t dataSize, std::uint16_t mirrorOffset,
                                       std::uint16_t masterOffset, const CalibTableRecord* records,
                                       int recordCount) {
    if (pageSize == 0) {
        return 0;
    }
    m_device = device;
    m_pageSize = pageSize;
    m_addressBytes = addressBytes;
    m_mirrorOffset = mirrorOffset;
    m_masterOffset = masterOffset;
    m_records = records == nullptr ? std::span<const CalibTableRecord>()
                                   : std::span(records, static_cast<std::size_t>(std::max(recordCount, 0)));
    if (!m_image->Allocate(dataSize)) {
        m_usingCalibration = 0;
        return 0;
    }
    ReadTable();
    return 1;
}

CalibrationMemory CCalibrationTable::Memory() {
    return {m_access, m_device, m_pageSize, m_addressBytes};
}

bool CCalibrationTable::ReadCopy(std::uint16_t offset) {
    return !m_image->Bytes().empty() && Memory().Read(offset, m_image->Bytes());
}

CString CCalibrationTable::BoardName() const {
    return LoadText(m_device == kMainBoardMemory ? kTextMainBoard : kTextAnalogueBoard);
}

void CCalibrationTable::ReadTable() {
    if (!m_access.IsUnitPresent()) {
        UseDefaults();
    } else if (!ReadCopy(m_mirrorOffset)) {
        UseDefaultsAndSay(kTextMirrorUnreadable);
    } else if (m_image->IsChecksumRight()) {
        return;
    } else if (!ReadCopy(m_masterOffset)) {
        UseDefaultsAndSay(kTextMasterUnreadable);
    } else if (!m_image->IsChecksumRight()) {
        UseDefaultsAndSay(kTextBothDamaged);
    } else {
        OfferFactoryReset();
    }
}

void CCalibrationTable::OfferFactoryReset() {
    if (AskYesNo(FormatText(LoadText(kTextAskFactoryReset), BoardName())) && WriteCopy(m_mirrorOffset) == 0) {
        UseDefaultsAndSay(kTextFactoryResetFailed);
    }
}

void CCalibrationTable::UseDefaults() {
    for (const CalibTableRecord& record : m_records) {
        m_image->SetValue(record, record.defaultValue);
    }
}

void CCalibrationTable::UseDefaultsAndSay(HardwareText text) {
    UseDefaults();
    ShowMessage(FormatText(LoadText(text), BoardName()), BoxIcon::Exclamation);
}

bool CCalibrationTable::ReadIdentity(BoardIdentity& identity) {
    if (m_device == kMainBoardMemory) {
        const bool read = m_access.ReadStatusRegister(address::kMainBoardVersion, identity.version) == 0 &&
                          m_access.ReadStatusRegister(address::kMainBoardOptions, identity.options) == 0;
        identity.version = MainBoardVersion(identity.version);
        return read;
    }
    return m_device == kAnalogueBoardMemory &&
           m_access.ReadAnalogueRegister(kAnalogueVersionRegister, identity.version) == 0 &&
           m_access.ReadAnalogueRegister(kAnalogueOptionsRegister, identity.options) == 0;
}

int CCalibrationTable::WriteCopy(std::uint16_t offset) {
    BoardIdentity identity;
    if (m_image->Bytes().empty() || !ReadIdentity(identity)) {
        return 0;
    }
    m_image->Stamp(GetLocalTime(), identity);
    return Memory().Write(offset, m_image->Bytes()) ? VerifyTableInHardware(offset) : 0;
}

int CCalibrationTable::VerifyTableInHardware(std::uint16_t offset) {
    std::vector<std::uint8_t> wanted;
    if (!AllocateBytes(wanted, m_image->Bytes().size())) {
        GiveUpCalibration();
        return 0;
    }
    std::ranges::copy(m_image->Bytes(), wanted.begin());
    if (ReadCopy(offset) && std::ranges::equal(m_image->Bytes(), wanted)) {
        return 1;
    }
    ShowMessage(LoadText(kTextVerifyFailed));
    return 0;
}

void CCalibrationTable::GiveUpCalibration() {
    m_usingCalibration = 0;
    if (CWnd* window = GetHostApplication().mainWindow) {
        window->Post(kMessageOutOfMemory, kTextOutOfMemory, 0);
    }
}

int CCalibrationTable::WriteIfAllowed(int securityLevel, HardwareText copyName, std::uint16_t offset) {
    if (!GetHostApplication().CheckSecurityLevel(securityLevel)) {
        ShowMessage(FormatText(LoadText(kTextSecurityTooLow), LoadText(copyName)));
        return 0;
    }
    return WriteCopy(offset);
}

int CCalibrationTable::WriteTable() {
    return WriteIfAllowed(kLevelForMirror, kTextMirror, m_mirrorOffset);
}

int CCalibrationTable::WriteMasterTable() {
    return WriteIfAllowed(kLevelForMaster, kTextMaster, m_masterOffset);
}

int CCalibrationTable::CopyMasterToMirror() {
    if (!ReadCopy(m_masterOffset)) {
        UseDefaults();
        return 0;
    }
    return WriteCopy(m_mirrorOffset);
}

double CCalibrationTable::GetCalibrationValueForID(int id) const {
    const bool exists = id >= 0 && static_cast<std::size_t>(id) < m_records.size();
    return exists ? m_image->Value(m_records[static_cast<std::size_t>(id)]) : 1.0;
}

const CalibTableRecord* CCalibrationTable::FindRecord(int offset) const {
    const auto found = std::ranges::find_if(m_records, [offset](const CalibTableRecord& record) {
        return std::cmp_equal(record.offset, offset);
    });
    return found == m_records.end() ? nullptr : &*found;
}

double CCalibrationTable::GetCalibrationValue(int offset) const {
    const CalibTableRecord* record = FindRecord(offset);
    return record == nullptr ? 1.0 : m_image->Value(*record);
}

int CCalibrationTable::SetCalibrationValue(int offset, double value) {
    const CalibTableRecord* record = IsInDataArea(offset) ? FindRecord(offset) : nullptr;
    return record != nullptr && m_image->SetValue(*record, value) ? 1 : 0;
}

bool CCalibrationTable::IsInDataArea(int offset) const {
    return offset >= 0 && static_cast<std::size_t>(offset) < m_image->DataSize();
}

std::uint8_t CCalibrationTable::GetCalibrationByte(int offset) const {
    return IsInDataArea(offset) ? m_image->Byte(calibration_header::kBytes + static_cast<std::size_t>(offset))
                                : std::uint8_t{0};
}

int CCalibrationTable::SetCalibrationByte(int offset, std::uint8_t value) {
    if (!IsInDataArea(offset)) {
        return 0;
    }
    m_image->SetByte(calibration_header::kBytes + static_cast<std::size_t>(offset), value);
    return 1;
}

CString CCalibrationTable::GetCalibrationString(int offset, int length) const {
    if (!IsInDataArea(offset) || length <= 0) {
        return {};
    }
    return m_image->Text(calibration_header::kBytes + static_cast<std::size_t>(offset),
                         std::min(static_cast<std::size_t>(length), kCalibrationTextBytes));
}

int CCalibrationTable::SetCalibrationString(int offset, int length, const CString& text) {
    if (!IsInDataArea(offset)) {
        return 0;
    }
    m_image->SetText(calibration_header::kBytes + static_cast<std::size_t>(offset),
                     static_cast<std::size_t>(std::max(length, 0)), text, kCalibrationTextBytes);
    return 1;
}

int CCalibrationTable::GetCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour,
                                          VARIANT* minute, VARIANT* second) const {
    using namespace calibration_header;
    const LocalTime time = m_usingCalibration != 0 ? LocalTime{m_image->Word(kYear),   m_image->Byte(kMonth),
                                                               m_image->Byte(kDay),    m_image->Byte(kHour),
                                                               m_image->Byte(kMinute), m_image->Byte(kSecond)}
                                                   : GetLocalTime();
    SetShort(year, time.year);
    SetShort(month, time.month);
    SetShort(day, time.day);
    SetShort(hour, time.hour);
    SetShort(minute, time.minute);
    SetShort(second, time.second);
    return 1;
}

bool CCalibrationTable::WrittenBefore098() const {
    return m_image->Byte(calibration_header::kSoftwareMajor) == 0 &&
           m_image->Byte(calibration_header::kSoftwareMinor) < kFirstFixedMinor;
}

std::uint16_t CCalibrationTable::GetCalibrationVersion() const {
    const std::uint16_t version = m_image->Word(calibration_header::kCalibrationVersion);
    const bool strayHighByte = WrittenBefore098() && (version >> 8) >= kFirstStrayByte;
    return strayHighByte ? static_cast<std::uint16_t>(0x0100 | (version & 0xFF)) : version;
}

int CCalibrationTable::SetCalibrationVersion(std::uint16_t version) {
    m_image->SetWord(calibration_header::kCalibrationVersion, version);
    return 1;
}

std::uint16_t CCalibrationTable::GetSoftwareVersion() const {
    return static_cast<std::uint16_t>((m_image->Byte(calibration_header::kSoftwareMinor) << 8) |
                                      m_image->Byte(calibration_header::kSoftwareMajor));
}

CString CCalibrationTable::GetSoftwareVersionLetter() const {
    const bool strayPlace =
        WrittenBefore098() && m_image->Byte(calibration_header::kCalibrationVersion) >= kFirstStrayByte;
    return m_image->Text(
        strayPlace ? calibration_header::kCalibrationVersion : calibration_header::kSoftwareLetter, 1);
}

std::uint16_t CCalibrationTable::GetUnitSerialNum() const {
    return m_image->Word(calibration_header::kUnitSerialNumber);
}

int CCalibrationTable::SetUnitSerialNum(std::uint16_t serial) {
    m_image->SetWord(calibration_header::kUnitSerialNumber, serial);
    return 1;
}

int CCalibrationTable::SetHeaderText(std::size_t at, const CString& text) {
    m_image->SetText(at, kCalibrationTextBytes, text, kCalibrationTextBytes - 1);
    return 1;
}

CString CCalibrationTable::GetCalibrationOrganisation() const {
    return m_image->Text(calibration_header::kOrganisation, kCalibrationTextBytes);
}

int CCalibrationTable::SetCalibrationOrganisation(const CString& text) {
    return SetHeaderText(calibration_header::kOrganisation, text);
}

CString CCalibrationTable::GetCalibrationOperator() const {
    return m_image->Text(calibration_header::kOperator, kCalibrationTextBytes);
}

int CCalibrationTable::SetCalibrationOperator(const CString& text) {
    return SetHeaderText(calibration_header::kOperator, text);
}

std::uint8_t CCalibrationTable::GetByte(int index) const {
    const bool inside = index >= 0 && static_cast<std::size_t>(index) <= m_image->DataSize();
    return inside ? m_image->Byte(static_cast<std::size_t>(index)) : std::uint8_t{0};
}
