#pragma once

// The moving window of one result's latest values, and whether they agree.

#include "platform/Export.h"

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

// Shared by every watch of the same result and detector. All but the hand-over is guarded by the
// pre-processor lock; the hand-over is lock-free.
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

    void LoadParameters(); // from the host application's settling queries; resets
    // Forgets the values held and the pending one; the latest value stays.
    void Reset();
    // Consumes a pending value, if there is one. Stable from the value after the N-th on, when all N - 1
    // older values of the window agree with the newest.
    void Step();
    // The latest value, or the average of the window when averaging or asked to (the latest while the window
    // is empty).
    [[nodiscard]] double Value(bool forceAverage) const;
    [[nodiscard]] bool IsStable() const { return m_stable; }
    [[nodiscard]] bool WasTaken() const { return m_taken; } // the last wake-up consumed a value
    void ClearTaken() { m_taken = false; }
    [[nodiscard]] std::uint32_t SettlingTime() const { return m_settlingTime; } // ms
    // A watch that counted more values than this gives up on the result.
    [[nodiscard]] int GiveUpCount() const { return 3 * m_numResults; }
    [[nodiscard]] SettlingVerdict Verdict() const;

    // Copies the live value into the pending one unless one is pending already; true when the list is to be
    // looked at. The marker of an invalid result is no value: the list is looked at, and finds none.
    // Any thread, lock-free.
    bool Offer();
    // Whether a value waits to be stepped. Any thread.
    [[nodiscard]] bool HasPending() const { return m_pendingState.load(std::memory_order_relaxed) == Full; }

    // Where its list keeps it.
    void SetPlace(std::size_t place) { m_place = place; }
    [[nodiscard]] std::size_t Place() const { return m_place; }

    void AddReference() { ++m_references; }
    [[nodiscard]] int DropReference() { return --m_references; }

private:
    // A notifier takes an empty slot to writing and on to full; the step or a reset takes a full one to
    // empty. Who finds it otherwise leaves it alone, so that the first value stands.
    enum Pending : std::uint32_t { Empty, Writing, Full };

    struct Disagreement {
        int distance = 0; // 0: none
        double allowed = 0.0;
        double deviation = 0.0;
    };

    void BuildLadder(double tolerance);
    void Compare();

    const int m_resultID;
    const int m_detector;
    const std::uint32_t m_key;
    std::uint32_t m_settlingTime = 0; // ms
    bool m_averaging = false;
    int m_numResults = 1;
    int m_toleranceType = 0;
    std::array<double, kSettlingWindow> m_ladder{};
    int m_writeIndex = 0;
    int m_count = 0;
    std::array<double, kSettlingWindow> m_window{};
    double m_sum = 0.0; // of the values in the window
    double m_latest = 0.0;
    bool m_taken = false;
    bool m_stable = false;
    Disagreement m_disagreement; // the nearest one of the last comparison
    int m_references = 1;
    std::size_t m_place = 0;
    std::atomic<double*> m_live{nullptr}; // where the host keeps the result
    std::atomic<std::uint32_t> m_pendingState{Empty};
    std::atomic<double> m_pending{0.0}; // belongs to whoever took the state to Writing or found it Full
};
