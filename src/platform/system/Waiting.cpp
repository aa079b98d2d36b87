#include "platform/system/Waiting.h"

#include <array>

namespace kalvio {

namespace {

constexpr unsigned kWordBits = 12;
constexpr std::size_t kWords = std::size_t{1} << kWordBits;

struct Place {
    std::atomic<std::uint32_t> word{0};
    std::atomic<std::uint32_t> waiters{0}; // that sleep on the word
    std::atomic<std::uint32_t> shared{0};  // that sleep on the shared word and care for this place
};

// Plain atomics without a destructor, so that an abandoned thread may wait and wake until the process is
// gone.
constinit std::array<Place, kWords> g_places{};
constinit std::atomic<std::uint32_t> g_sharedWord{0};
constinit std::atomic<std::uint32_t> g_sharedWaiters{0};

Place& PlaceOf(const void* address) {
    constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
    const auto value = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address));
    return g_places[static_cast<std::size_t>(value * kGoldenRatio >> (64U - kWordBits))];
}

void Raise(std::atomic<std::uint32_t>& word) {
    word.fetch_add(1);
    WakeWaiters(word);
}

} // namespace

WaiterCount::WaiterCount(std::span<const void* const> addresses)
    : m_addresses(addresses), m_word(addresses.size() == 1 ? PlaceOf(addresses[0]).word : g_sharedWord) {
    if (m_addresses.size() == 1) {
        PlaceOf(m_addresses[0]).waiters.fetch_add(1);
        return;
    }
    g_sharedWaiters.fetch_add(1);
    for (const void* address : m_addresses) {
        PlaceOf(address).shared.fetch_add(1);
    }
}

WaiterCount::~WaiterCount() {
    if (m_addresses.size() == 1) {
        PlaceOf(m_addresses[0]).waiters.fetch_sub(1);
        return;
    }
    g_sharedWaiters.fetch_sub(1);
    for (const void* address : m_addresses) {
        PlaceOf(address).shared.fetch_sub(1);
    }
}

void Announce(const void* address) {
    Place& place = PlaceOf(address);
    if (place.waiters.load() != 0) {
        Raise(place.word);
    }
    if (place.shared.load() != 0) {
        Raise(g_sharedWord);
    }
}

void WakeAllWaiters() {
    for (Place& place : g_places) {
        if (place.waiters.load() != 0) {
            Raise(place.word);
        }
    }
    if (g_sharedWaiters.load() != 0) {
        Raise(g_sharedWord);
    }
}

} // namespace kalvio
