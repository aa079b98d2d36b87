#pragma once

// Carries out each command that the endpoint has received whole, puts the response together and keeps
// the record of exchanges. Faults of whole commands show here.

#include "simulator/UnitBoards.h"
#include "simulator/commands/CommandEndpoint.h"
#include "simulator/commands/CommandOutcome.h"

namespace kalvio::simulator {

class CommandCarrier {
public:
    explicit CommandCarrier(UnitBoards& boards) : m_boards(boards) {}

    Answer Carry(const CommandFrame& frame);

    [[nodiscard]] std::vector<Exchange> Exchanges() const { return m_exchanges.Copy(); }
    void ClearExchanges() { m_exchanges.Clear(); }

private:
    CommandOutcome CarryOut(const CommandFrame& frame);
    ByteVector MakeResponse(const CommandFrame& frame, const CommandOutcome& outcome);
    void Record(const CommandFrame& frame, const CommandOutcome& outcome);

    UnitBoards& m_boards;
    Log<Exchange> m_exchanges;
};

} // namespace kalvio::simulator
