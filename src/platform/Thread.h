#pragma once

// Worker threads that are waited for up to a time and then abandoned, never killed.

#include "platform/Export.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace kalvio {

// Waited for and destroyed by one owner at a time; IsCurrent may be asked on any thread.
class KALVIO_API Thread {
public:
    // Starts a thread; null when the system gives none. The body must not throw.
    static std::unique_ptr<Thread> Start(std::function<void()> body);

    ~Thread(); // abandons a thread that still runs

    // Waits up to that long (real time of the clock in force) for the body to return. True when it has,
    // and its thread-local objects are gone as well. False at once in the thread itself.
    bool WaitForEnd(std::uint32_t milliseconds);

    // True in the thread itself.
    [[nodiscard]] bool IsCurrent() const;

private:
    struct Shared;
    explicit Thread(std::shared_ptr<Shared> shared);
    std::shared_ptr<Shared> m_shared; // kept alive by the thread as well
};

// Names the calling thread for debuggers; 15 characters show.
KALVIO_API void SetCurrentThreadName(std::string_view name);

} // namespace kalvio
