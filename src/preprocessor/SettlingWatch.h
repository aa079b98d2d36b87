#pragma once

// The settling watch: decides for a set of results whether they settled, did not settle or went silent.

#include "preprocessor/EResult.h"
#include "preprocessor/SettlingFilter.h"
#include "preprocessor/Watch.h"

#include <cstdint>
#include <vector>

// Registers itself in the watch list while it lives.
class KALVIO_API CSettlingWatch : public CWatch {
public:
    struct Signal {
        CSettlingFilter* filter = nullptr;
        double value = 0.0;
        std::uint32_t addedAt = 0;        // tick
        std::uint32_t lastArrival = 0;    // tick of the last counted value
        bool hasArrived = false;          // a value was counted since the start
        int counted = 0;                  // since the start
        int status = NPreProcessor::None; // None, Settled, NotSettled or NoData; a start leaves it as it is
    };

    CSettlingWatch(CWnd* owner, CEvent* done, int* status);
    // Takes the lock itself. While the host closes it then stops the thread, which needs the lock: destroy
    // without holding it.
    ~CSettlingWatch() override;

    void RequestNotification() override KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // 1 begins or begins again, also after an explicit halt: the results' filters start over, for every watch
    // that shares them. 0 aborts without a report.
    void Start(int on) override KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Judges the watch after a wake-up of the thread; true when it is no longer working. Reports when it
    // finishes and was asked to.
    virtual bool Evaluate(bool newData) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // The tick counter wrapped.
    virtual void ResetTicks() KALVIO_NEEDS_PREPROCESSOR_LOCK;

    // 1, or 0 when the filter could not be made.
    int AddSignal(int resultID, int detector) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Also resumes after an explicit halt.
    void RemoveAllSignals() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Where the watch list keeps it.
    void SetPlace(std::size_t place) { m_place = place; }
    [[nodiscard]] std::size_t Place() const { return m_place; }
    [[nodiscard]] NPreProcessor::EResult State() const KALVIO_NEEDS_PREPROCESSOR_LOCK { return m_state; }
    [[nodiscard]] const std::vector<Signal>& Signals() const KALVIO_NEEDS_PREPROCESSOR_LOCK {
        return m_signals;
    }

protected:
    // The settling judgement without the report; for a watch that builds on it.
    bool EvaluateSettling(bool newData) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    void StartSettling() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Removes the signals; who halted goes on halting.
    void DropSignals() KALVIO_NEEDS_PREPROCESSOR_LOCK;

    NPreProcessor::EResult m_state KALVIO_UNDER_PREPROCESSOR_LOCK = NPreProcessor::None;

private:
    void JudgeSignals() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    void Count(Signal& signal) const KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Settled, silent, or given up on, in this order; true unless it is silent or still open. A result that
    // has not arrived in this run is measured from the start, or from its addition when that came later.
    bool Decide(Signal& signal) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    std::uint32_t m_longestSettlingTime KALVIO_UNDER_PREPROCESSOR_LOCK = 0; // ms, of the filters at the start
    std::uint32_t m_startTick KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
    bool m_settlingTimeOver KALVIO_UNDER_PREPROCESSOR_LOCK = false;
    std::vector<Signal> m_signals KALVIO_UNDER_PREPROCESSOR_LOCK;
    std::size_t m_place = 0;
};
