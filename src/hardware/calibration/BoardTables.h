#pragma once

// The calibration of both boards.

#include "hardware/CalibrationTable.h"

#include <array>
#include <memory>

namespace kalvio {

enum class Board { Main, Analogue };

// User-interface thread. There are no tables before Load and after Drop.
class BoardTables {
public:
    explicit BoardTables(MemoryAccess& memory) : m_memory(memory) {}

    // Makes and reads both tables; false when memory ran out.
    bool Load();
    void Drop();

    // What a table answers, or nothing (0, 0.0, empty text) without it or while the unit is not present.
    template<typename Result, typename... Parameters, typename... Arguments>
    Result Ask(Board board, Result (CCalibrationTable::*getter)(Parameters...) const,
               Arguments... arguments) const {
        const CCalibrationTable* table = Table(board);
        return m_memory.IsUnitPresent() && table != nullptr ? (table->*getter)(arguments...) : Result{};
    }
    // Has a table do something; 0 without it.
    template<typename... Parameters, typename... Arguments>
    int Tell(Board board, int (CCalibrationTable::*operation)(Parameters...), const Arguments&... arguments) {
        CCalibrationTable* table = Table(board);
        return table != nullptr ? (table->*operation)(arguments...) : 0;
    }
    [[nodiscard]] int IsUsed(Board board) const;

    // An entry's number as an integer, truncated toward zero, as far as it is loaded.
    [[nodiscard]] std::int32_t WholeValue(Board board, int id) const;
    // The main board's phase entry of a channel, while the unit is present: half of it, and whether it is
    // even.
    [[nodiscard]] int PhaseBaseOffset(int channel) const;
    [[nodiscard]] int IsPhaseEven(int channel) const;

    // Copies master to mirror, on the main board and then on the analogue board, and says how it went. False
    // as soon as one failed.
    bool ResetToFactory();

private:
    [[nodiscard]] CCalibrationTable* Table(Board board) const {
        return m_tables[static_cast<std::size_t>(board)].get();
    }
    [[nodiscard]] std::int32_t Phase(int channel) const;

    MemoryAccess& m_memory;
    std::array<std::unique_ptr<CCalibrationTable>, 2> m_tables;
};

} // namespace kalvio
