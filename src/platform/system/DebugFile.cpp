#include "platform/DebugFile.h"

#include "platform/Sync.h"

#include <utility>

namespace {

struct DebugFileState {
    CCriticalSection lock; // recursive, so that a sink may itself write a line
    std::function<void(const CString&)> sink KALVIO_GUARDED_BY(lock);
};

DebugFileState& State() {
    // Never destroyed: an abandoned thread may still trace while the process ends.
    static DebugFileState& state = *new DebugFileState;
    return state;
}

} // namespace

void CDebugFile::Write(const CString& line) {
    DebugFileState& state = State();
    const kalvio::LockGuard guard(state.lock);
    if (state.sink) {
        state.sink(line);
    }
}

void CDebugFile::SetSink(std::function<void(const CString& line)> sink) {
    DebugFileState& state = State();
    const kalvio::LockGuard guard(state.lock);
    state.sink = std::move(sink);
}

void TraceError(const CString& caption, const CString& detail) {
    CDebugFile::Write(detail.empty() ? caption + "\n" : caption + ": " + detail + "\n");
}
