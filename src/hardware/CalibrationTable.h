#pragma once

// One board's calibration: its image, its memory on the unit, typed access to its entries.

#include "hardware/MemoryAccess.h"
#include "platform/Automation.h"
#include "platform/Export.h"
#include "platform/Text.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

struct CalibTableRecord {
    std::uint32_t offset = 0; // from the start of the data area
    std::uint32_t type = 0;   // 0 byte; 1 unsigned; 2, 7 gain; 3, 6 signed; 4 three bytes; 5 text
    double defaultValue = 0.0;
    double reference = 0.0; // not used
};

namespace kalvio {

class CalibrationImage;
class CalibrationMemory;
struct BoardIdentity;
enum HardwareText : unsigned;

// The built-in lists: 31 records of the main board, 92 of the analogue board. A record's place in its list
// is the entry's id.
[[nodiscard]] KALVIO_API std::span<const CalibTableRecord> MainBoardRecords();
[[nodiscard]] KALVIO_API std::span<const CalibTableRecord> AnalogueBoardRecords();

inline constexpr std::uint8_t kMainBoardMemory = 0x52;
inline constexpr std::uint8_t kAnalogueBoardMemory = 0x54;

// A main board whose version has 1 in its low nibble counts as version 0x11.
[[nodiscard]] constexpr std::uint8_t MainBoardVersion(std::uint8_t version) {
    return (version & 0x0F) == 1 ? std::uint8_t{0x11} : version;
}

} // namespace kalvio

// The memory holds two copies of the table: the mirror, which is the working copy, and the master, which is
// the factory's. The table here is read from one of them and written to either.
//
// User-interface thread. Operations that return int give 1 for success and 0 for failure; a failed one has
// shown its message. Offsets count bytes from the start of the data area.
class KALVIO_API CCalibrationTable {
public:
    explicit CCalibrationTable(kalvio::MemoryAccess& memory);
    ~CCalibrationTable();
    CCalibrationTable(const CCalibrationTable&) = delete;
    CCalibrationTable& operator=(const CCalibrationTable&) = delete;

    // Takes the table's geometry and its records (which must outlive it), and reads it: the mirror, with a
    // bad checksum the master, otherwise defaults. Asks before it rewrites a damaged mirror. 0 only when
    // there was no memory for the image, or for a page size of 0.
    int InitialiseTable(std::uint8_t device, std::uint8_t pageSize, std::uint8_t addressBytes,
                        std::uint16_t dataSize, std::uint16_t mirrorOffset, std::uint16_t masterOffset,
                        const CalibTableRecord* records, int recordCount);
    // Stamps the header and writes the mirror (security level 3) or the master (level 4), with a verify.
    int WriteTable();
    int WriteMasterTable();
    // Reads the master and writes it to the mirror. When the master cannot be read defaults hold.
    int CopyMasterToMirror();
    // Reads the copy at an offset of the memory and compares it with the table, which afterwards holds what
    // the memory holds.
    int VerifyTableInHardware(std::uint16_t offset);
    // 1; 0 once memory for the image or for a verify ran out.
    [[nodiscard]] int UsingCalibration() const { return m_usingCalibration; }

    // The number of an entry: 0.0 for a text, 1.0 for an id or an offset that no record has.
    [[nodiscard]] double GetCalibrationValueForID(int id) const;
    [[nodiscard]] double GetCalibrationValue(int offset) const;
    // Stores a value truncated toward zero, a gain after multiplying by 32768, modulo the entry's width. 0
    // for an offset that no record has and for a text.
    int SetCalibrationValue(int offset, double value);
    // One byte of the data area; outside it 0 is read and a write refused.
    [[nodiscard]] std::uint8_t GetCalibrationByte(int offset) const;
    int SetCalibrationByte(int offset, std::uint8_t value);
    // The text up to the first zero among min(length, 32) bytes, never past the end of the data area; empty
    // outside it.
    [[nodiscard]] CString GetCalibrationString(int offset, int length) const;
    // Zeroes `length` bytes and stores at most min(length, 32) characters, never past the end of the data
    // area. 0 outside it.
    int SetCalibrationString(int offset, int length, const CString& text);
    // Six shorts: when the table was last written, or the local time when it is not in use.
    int GetCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour, VARIANT* minute,
                           VARIANT* second) const;
    // The high byte of a version that software before 0.98 wrote may be a stray letter: it then reads 1.
    [[nodiscard]] std::uint16_t GetCalibrationVersion() const;
    int SetCalibrationVersion(std::uint16_t version);
    // Of the software that wrote the table: minor × 256 + major.
    [[nodiscard]] std::uint16_t GetSoftwareVersion() const;
    // One character, or empty when there is none.
    [[nodiscard]] CString GetSoftwareVersionLetter() const;
    [[nodiscard]] std::uint16_t GetUnitSerialNum() const;
    int SetUnitSerialNum(std::uint16_t serial);
    // Texts of at most 31 characters.
    [[nodiscard]] CString GetCalibrationOrganisation() const;
    int SetCalibrationOrganisation(const CString& text);
    [[nodiscard]] CString GetCalibrationOperator() const;
    int SetCalibrationOperator(const CString& text);
    // A byte of the whole image, header first; 0 for an index that is negative or above the data size.
    [[nodiscard]] std::uint8_t GetByte(int index) const;

private:
    [[nodiscard]] CString BoardName() const;
    [[nodiscard]] const CalibTableRecord* FindRecord(int offset) const;
    [[nodiscard]] bool IsInDataArea(int offset) const;
    [[nodiscard]] bool WrittenBefore098() const;
    int SetHeaderText(std::size_t at, const CString& text);
    void ReadTable();
    void UseDefaults();
    void UseDefaultsAndSay(kalvio::HardwareText text);
    void OfferFactoryReset();
    bool ReadIdentity(kalvio::BoardIdentity& identity);
    int WriteCopy(std::uint16_t offset);
    int WriteIfAllowed(int securityLevel, kalvio::HardwareText copyName, std::uint16_t offset);
    bool ReadCopy(std::uint16_t offset);
    void GiveUpCalibration();
    [[nodiscard]] kalvio::CalibrationMemory Memory();

    kalvio::MemoryAccess& m_access;
    std::uint8_t m_device = 0;
    std::uint8_t m_pageSize = 0;
    std::uint8_t m_addressBytes = 0;
    std::uint16_t m_mirrorOffset = 0;
    std::uint16_t m_masterOffset = 0;
    std::span<const CalibTableRecord> m_records;
    std::unique_ptr<kalvio::CalibrationImage> m_image;
    int m_usingCalibration = 1;
};
