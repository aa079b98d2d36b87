#include "preprocessor/SettlingWatch.h"

#include "host/HostApplication.h"
#include "preprocessor/PreProcessor.h"

#include <algorithm>
#include <mutex>
#include <new>

using namespace kalvio::preprocessor;

namespace {

constexpr int kFewestCounted = 2; // fresh values before a result may count as settled

} // namespace

CSettlingWatch::CSettlingWatch(CWnd* owner, CEvent* done, int* status) : CWatch(owner, done, status) {
    const kalvio::LockGuard guard(Lock());
    AddWatch(this);
}

CSettlingWatch::~CSettlingWatch() {
    {
        const kalvio::LockGuard guard(Lock());
        RemoveAllSignals();
        RemoveWatch(this);
    }
    if (GetHostApplication().closing.load()) {
        StopThread();
    }
}

int CSettlingWatch::AddSignal(int resultID, int detector) {
    try {
        if (m_signals.size() == m_signals.capacity()) {
            m_signals.reserve(2 * m_signals.size() + 1);
        }
    } catch (const std::bad_alloc&) {
        return 0;
    }
    CSettlingFilter* filter = FindOrCreateFilter(resultID, detector);
    if (filter == nullptr) {
        return 0;
    }
    m_signals.push_back({.filter = filter, .addedAt = kalvio::GetTickCount()});
    return 1;
}

void CSettlingWatch::RemoveAllSignals() {
    DropSignals();
    ResumeNotifications();
}

void CSettlingWatch::DropSignals() {
    const bool halted = AreNotificationsHalted();
    HaltNotifications();
    for (; !m_signals.empty(); m_signals.pop_back()) {
        ReleaseFilter(m_signals.back().filter);
    }
    m_state = NPreProcessor::None;
    if (!halted) {
        ResumeNotifications();
    }
}

void CSettlingWatch::RequestNotification() {
    if (m_state == NPreProcessor::Working) {
        m_notifyWhenFinished = true;
    } else {
        Report(m_state, ReportForm::Post);
    }
}

void CSettlingWatch::Start(int on) {
    if (on != 0) {
        StartSettling();
    } else {
        m_state = NPreProcessor::Aborted;
    }
}

void CSettlingWatch::StartSettling() {
    StartThread(); // without a thread the watch stays working; the next start tries again
    m_longestSettlingTime = 0;
    for (Signal& signal : m_signals) {
        signal.value = 1.0;
        signal.counted = 0;
        signal.hasArrived = false;
        m_longestSettlingTime = std::max(m_longestSettlingTime, signal.filter->SettlingTime());
        signal.filter->Reset();
    }
    m_state = NPreProcessor::Working;
    m_notifyWhenFinished = false;
    m_settlingTimeOver = false;
    m_startTick = kalvio::GetTickCount();
    ResumeNotifications();
}

bool CSettlingWatch::Evaluate(bool newData) {
    if (m_state != NPreProcessor::Working) {
        return true;
    }
    const bool finished = EvaluateSettling(newData);
    if (finished && m_notifyWhenFinished) {
        Report(m_state, ReportForm::Send);
    }
    return finished;
}

bool CSettlingWatch::EvaluateSettling(bool newData) {
    if (m_state != NPreProcessor::Working) {
        return true;
    }
    m_settlingTimeOver = m_settlingTimeOver || LastTick() - m_startTick > m_longestSettlingTime;
    if (newData) {
        JudgeSignals();
    }
    return m_state != NPreProcessor::Working;
}

void CSettlingWatch::JudgeSignals() {
    std::size_t decided = 0;
    bool allStable = true;
    for (Signal& signal : m_signals) {
        Count(signal);
        if (m_settlingTimeOver && Decide(signal)) {
            ++decided;
            allStable = allStable && signal.status == NPreProcessor::Settled;
        }
    }
    if (decided == m_signals.size()) {
        m_state = allStable ? NPreProcessor::Settled : NPreProcessor::NotSettled;
    }
}

void CSettlingWatch::Count(Signal& signal) const {
    const std::uint32_t elapsed = LastTick() - m_startTick;
    if (signal.filter->WasTaken() && (m_settlingTimeOver || elapsed > signal.filter->SettlingTime())) {
        ++signal.counted;
        signal.lastArrival = LastTick();
        signal.hasArrived = true;
    }
}

bool CSettlingWatch::Decide(Signal& signal) {
    const CSettlingFilter& filter = *signal.filter;
    if (filter.IsStable() && signal.counted >= kFewestCounted) {
        signal.value = filter.Value(false);
        signal.status = NPreProcessor::Settled;
        return true;
    }
    const std::uint32_t sinceStart = std::min(LastTick() - m_startTick, LastTick() - signal.addedAt);
    const std::uint32_t silence = signal.hasArrived ? LastTick() - signal.lastArrival : sinceStart;
    if (silence > DataTimeout(filter.ResultId())) {
        m_state = NPreProcessor::NoData;
        signal.status = NPreProcessor::NoData;
        return false;
    }
    if (signal.counted > filter.GiveUpCount()) {
        signal.value = filter.Value(true);
        signal.status = NPreProcessor::NotSettled;
        return true;
    }
    return false;
}

void CSettlingWatch::ResetTicks() {
    for (Signal& signal : m_signals) {
        signal.addedAt = 0;
        signal.lastArrival = 0;
    }
    m_startTick = 0;
}
