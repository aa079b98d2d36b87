#include "preprocessor/thread/PreProcessorState.h"

#include "host/ResultCatalogue.h"

namespace kalvio::preprocessor {

SignalList& State::ListOf(int resultID) {
    const ResultRow* row = FindResultRow(resultID);
    return row != nullptr && row->list == ResultList::Block ? block : single;
}

State& GetState() {
    static State& state = *new State;
    return state;
}

} // namespace kalvio::preprocessor
