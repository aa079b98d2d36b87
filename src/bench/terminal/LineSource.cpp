#include "bench/terminal/LineSource.h"

#include "bench/terminal/Interrupt.h"

#include <deque>
#include <mutex>
#include <utility>

namespace kalvio::bench {

struct LineSource::Shared {
    explicit Shared(std::istream& stream) : in(stream) {}

    void Read() {
        std::string line;
        while (std::getline(in, line)) {
            const std::scoped_lock guard(lock);
            lines.push_back(std::move(line));
        }
        const std::scoped_lock guard(lock);
        ended = true;
    }

    std::istream& in; // the reading thread alone
    std::mutex lock;  // guards the rest
    std::deque<std::string> lines;
    bool started = false;
    bool ended = false;
};

LineSource::LineSource(std::istream& in) : m_shared(std::make_shared<Shared>(in)) {}

void LineSource::Start() {
    if (std::exchange(m_shared->started, true))
        return;
    // Nothing can be read without a thread; the input then counts as ended.
    m_shared->ended = Thread::Start([shared = m_shared] { shared->Read(); }) == nullptr;
}

std::optional<std::string> LineSource::TryTake() {
    const std::scoped_lock guard(m_shared->lock);
    Start();
    if (m_shared->lines.empty())
        return std::nullopt;
    std::string line = std::move(m_shared->lines.front());
    m_shared->lines.pop_front();
    return line;
}

bool LineSource::IsAtEnd() {
    const std::scoped_lock guard(m_shared->lock);
    return m_shared->ended && m_shared->lines.empty();
}

std::optional<std::string> LineSource::Take(const std::function<void()>& turn) {
    while (!IsInterrupted()) {
        if (std::optional<std::string> line = TryTake())
            return line;
        if (IsAtEnd())
            return std::nullopt;
        turn();
    }
    return std::nullopt;
}

} // namespace kalvio::bench
