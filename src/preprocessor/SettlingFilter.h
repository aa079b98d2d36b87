#pragma once

// The moving window of one result's latest values, and whether they agree.

#include "platform/Export.h"
#include "preprocessor/PreProcessor.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

inline constexpr int kSettlingWindow = 15;

// What the last comparison of a filter found, for people who ask why.
struct SettlingVerdict {
    int count = 0;                                // values held, newest first in `values`
    int needed = 0;                               // number of results N
    std::array<double, kSettlingWindow> values{}; // newest first
    double tolerance = 0.0;                       // fraction
    int toleranceType = 0;
    bool stable = false;
    int disagreeing = 0;    // distance of the nearest older value that disagrees with the newest; 0: none
    double allowed = 0.0;   // allowed deviation at that distance
    double deviation = 0.0; // deviation found there
};

// Shared by every watch of the same result and detector. The hand-over is lock-free.
class KALVIO_API CSettlingFilter {
public:
    CSettlingFilter(int resultID, int detector);
    virtual ~CSettlingFilter() = default;
    CSettlingFilter(const CSettlingFilter&) = delete;
    CSettlingFilter& operator=(const CSettlingFilter&) = delete;

    // The result id without a detector, else detector * 65536 + result id.
    [[nodiscard]] static std::uint32_t MakeKey(int resultID, int detector);
    [[nodiscard]] int ResultId() const { return m_resultID; }
    [[nodiscard]] int Detector() const { return m_detector; }
    [[nodiscard]] std::uint32_t Key() const { return m_key; }

    // From the host application's settling queries; resets.
    void LoadParameters() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Forgets the values held and the pending one; the latest value stays.
    void Reset() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Consumes a pending value, if there is one. Stable from the value after the N-th on, when all N - 1
    // older values of the window agree with the newest.
    void Step() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // The latest value, or the average of the window when averaging or asked to (the latest while the window
    // is empty).
    [[nodiscard]] double Value(bool forceAverage) const KALVIO_NEEDS_PREPROCESSOR_LOCK;
    [[nodiscard]] bool IsStable() const KALVIO_NEEDS_PREPROCESSOR_LOCK { return m_stable; }
    // Whether the last wake-up consumed a value.
    [[nodiscard]] bool WasTaken() const KALVIO_NEEDS_PREPROCESSOR_LOCK { return m_taken; }
    void ClearTaken() KALVIO_NEEDS_PREPROCESSOR_LOCK { m_taken = false; }
    // In milliseconds.
    [[nodiscard]] std::uint32_t SettlingTime() const KALVIO_NEEDS_PREPROCESSOR_LOCK { return m_settlingTime; }
    // A watch that counted more values than this gives up on the result.
    [[nodiscard]] int GiveUpCount() const KALVIO_NEEDS_PREPROCESSOR_LOCK { return 3 * m_numResults; }
    [[nodiscard]] SettlingVerdict Verdict() const KALVIO_NEEDS_PREPROCESSOR_LOCK;

    // Copies the live value into the pending one unless one is pending already; true when the list is to be
    // looked at. The marker of an invalid result is no value: the list is looked at, and finds none.
    // Any thread, lock-free.
    bool Offer();
    // Whether a value waits to be stepped. Any thread.
    [[nodiscard]] bool HasPending() const { return m_pendingState.load(std::memory_order_relaxed) == Full; }

    // Where its list keeps it.
    void SetPlace(std::size_t place) KALVIO_NEEDS_PREPROCESSOR_LOCK { m_place = place; }
    [[nodiscard]] std::size_t Place() const KALVIO_NEEDS_PREPROCESSOR_LOCK { return m_place; }

    void AddReference() KALVIO_NEEDS_PREPROCESSOR_LOCK { ++m_references; }
    [[nodiscard]] int DropReference() KALVIO_NEEDS_PREPROCESSOR_LOCK { return --m_references; }

private:
    // A notifier takes an empty slot to writing and on to full; the step or a reset takes a full one to
    // empty. Who finds it otherwise leaves it alone, so that the first value stands.
    enum Pending : std::uint32_t { Empty, Writing, Full };

    struct Disagreement {
        int distance = 0; // 0: none
        double allowed = 0.0;
        double deviation = 0.0;
    };

    void BuildLadder(double tolerance) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    void Compare() KALVIO_NEEDS_PREPROCESSOR_LOCK;

    const int m_resultID;
    const int m_detector;
    const std::uint32_t m_key;
    std::uint32_t m_settlingTime KALVIO_UNDER_PREPROCESSOR_LOCK = 0; // ms
    bool m_averaging KALVIO_UNDER_PREPROCESSOR_LOCK = false;
    int m_numResults KALVIO_UNDER_PREPROCESSOR_LOCK = 1;
    int m_toleranceType KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
    std::array<double, kSettlingWindow> m_ladder KALVIO_UNDER_PREPROCESSOR_LOCK{};
    int m_writeIndex KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
    int m_count KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
    std::array<double, kSettlingWindow> m_window KALVIO_UNDER_PREPROCESSOR_LOCK{};
    double m_sum KALVIO_UNDER_PREPROCESSOR_LOCK = 0.0; // of the values in the window
    double m_latest KALVIO_UNDER_PREPROCESSOR_LOCK = 0.0;
    bool m_taken KALVIO_UNDER_PREPROCESSOR_LOCK = false;
    bool m_stable KALVIO_UNDER_PREPROCESSOR_LOCK = false;
    Disagreement m_disagreement KALVIO_UNDER_PREPROCESSOR_LOCK; // the nearest one of the last comparison
    int m_references KALVIO_UNDER_PREPROCESSOR_LOCK = 1;
    std::size_t m_place KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
    std::atomic<double*> m_live{nullptr}; // where the host keeps the result
    std::atomic<std::uint32_t> m_pendingState{Empty};
    std::atomic<double> m_pending{0.0}; // belongs to whoever took the state to Writing or found it Full
};
