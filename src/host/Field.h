#pragma once

// A document field that one thread writes and others read without a lock.

#include <atomic>

namespace kalvio {

// Reads and writes are single relaxed operations: a reader sees an old or the new value, never half of one.
template<typename T>
class Field {
public:
    Field() = default;
    explicit Field(T value) : m_value(value) {}
    Field(const Field& other) : m_value(other.Get()) {}
    Field& operator=(const Field& other) {
        Set(other.Get());
        return *this;
    }
    Field& operator=(T value) {
        Set(value);
        return *this;
    }
    operator T() const { return Get(); }
    [[nodiscard]] T Get() const { return m_value.load(std::memory_order_relaxed); }
    void Set(T value) { m_value.store(value, std::memory_order_relaxed); }

private:
    std::atomic<T> m_value{};
};

} // namespace kalvio
