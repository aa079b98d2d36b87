// The calibration of both boards: every operation goes to the main board's or the analogue board's table.

#include "hardware/Hardware.h"

#include "platform/UserInterface.h"

using namespace kalvio;

namespace {

constexpr unsigned kTextFactoryResetFailed = 12686;
constexpr unsigned kTextFactoryResetDone = 12688;

constexpr int kHardwareVersionIndex = calibration_header::kHardwareVersion;
constexpr int kHardwareOptionsIndex = calibration_header::kHardwareOptions;

// What the table answers, or nothing (0, 0.0, empty text) without a table or without the unit.
template<typename Result, typename... Parameters, typename... Arguments>
Result Ask(bool present, const std::unique_ptr<CCalibrationTable>& table,
           Result (CCalibrationTable::*getter)(Parameters...) const, Arguments... arguments) {
    return present && table != nullptr ? (*table.*getter)(arguments...) : Result{};
}

// Has the table do something; 0 without a table.
template<typename... Parameters, typename... Arguments>
int Tell(const std::unique_ptr<CCalibrationTable>& table, int (CCalibrationTable::*operation)(Parameters...),
         const Arguments&... arguments) {
    return table != nullptr ? (*table.*operation)(arguments...) : 0;
}

} // namespace

int CHardware::SetMainBoardCalibrationByte(int offset, std::uint8_t value) {
    return Tell(m_mainTable, &CCalibrationTable::SetCalibrationByte, offset, value);
}

int CHardware::SetAnalogueCalibrationByte(int offset, std::uint8_t value) {
    return Tell(m_analogueTable, &CCalibrationTable::SetCalibrationByte, offset, value);
}

int CHardware::SetMainBoardCalibrationValue(int offset, double value) {
    return Tell(m_mainTable, &CCalibrationTable::SetCalibrationValue, offset, value);
}

int CHardware::SetAnalogueCalibrationValue(int offset, double value) {
    return Tell(m_analogueTable, &CCalibrationTable::SetCalibrationValue, offset, value);
}

int CHardware::SetMainBoardCalibrationString(int offset, int length, const CString& text) {
    return Tell(m_mainTable, &CCalibrationTable::SetCalibrationString, offset, length, text);
}

int CHardware::SetAnalogueCalibrationString(int offset, int length, const CString& text) {
    return Tell(m_analogueTable, &CCalibrationTable::SetCalibrationString, offset, length, text);
}

std::uint8_t CHardware::GetMainBoardCalibrationByte(int offset) const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationByte, offset);
}

std::uint8_t CHardware::GetAnalogueCalibrationByte(int offset) const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationByte, offset);
}

double CHardware::GetMainBoardCalibrationValue(int offset) const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationValue, offset);
}

double CHardware::GetAnalogueCalibrationValue(int offset) const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationValue, offset);
}

double CHardware::GetMainBoardCalibrationValueForID(int id) const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationValueForID, id);
}

double CHardware::GetAnalogueCalibrationValueForID(int id) const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationValueForID, id);
}

CString CHardware::GetMainBoardCalibrationString(int offset, int length) const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationString, offset, length);
}

CString CHardware::GetAnalogueCalibrationString(int offset, int length) const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationString, offset, length);
}

int CHardware::WriteMainBoardTable() {
    return Tell(m_mainTable, &CCalibrationTable::WriteTable);
}

int CHardware::WriteAnalogueTable() {
    return Tell(m_analogueTable, &CCalibrationTable::WriteTable);
}

int CHardware::WriteMainBoardMasterTable() {
    return Tell(m_mainTable, &CCalibrationTable::WriteMasterTable);
}

int CHardware::WriteAnalogueMasterTable() {
    return Tell(m_analogueTable, &CCalibrationTable::WriteMasterTable);
}

int CHardware::GetMainBoardCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour,
                                           VARIANT* minute, VARIANT* second) const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationDate, year, month, day, hour,
               minute, second);
}

int CHardware::GetAnalogueCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour,
                                          VARIANT* minute, VARIANT* second) const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationDate, year, month, day,
               hour, minute, second);
}

std::uint16_t CHardware::GetMainBoardCalibrationVersion() const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationVersion);
}

std::uint16_t CHardware::GetAnalogueCalibrationVersion() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationVersion);
}

int CHardware::SetMainBoardCalibrationVersion(std::uint16_t version) {
    return Tell(m_mainTable, &CCalibrationTable::SetCalibrationVersion, version);
}

int CHardware::SetAnalogueCalibrationVersion(std::uint16_t version) {
    return Tell(m_analogueTable, &CCalibrationTable::SetCalibrationVersion, version);
}

std::uint16_t CHardware::GetMainBoardUnitSerialNum() const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetUnitSerialNum);
}

std::uint16_t CHardware::GetAnalogueUnitSerialNum() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetUnitSerialNum);
}

int CHardware::SetMainBoardUnitSerialNum(std::uint16_t serial) {
    return Tell(m_mainTable, &CCalibrationTable::SetUnitSerialNum, serial);
}

int CHardware::SetAnalogueUnitSerialNum(std::uint16_t serial) {
    return Tell(m_analogueTable, &CCalibrationTable::SetUnitSerialNum, serial);
}

CString CHardware::GetMainBoardCalibrationOrganisation() const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationOrganisation);
}

CString CHardware::GetAnalogueCalibrationOrganisation() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationOrganisation);
}

CString CHardware::GetMainBoardCalibrationOperator() const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetCalibrationOperator);
}

CString CHardware::GetAnalogueCalibrationOperator() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetCalibrationOperator);
}

int CHardware::SetMainBoardCalibrationOrganisation(const CString& text) {
    return Tell(m_mainTable, &CCalibrationTable::SetCalibrationOrganisation, text);
}

int CHardware::SetAnalogueCalibrationOrganisation(const CString& text) {
    return Tell(m_analogueTable, &CCalibrationTable::SetCalibrationOrganisation, text);
}

int CHardware::SetMainBoardCalibrationOperator(const CString& text) {
    return Tell(m_mainTable, &CCalibrationTable::SetCalibrationOperator, text);
}

int CHardware::SetAnalogueCalibrationOperator(const CString& text) {
    return Tell(m_analogueTable, &CCalibrationTable::SetCalibrationOperator, text);
}

int CHardware::UsingMainBoardCalibration() const {
    return m_mainTable != nullptr ? m_mainTable->UsingCalibration() : 0;
}

int CHardware::UsingAnalogueCalibration() const {
    return m_analogueTable != nullptr ? m_analogueTable->UsingCalibration() : 0;
}

std::uint8_t CHardware::GetMainBoardHardwareVersion() const {
    return MainBoardVersion(
        Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetByte, kHardwareVersionIndex));
}

std::uint8_t CHardware::GetAnalogueHardwareVersion() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetByte, kHardwareVersionIndex);
}

std::uint8_t CHardware::GetMainBoardHardwareOptions() const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetByte, kHardwareOptionsIndex);
}

std::uint8_t CHardware::GetAnalogueHardwareOptions() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetByte, kHardwareOptionsIndex);
}

std::uint16_t CHardware::GetMainBoardSoftwareVersion() const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetSoftwareVersion);
}

std::uint16_t CHardware::GetAnalogueSoftwareVersion() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetSoftwareVersion);
}

CString CHardware::GetMainBoardSoftwareVersionLetter() const {
    return Ask(IsUnitPresent(), m_mainTable, &CCalibrationTable::GetSoftwareVersionLetter);
}

CString CHardware::GetAnalogueSoftwareVersionLetter() const {
    return Ask(IsUnitPresent(), m_analogueTable, &CCalibrationTable::GetSoftwareVersionLetter);
}

int CHardware::ResetCalibration() {
    const bool reset = Tell(m_mainTable, &CCalibrationTable::CopyMasterToMirror) != 0 &&
                       Tell(m_analogueTable, &CCalibrationTable::CopyMasterToMirror) != 0;
    if (reset) {
        ShowMessage(LoadText(kTextFactoryResetDone));
    } else {
        ShowMessage(LoadText(kTextFactoryResetFailed), BoxIcon::Exclamation);
    }
    return reset ? 1 : 0;
}
