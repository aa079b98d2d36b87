#pragma once

// Holds a lock for its lifetime.

#include "platform/ThreadAnnotations.h"

namespace kalvio {

template<typename Lock>
class KALVIO_SCOPED_CAPABILITY Holding {
public:
    explicit Holding(Lock& lock) KALVIO_ACQUIRE(lock) : m_lock(lock) { m_lock.lock(); }
    ~Holding() KALVIO_RELEASE() { m_lock.unlock(); }
    Holding(const Holding&) = delete;
    Holding& operator=(const Holding&) = delete;

private:
    Lock& m_lock;
};

} // namespace kalvio
