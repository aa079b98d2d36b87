#pragma once

// Which objects of a kind exist just now, so that they can be told of something or found.

#include "platform/Sync.h"

#include <algorithm>
#include <vector>

namespace kalvio {

// Objects add themselves when they are made and remove themselves when they go. Any thread.
// Calls into an object are its own thread's business: the lock is not held over them.
template<typename T>
class LiveObjects {
public:
    void Add(T* object) {
        const LockGuard hold(m_lock);
        m_objects.push_back(object);
    }
    void Remove(T* object) {
        const LockGuard hold(m_lock);
        std::erase(m_objects, object);
    }
    [[nodiscard]] bool Contains(const T* object) const {
        const LockGuard hold(m_lock);
        return std::find(m_objects.begin(), m_objects.end(), object) != m_objects.end();
    }
    [[nodiscard]] std::vector<T*> All() const {
        const LockGuard hold(m_lock);
        return m_objects;
    }

private:
    mutable Mutex m_lock;
    std::vector<T*> m_objects KALVIO_GUARDED_BY(m_lock);
};

} // namespace kalvio
