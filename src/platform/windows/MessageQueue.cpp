#include "platform/windows/MessageQueue.h"

#include "platform/Sync.h"
#include "platform/system/Waiting.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace kalvio {

namespace {

// What the sender of a message waits for. The result is written before `done`.
struct Answer {
    std::atomic<bool> done{false};
    LRESULT result = 0;
    const void* sender = nullptr; // the address that the sender waits for: its own queue's

    void Finish() {
        const void* const waits = sender; // the sender may be gone once it is done
        done.store(true);
        Announce(waits);
    }
};

struct QueuedMessage {
    std::uint64_t number = 0; // counts up within a queue
    WindowHandle window = WindowHandle::None;
    unsigned message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    std::shared_ptr<Answer> answer; // null when nobody waits
};

struct Timer {
    WindowHandle window = WindowHandle::None;
    unsigned id = 0;
    std::uint32_t period = 0; // milliseconds
    std::uint32_t started = 0;
};

// One thread's queue. Guarded by the table's lock.
struct MessageQueue {
    std::deque<QueuedMessage> messages;
    std::vector<Timer> timers;
    std::uint64_t lastNumber = 0;
    WindowHandle focus = WindowHandle::None;
    bool threadEnded = false; // nothing is dispatched any more
};

struct WindowEntry {
    CWnd* window = nullptr;
    std::shared_ptr<MessageQueue> queue;
};

struct WindowTable {
    Mutex lock;
    std::map<WindowHandle, WindowEntry> windows KALVIO_GUARDED_BY(lock);
    std::uint32_t lastHandle KALVIO_GUARDED_BY(lock) = 0;
};

WindowTable& Table() {
    // Never destroyed: an abandoned thread may still post a message while the process ends.
    static WindowTable& table = *new WindowTable;
    return table;
}

// Drops the messages that fit and answers 0 for them.
template<typename Fits>
void DropMessages(MessageQueue& queue, Fits fits) KALVIO_REQUIRES(Table().lock) {
    std::erase_if(queue.messages, [&](const QueuedMessage& queued) {
        const bool drop = fits(queued);
        if (drop && queued.answer) {
            queued.answer->Finish();
        }
        return drop;
    });
}

// Owns the calling thread's queue and closes it when the thread ends, so that nobody waits for an answer
// that can no longer come.
class ThreadQueue {
public:
    ThreadQueue() : m_queue(std::make_shared<MessageQueue>()) {}
    ~ThreadQueue() {
        const LockGuard guard(Table().lock);
        m_queue->threadEnded = true;
        DropMessages(*m_queue, [](const QueuedMessage&) { return true; });
    }
    ThreadQueue(const ThreadQueue&) = delete;
    ThreadQueue& operator=(const ThreadQueue&) = delete;

    [[nodiscard]] const std::shared_ptr<MessageQueue>& Queue() const { return m_queue; }

private:
    std::shared_ptr<MessageQueue> m_queue;
};

thread_local int g_handlersRunning = 0;

const std::shared_ptr<MessageQueue>& OwnQueue() {
    thread_local ThreadQueue queue;
    return queue.Queue();
}

// The entry of a window that still has a thread, or null.
WindowEntry* FindEntry(WindowHandle window) KALVIO_REQUIRES(Table().lock) {
    auto& windows = Table().windows;
    const auto found = windows.find(window);
    return found != windows.end() && !found->second.queue->threadEnded ? &found->second : nullptr;
}

// Drops what belongs to a window.
void Discard(WindowHandle window) KALVIO_REQUIRES(Table().lock) {
    const WindowEntry* entry = FindEntry(window);
    if (entry == nullptr) {
        return;
    }
    MessageQueue& queue = *entry->queue;
    DropMessages(queue, [=](const QueuedMessage& queued) { return queued.window == window; });
    std::erase_if(queue.timers, [=](const Timer& timer) { return timer.window == window; });
    if (queue.focus == window) {
        queue.focus = WindowHandle::None;
    }
}

bool Enqueue(QueuedMessage message) {
    const void* receiver = nullptr;
    {
        const LockGuard guard(Table().lock);
        const WindowEntry* entry = FindEntry(message.window);
        if (entry == nullptr) {
            return false;
        }
        receiver = entry->queue.get();
        message.number = ++entry->queue->lastNumber;
        entry->queue->messages.push_back(std::move(message));
    }
    Announce(receiver);
    return true;
}

// The window when it belongs to the calling thread, which alone may destroy it.
CWnd* OwnWindow(WindowHandle window) {
    const LockGuard guard(Table().lock);
    const WindowEntry* entry = FindEntry(window);
    return entry != nullptr && entry->queue == OwnQueue() ? entry->window : nullptr;
}

// Answers 0 also when the handler throws, so that no sender is left waiting.
class Answering {
public:
    explicit Answering(std::shared_ptr<Answer> answer) : m_answer(std::move(answer)) {}
    ~Answering() {
        if (m_answer) {
            m_answer->Finish();
        }
    }
    Answering(const Answering&) = delete;
    Answering& operator=(const Answering&) = delete;

    void SetResult(LRESULT result) {
        if (m_answer) {
            m_answer->result = result;
        }
    }

private:
    std::shared_ptr<Answer> m_answer;
};

// What a window does with a message on its own thread.
LRESULT Deliver(CWnd& window, unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == kMessageCall) {
        (*reinterpret_cast<const std::function<void(CWnd&)>*>(lParam))(window);
        return 1;
    }
    const RunningHandler running;
    return window.OnMessage(message, wParam, lParam);
}

void Dispatch(const QueuedMessage& queued) {
    Answering answering(queued.answer);
    if (CWnd* window = OwnWindow(queued.window); window != nullptr) {
        answering.SetResult(Deliver(*window, queued.message, queued.wParam, queued.lParam));
    }
}

// Takes the first message that fits out of the calling thread's queue.
template<typename Fits>
std::optional<QueuedMessage> TakeMessage(Fits fits) {
    const LockGuard guard(Table().lock);
    auto& messages = OwnQueue()->messages;
    const auto found = std::find_if(messages.begin(), messages.end(), fits);
    if (found == messages.end()) {
        return std::nullopt;
    }
    std::optional<QueuedMessage> taken(std::move(*found));
    messages.erase(found);
    return taken;
}

bool IsDue(const Timer& timer, std::uint32_t now) {
    return now - timer.started >= timer.period;
}

std::vector<Timer>::iterator FindTimer(MessageQueue& queue, WindowHandle window, unsigned id)
    KALVIO_REQUIRES(Table().lock) {
    return std::find_if(queue.timers.begin(), queue.timers.end(),
                        [=](const Timer& timer) { return timer.window == window && timer.id == id; });
}

std::vector<Timer> DueTimers() {
    const std::uint32_t now = GetTickCount();
    const LockGuard guard(Table().lock);
    std::vector<Timer> due = OwnQueue()->timers;
    std::erase_if(due, [=](const Timer& timer) { return !IsDue(timer, now); });
    return due;
}

// Starts the timer's next period; false when it was killed or has been dispatched meanwhile.
bool RestartTimer(const Timer& timer) {
    const std::uint32_t now = GetTickCount();
    const LockGuard guard(Table().lock);
    MessageQueue& queue = *OwnQueue();
    const auto found = FindTimer(queue, timer.window, timer.id);
    if (found == queue.timers.end() || !IsDue(*found, now)) {
        return false;
    }
    found->started = now;
    return true;
}

std::uint32_t UntilNextTimer() {
    const std::uint32_t now = GetTickCount();
    const LockGuard guard(Table().lock);
    std::uint32_t left = kInfinite;
    for (const Timer& timer : OwnQueue()->timers) {
        left = std::min(left, IsDue(timer, now) ? 0 : timer.period - (now - timer.started));
    }
    return left;
}

// Dispatches one message that another thread waits for. Two threads that send to each other both go on.
bool DispatchAwaited() {
    const auto taken = TakeMessage([](const QueuedMessage& queued) { return queued.answer != nullptr; });
    if (taken) {
        Dispatch(*taken);
    }
    return taken.has_value();
}

} // namespace

RunningHandler::RunningHandler() {
    ++g_handlersRunning;
}

RunningHandler::~RunningHandler() {
    --g_handlersRunning;
}

int HandlersRunning() {
    return g_handlersRunning;
}

WindowHandle RegisterWindow(CWnd& window) {
    WindowTable& table = Table();
    const std::shared_ptr<MessageQueue>& queue = OwnQueue();
    const LockGuard guard(table.lock);
    const auto handle = static_cast<WindowHandle>(++table.lastHandle);
    table.windows[handle] = {&window, queue};
    return handle;
}

void UnregisterWindow(WindowHandle window) {
    // In one step, so that no message comes in between that nobody would answer.
    const LockGuard guard(Table().lock);
    Discard(window);
    Table().windows.erase(window);
}

void DiscardMessages(WindowHandle window) {
    const LockGuard guard(Table().lock);
    Discard(window);
}

bool IsOwnWindow(WindowHandle window) {
    return OwnWindow(window) != nullptr;
}

void TakeFocus(WindowHandle window) {
    const LockGuard guard(Table().lock);
    if (const WindowEntry* entry = FindEntry(window); entry != nullptr) {
        entry->queue->focus = window;
    }
}

bool OwnsFocus(WindowHandle window) {
    const LockGuard guard(Table().lock);
    const WindowEntry* entry = FindEntry(window);
    return entry != nullptr && entry->queue->focus == window;
}

bool PostToWindow(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam) {
    return Enqueue({0, window, message, wParam, lParam, nullptr});
}

LRESULT SendToWindow(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam) {
    if (CWnd* own = OwnWindow(window); own != nullptr) {
        return Deliver(*own, message, wParam, lParam);
    }
    const auto answer = std::make_shared<Answer>();
    answer->sender = OwnQueue().get();
    if (!Enqueue({0, window, message, wParam, lParam, answer})) {
        return 0;
    }
    const auto answered = [&] {
        while (!answer->done.load() && DispatchAwaited()) {
        }
        return answer->done.load();
    };
    WaitUntil(answer->sender, answered, kInfinite);
    return answer->result;
}

bool NotifyWindow(WindowHandle window, unsigned message, WPARAM wParam, LPARAM lParam) {
    if (CWnd* own = OwnWindow(window); own != nullptr) {
        Deliver(*own, message, wParam, lParam);
        return true;
    }
    return PostToWindow(window, message, wParam, lParam);
}

int PumpMessages() {
    std::uint64_t last = 0;
    {
        const LockGuard guard(Table().lock);
        last = OwnQueue()->lastNumber;
    }
    int dispatched = 0;
    const auto isOld = [=](const QueuedMessage& queued) { return queued.number <= last; };
    while (const auto taken = TakeMessage(isOld)) {
        Dispatch(*taken);
        ++dispatched;
    }
    for (const Timer& timer : DueTimers()) {
        if (RestartTimer(timer)) {
            Dispatch({0, timer.window, WM_TIMER, timer.id, 0, nullptr});
            ++dispatched;
        }
    }
    return dispatched;
}

int WaitAndPumpMessages(std::uint32_t milliseconds) {
    int dispatched = 0;
    const auto pumped = [&] {
        dispatched = PumpMessages();
        return dispatched > 0;
    };
    const void* const own = OwnQueue().get();
    WaitUntil(std::span(&own, 1), pumped, milliseconds, UntilNextTimer);
    return dispatched;
}

void SetTimer(WindowHandle window, unsigned id, std::uint32_t milliseconds) {
    const void* owner = nullptr;
    {
        const std::uint32_t now = GetTickCount();
        const LockGuard guard(Table().lock);
        const WindowEntry* entry = FindEntry(window);
        if (entry == nullptr) {
            return;
        }
        MessageQueue& queue = *entry->queue;
        owner = &queue;
        auto timer = FindTimer(queue, window, id);
        if (timer == queue.timers.end()) {
            timer = queue.timers.insert(timer, Timer{window, id});
        }
        timer->period = std::max(milliseconds, kShortestTimer);
        timer->started = now;
    }
    Announce(owner);
}

void KillTimer(WindowHandle window, unsigned id) {
    const LockGuard guard(Table().lock);
    const WindowEntry* entry = FindEntry(window);
    if (entry == nullptr) {
        return;
    }
    MessageQueue& queue = *entry->queue;
    if (const auto timer = FindTimer(queue, window, id); timer != queue.timers.end()) {
        queue.timers.erase(timer);
    }
}

} // namespace kalvio
