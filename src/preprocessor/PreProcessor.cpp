#include "preprocessor/PreProcessor.h"

#include "host/HostApplication.h"
#include "preprocessor/SettlingWatch.h"
#include "preprocessor/thread/PreProcessorState.h"

#include <new>

namespace kalvio::preprocessor {

namespace {

// The run token of the calling thread when it is the pre-processor's own.
thread_local PreProcessorThread::Run* t_run = nullptr;

void ReadTick() {
    State& state = GetState();
    const LockGuard guard(Lock());
    state.lastTick = GetTickCount();
}

void RunThread(PreProcessorThread::Run& run) {
    t_run = &run;
    NPreProcessor::PreProcThreadProc(nullptr);
}

ListIndex ToListIndex(int signalled) {
    constexpr int kListCount = 2;
    return signalled < kListCount ? static_cast<ListIndex>(signalled) : ListIndex::TimedOut;
}

void HandleTickWrap(State& state, std::uint32_t now) KALVIO_NEEDS_PREPROCESSOR_LOCK {
    if (now < state.lastTick) {
        state.watches.ForEach([](CSettlingWatch& watch)
                                  KALVIO_NEEDS_PREPROCESSOR_LOCK { watch.ResetTicks(); });
    }
}

// The taken flag says that this wake-up brought a value; the list that is not stepped must not show an old
// one.
void StepFilters(const SignalList& signalled, const SignalList& other) KALVIO_NEEDS_PREPROCESSOR_LOCK {
    signalled.ForEach([](CSettlingFilter& filter) KALVIO_NEEDS_PREPROCESSOR_LOCK { filter.Step(); });
    other.ForEach([](CSettlingFilter& filter) KALVIO_NEEDS_PREPROCESSOR_LOCK { filter.ClearTaken(); });
}

} // namespace

// Never destroyed, as the state that it guards.
CMutex& Lock() {
    static CMutex& lock = *new CMutex;
    return lock;
}

bool StartThread() {
    State& state = GetState();
    return !state.threaded.load() || state.thread.Start(RunThread);
}

void StopThread() {
    GetState().thread.Stop(kStopWaitMs);
}

bool IsThreadRunning() {
    return GetState().thread.IsRunning();
}

void SetThreaded(bool on) {
    GetState().threaded.store(on);
    if (!on) {
        StopThread();
        ReadTick(); // as the thread does when it begins
    }
}

void AddWatch(CSettlingWatch* watch) {
    GetState().watches.Add(watch);
}

void RemoveWatch(CSettlingWatch* watch) {
    GetState().watches.Remove(watch);
}

CSettlingFilter* FindOrCreateFilter(int resultID, int detector) {
    SignalList& list = GetState().ListOf(resultID);
    if (CSettlingFilter* found = list.Find(CSettlingFilter::MakeKey(resultID, detector)); found != nullptr) {
        found->AddReference();
        return found;
    }
    try {
        auto filter = std::make_unique<CSettlingFilter>(resultID, detector);
        filter->LoadParameters();
        CSettlingFilter* const added = list.Append(std::move(filter));
        if (GetState().gate.IsEmpty()) {
            list.FreeReplacedTables();
        }
        return added;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void ReleaseFilter(CSettlingFilter* filter) {
    if (filter->DropReference() == 0) {
        GetState().ListOf(filter->ResultId()).Remove(filter);
    }
}

std::uint32_t DataTimeout(int resultID) {
    return GetState().ListOf(resultID).DataTimeout();
}

std::uint32_t LastTick() {
    return GetState().lastTick;
}

void WakeUp(ListIndex list) {
    State& state = GetState();
    const LockGuard guard(Lock());
    if (state.gate.IsClosed()) {
        if (list != ListIndex::TimedOut) {
            (list == ListIndex::Single ? state.single : state.block).NoteLostWakeUp();
        }
        return;
    }
    const std::uint32_t now = GetTickCount();
    HandleTickWrap(state, now);
    state.lastTick = now;
    const bool newData = list != ListIndex::TimedOut;
    if (newData) {
        const bool single = list == ListIndex::Single;
        StepFilters(single ? state.single : state.block, single ? state.block : state.single);
    }
    state.watches.ForEach([newData](CSettlingWatch& watch)
                              KALVIO_NEEDS_PREPROCESSOR_LOCK { watch.Evaluate(newData); });
}

bool RunPendingWakeUp() {
    State& state = GetState();
    if (state.single.Event().TryTake()) {
        WakeUp(ListIndex::Single);
    } else if (state.block.Event().TryTake()) {
        WakeUp(ListIndex::Block);
    } else {
        return false;
    }
    return true;
}

} // namespace kalvio::preprocessor

namespace NPreProcessor {

using namespace kalvio::preprocessor;
using kalvio::PreProcessorThread;

unsigned PreProcThreadProc(void*) {
    PreProcessorThread::Run* const run = t_run;
    if (run == nullptr) {
        return 0;
    }
    State& state = GetState();
    CMultiLock signals({&state.single.Event(), &state.block.Event(), &run->stop});
    GetHostApplication().SetThreadName("Preproc");
    ReadTick();
    while (run->on.load()) {
        const int signalled = signals.Wait(kBlockListTimeoutMs);
        if (run->on.load()) {
            WakeUp(ToListIndex(signalled));
        }
    }
    return 0;
}

} // namespace NPreProcessor
