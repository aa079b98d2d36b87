#include "hardware/calibration/BoardTables.h"

#include "hardware/HardwareTexts.h"
#include "hardware/Truncate.h"
#include "host/MeasurementHelpers.h"
#include "platform/UserInterface.h"

#include <new>

namespace kalvio {

namespace {

// Both memories: 512 bytes of data in pages of 32, two address bytes.
constexpr std::uint8_t kPageBytes = 32;
constexpr std::uint8_t kAddressBytes = 2;
constexpr std::uint16_t kTableBytes = 512;
constexpr std::uint16_t kMirrorAt = 0;
constexpr std::uint16_t kMasterAt = 2048;

// Entries of the main board.
constexpr int kPhaseB = 24;
constexpr int kPhaseA = 25;

bool LoadTable(MemoryAccess& memory, std::uint8_t device, std::span<const CalibTableRecord> records,
               std::unique_ptr<CCalibrationTable>& table) {
    table.reset(new (std::nothrow) CCalibrationTable(memory));
    return table != nullptr &&
           table->InitialiseTable(device, kPageBytes, kAddressBytes, kTableBytes, kMirrorAt, kMasterAt,
                                  records.data(), static_cast<int>(records.size())) != 0;
}

} // namespace

bool BoardTables::Load() {
    return LoadTable(m_memory, kMainBoardMemory, MainBoardRecords(), m_tables[0]) &&
           LoadTable(m_memory, kAnalogueBoardMemory, AnalogueBoardRecords(), m_tables[1]);
}

void BoardTables::Drop() {
    m_tables = {};
}

int BoardTables::IsUsed(Board board) const {
    const CCalibrationTable* table = Table(board);
    return table != nullptr ? table->UsingCalibration() : 0;
}

std::int32_t BoardTables::WholeValue(Board board, int id) const {
    const CCalibrationTable* table = Table(board);
    return table != nullptr ? static_cast<std::int32_t>(TruncatedBits(table->GetCalibrationValueForID(id)))
                            : 0;
}

std::int32_t BoardTables::Phase(int channel) const {
    return m_memory.IsUnitPresent() ? WholeValue(Board::Main, channel == kChannelA ? kPhaseA : kPhaseB) : 0;
}

int BoardTables::PhaseBaseOffset(int channel) const {
    return Phase(channel) >> 1;
}

int BoardTables::IsPhaseEven(int channel) const {
    return (Phase(channel) & 1) ^ 1;
}

bool BoardTables::ResetToFactory() {
    const bool reset = Tell(Board::Main, &CCalibrationTable::CopyMasterToMirror) != 0 &&
                       Tell(Board::Analogue, &CCalibrationTable::CopyMasterToMirror) != 0;
    if (reset) {
        ShowMessage(LoadText(kTextFactoryResetDone));
    } else {
        ShowMessage(LoadText(kTextFactoryResetFailed), BoxIcon::Exclamation);
    }
    return reset;
}

} // namespace kalvio
