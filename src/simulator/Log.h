#pragma once

// A record of the newest events; the oldest fall out, so that a unit may run for days.

#include <cstddef>
#include <deque>
#include <utility>
#include <vector>

namespace kalvio::simulator {

inline constexpr std::size_t kLogLimit = 100000;

template<typename Event>
class Log {
public:
    void Add(Event event) {
        if (m_events.size() == kLogLimit) {
            m_events.pop_front();
        }
        m_events.push_back(std::move(event));
    }
    void Clear() { m_events.clear(); }
    [[nodiscard]] std::vector<Event> Copy() const { return {m_events.begin(), m_events.end()}; }

private:
    std::deque<Event> m_events;
};

} // namespace kalvio::simulator
