#pragma once

// The message queues of the threads and the table of windows, behind Window.h. One process-wide lock guards
// all of it; it is never held while a window's handler runs.

#include "platform/Window.h"

namespace kalvio {

// Enters a new window of the calling thread.
WindowHandle RegisterWindow(CWnd& window);

// Takes a window out, with its messages, its timers and the focus. Who waits for an answer of it gets 0.
void UnregisterWindow(WindowHandle window);

// Drops a window's messages, timers and focus; the window stays. Who waits for an answer of it gets 0.
void DiscardMessages(WindowHandle window);

// Whether a window of the calling thread with this handle exists.
[[nodiscard]] bool IsOwnWindow(WindowHandle window);

// Handled by the queue itself, on the window's thread: lParam points to a std::function<void(CWnd&)>.
inline constexpr unsigned kMessageCall = WM_APP + 0x3FFF;

// Counts one more handler on the calling thread's stack while it lives.
class RunningHandler {
public:
    RunningHandler();
    ~RunningHandler();
    RunningHandler(const RunningHandler&) = delete;
    RunningHandler& operator=(const RunningHandler&) = delete;
};

// How many handlers of messages and acts stand on the calling thread's stack: more than one when one of them
// lets messages run.
[[nodiscard]] int HandlersRunning();

// The keyboard focus of the window's thread.
void TakeFocus(WindowHandle window);
bool OwnsFocus(WindowHandle window);

} // namespace kalvio
