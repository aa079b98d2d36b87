#include "platform/Thread.h"

#include "platform/system/Waiting.h"

#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

namespace kalvio {

struct Thread::Shared {
    std::function<void()> body; // used by the thread alone
    std::atomic<bool> ended{false};
    std::thread handle; // used by the owner alone
    static thread_local const Shared* current;
};

thread_local const Thread::Shared* Thread::Shared::current = nullptr;

Thread::Thread(std::shared_ptr<Shared> shared) : m_shared(std::move(shared)) {}

std::unique_ptr<Thread> Thread::Start(std::function<void()> body) {
    auto shared = std::make_shared<Shared>();
    shared->body = std::move(body);
    // The thread's own reference keeps the state alive when the owner abandons it.
    const auto run = [shared] {
        Shared::current = shared.get();
        shared->body();
        shared->body = nullptr; // what the body holds goes before the end is told
        shared->ended.store(true);
        Announce(shared.get());
    };
    try {
        shared->handle = std::thread(run);
    } catch (const std::system_error&) {
        return nullptr;
    }
    return std::unique_ptr<Thread>(new Thread(std::move(shared)));
}

Thread::~Thread() {
    if (!m_shared->handle.joinable()) {
        return;
    }
    if (m_shared->ended.load() && !IsCurrent()) {
        m_shared->handle.join();
    } else {
        m_shared->handle.detach();
    }
}

bool Thread::WaitForEnd(std::uint32_t milliseconds) {
    if (IsCurrent() || !WaitUntil(
                           m_shared.get(), [this] { return m_shared->ended.load(); }, milliseconds)) {
        return false;
    }
    if (m_shared->handle.joinable()) {
        m_shared->handle.join(); // only the thread's last instructions are left
    }
    return true;
}

bool Thread::IsCurrent() const {
    return Shared::current == m_shared.get();
}

} // namespace kalvio
