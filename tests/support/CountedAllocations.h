#pragma once

// Replaces operator new by one that counts, for the whole test program and the library in it. To be included
// by exactly one source of a program. Under the thread sanitizer, whose own cannot be replaced, it counts
// nothing.

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace kalvio::test {

inline std::atomic<std::size_t> allocationCount{0};

} // namespace kalvio::test

#ifndef KALVIO_THREAD_SANITIZED

// Not inlined, or the compiler pairs one half with the inside of the other and warns of a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++kalvio::test::allocationCount;
    if (void* memory = std::malloc(size != 0 ? size : 1); memory != nullptr) {
        return memory;
    }
    throw std::bad_alloc();
}

// Goes with the operator delete below, which a sanitizer would otherwise pair with its own.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++kalvio::test::allocationCount;
    return std::malloc(size != 0 ? size : 1);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

#endif
