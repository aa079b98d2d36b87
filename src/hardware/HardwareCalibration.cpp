// The calibration of both boards: every operation goes to the main board's or the analogue board's table.

#include "hardware/HardwareParts.h"
#include "hardware/calibration/CalibrationImage.h"

using namespace kalvio;

namespace {

constexpr int kHardwareVersionIndex = calibration_header::kHardwareVersion;
constexpr int kHardwareOptionsIndex = calibration_header::kHardwareOptions;

} // namespace

int CHardware::SetMainBoardCalibrationByte(int offset, std::uint8_t value) {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::SetCalibrationByte, offset, value);
}

int CHardware::SetAnalogueCalibrationByte(int offset, std::uint8_t value) {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::SetCalibrationByte, offset, value);
}

int CHardware::SetMainBoardCalibrationValue(int offset, double value) {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::SetCalibrationValue, offset, value);
}

int CHardware::SetAnalogueCalibrationValue(int offset, double value) {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::SetCalibrationValue, offset, value);
}

int CHardware::SetMainBoardCalibrationString(int offset, int length, const CString& text) {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::SetCalibrationString, offset, length, text);
}

int CHardware::SetAnalogueCalibrationString(int offset, int length, const CString& text) {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::SetCalibrationString, offset, length,
                                text);
}

std::uint8_t CHardware::GetMainBoardCalibrationByte(int offset) const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationByte, offset);
}

std::uint8_t CHardware::GetAnalogueCalibrationByte(int offset) const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationByte, offset);
}

double CHardware::GetMainBoardCalibrationValue(int offset) const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationValue, offset);
}

double CHardware::GetAnalogueCalibrationValue(int offset) const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationValue, offset);
}

double CHardware::GetMainBoardCalibrationValueForID(int id) const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationValueForID, id);
}

double CHardware::GetAnalogueCalibrationValueForID(int id) const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationValueForID, id);
}

CString CHardware::GetMainBoardCalibrationString(int offset, int length) const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationString, offset, length);
}

CString CHardware::GetAnalogueCalibrationString(int offset, int length) const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationString, offset, length);
}

int CHardware::WriteMainBoardTable() {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::WriteTable);
}

int CHardware::WriteAnalogueTable() {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::WriteTable);
}

int CHardware::WriteMainBoardMasterTable() {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::WriteMasterTable);
}

int CHardware::WriteAnalogueMasterTable() {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::WriteMasterTable);
}

int CHardware::GetMainBoardCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour,
                                           VARIANT* minute, VARIANT* second) const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationDate, year, month, day, hour,
                               minute, second);
}

int CHardware::GetAnalogueCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour,
                                          VARIANT* minute, VARIANT* second) const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationDate, year, month, day,
                               hour, minute, second);
}

std::uint16_t CHardware::GetMainBoardCalibrationVersion() const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationVersion);
}

std::uint16_t CHardware::GetAnalogueCalibrationVersion() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationVersion);
}

int CHardware::SetMainBoardCalibrationVersion(std::uint16_t version) {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::SetCalibrationVersion, version);
}

int CHardware::SetAnalogueCalibrationVersion(std::uint16_t version) {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::SetCalibrationVersion, version);
}

std::uint16_t CHardware::GetMainBoardUnitSerialNum() const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetUnitSerialNum);
}

std::uint16_t CHardware::GetAnalogueUnitSerialNum() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetUnitSerialNum);
}

int CHardware::SetMainBoardUnitSerialNum(std::uint16_t serial) {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::SetUnitSerialNum, serial);
}

int CHardware::SetAnalogueUnitSerialNum(std::uint16_t serial) {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::SetUnitSerialNum, serial);
}

CString CHardware::GetMainBoardCalibrationOrganisation() const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationOrganisation);
}

CString CHardware::GetAnalogueCalibrationOrganisation() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationOrganisation);
}

CString CHardware::GetMainBoardCalibrationOperator() const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetCalibrationOperator);
}

CString CHardware::GetAnalogueCalibrationOperator() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetCalibrationOperator);
}

int CHardware::SetMainBoardCalibrationOrganisation(const CString& text) {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::SetCalibrationOrganisation, text);
}

int CHardware::SetAnalogueCalibrationOrganisation(const CString& text) {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::SetCalibrationOrganisation, text);
}

int CHardware::SetMainBoardCalibrationOperator(const CString& text) {
    return m_parts->boards.Tell(Board::Main, &CCalibrationTable::SetCalibrationOperator, text);
}

int CHardware::SetAnalogueCalibrationOperator(const CString& text) {
    return m_parts->boards.Tell(Board::Analogue, &CCalibrationTable::SetCalibrationOperator, text);
}

int CHardware::UsingMainBoardCalibration() const {
    return m_parts->boards.IsUsed(Board::Main);
}

int CHardware::UsingAnalogueCalibration() const {
    return m_parts->boards.IsUsed(Board::Analogue);
}

std::uint8_t CHardware::GetMainBoardHardwareVersion() const {
    return MainBoardVersion(
        m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetByte, kHardwareVersionIndex));
}

std::uint8_t CHardware::GetAnalogueHardwareVersion() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetByte, kHardwareVersionIndex);
}

std::uint8_t CHardware::GetMainBoardHardwareOptions() const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetByte, kHardwareOptionsIndex);
}

std::uint8_t CHardware::GetAnalogueHardwareOptions() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetByte, kHardwareOptionsIndex);
}

std::uint16_t CHardware::GetMainBoardSoftwareVersion() const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetSoftwareVersion);
}

std::uint16_t CHardware::GetAnalogueSoftwareVersion() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetSoftwareVersion);
}

CString CHardware::GetMainBoardSoftwareVersionLetter() const {
    return m_parts->boards.Ask(Board::Main, &CCalibrationTable::GetSoftwareVersionLetter);
}

CString CHardware::GetAnalogueSoftwareVersionLetter() const {
    return m_parts->boards.Ask(Board::Analogue, &CCalibrationTable::GetSoftwareVersionLetter);
}

int CHardware::ResetCalibration() {
    return m_parts->boards.ResetToFactory() ? 1 : 0;
}
