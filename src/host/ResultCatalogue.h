#pragma once

// The one catalogue of results: all that is fixed about each of them stands in its row.

#include "host/HostTexts.h"
#include "host/Quantities.h"
#include "host/ResultIds.h"
#include "platform/Export.h"

#include <span>

class CHostApplication;

namespace kalvio {

// How results arrive: together with one notice for all, or each with its own.
enum class ResultList { Single, Block };
// Which of the host's documents a result belongs to.
enum class ResultSide { Analyser, Generator };

inline constexpr int kNoOtherChannel = -1;

struct ResultRow {
    int id;
    const char* name; // as users type it; null for a second id of a result
    unsigned textId;
    double* (*field)(CHostApplication& host, int detector); // where its value is; null answer: nowhere
    int readyFlag;                                          // index of its ready flag
    ResultList list;
    int channelB;             // the id of the same result of channel B (of A for B's own); kNoOtherChannel
    bool usesDetector;        // of the FFT; its value is the detector's
    const Quantity* quantity; // null: an amplitude, which follows the input in use
    int usualUnit;            // that people read it in
    ResultSide side;
    int settlingGroup; // whose parameters say when it has settled
};

// In the order in which users are shown them.
[[nodiscard]] KALVIO_API std::span<const ResultRow> Results();
// The row of a result; null for an id that is none. Any thread.
[[nodiscard]] KALVIO_API const ResultRow* FindResultRow(int resultID);

} // namespace kalvio
