#pragma once

// The settling watch: decides for a set of results whether they settled, did not settle or went silent.

#include "preprocessor/EResult.h"
#include "preprocessor/SettlingFilter.h"
#include "preprocessor/Watch.h"

#include <cstdint>
#include <vector>

// Guarded by the pre-processor lock, all of it. Registers itself in the watch list while it lives.
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

    void RequestNotification() override;
    // 1 begins or begins again, also after an explicit halt: the results' filters start over, for every watch
    // that shares them. 0 aborts without a report.
    void Start(int on) override;
    // Judges the watch after a wake-up of the thread; true when it is no longer working. Reports when it
    // finishes and was asked to.
    virtual bool Evaluate(bool newData);
    // The tick counter wrapped.
    virtual void ResetTicks();

    int AddSignal(int resultID, int detector); // 1, or 0 when the filter could not be made
    // Also resumes after an explicit halt.
    void RemoveAllSignals();
    // Where the watch list keeps it.
    void SetPlace(std::size_t place) { m_place = place; }
    [[nodiscard]] std::size_t Place() const { return m_place; }
    [[nodiscard]] NPreProcessor::EResult State() const { return m_state; }
    [[nodiscard]] const std::vector<Signal>& Signals() const { return m_signals; }

protected:
    // The settling judgement without the report; for a watch that builds on it.
    bool EvaluateSettling(bool newData);
    void StartSettling();
    // Removes the signals; who halted goes on halting.
    void DropSignals();

    NPreProcessor::EResult m_state = NPreProcessor::None;

private:
    void JudgeSignals();
    void Count(Signal& signal) const;
    // Settled, silent, or given up on, in this order; true unless it is silent or still open. A result that
    // has not arrived in this run is measured from the start, or from its addition when that came later.
    bool Decide(Signal& signal);

    std::uint32_t m_longestSettlingTime = 0; // ms, of the filters at the start
    std::uint32_t m_startTick = 0;
    bool m_settlingTimeOver = false;
    std::vector<Signal> m_signals;
    std::size_t m_place = 0;
};
