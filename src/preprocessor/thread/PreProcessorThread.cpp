#include "preprocessor/thread/PreProcessorThread.h"

#include <utility>

namespace kalvio {

bool PreProcessorThread::Start(Body body) {
    const LockGuard guard(m_lock);
    if (m_thread == nullptr) {
        m_run = std::make_shared<Run>();
        m_thread = Thread::Start([body, run = m_run] { body(*run); });
    }
    return m_thread != nullptr;
}

void PreProcessorThread::Stop(std::uint32_t milliseconds) {
    std::unique_ptr<Thread> ending;
    {
        const LockGuard guard(m_lock);
        if (m_thread == nullptr) {
            return;
        }
        m_run->on.store(false);
        m_run->stop.SetEvent();
        ending = std::move(m_thread);
    }
    ending->WaitForEnd(milliseconds);
}

bool PreProcessorThread::IsRunning() const {
    const LockGuard guard(m_lock);
    return m_thread != nullptr;
}

} // namespace kalvio
