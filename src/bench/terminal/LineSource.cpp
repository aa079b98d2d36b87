#include "bench/terminal/LineSource.h"

#include "bench/terminal/Interrupt.h"

#include <array>
#include <deque>
#include <mutex>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace kalvio::bench {

struct LineSource::Shared {
    Shared(std::istream& stream, int keyboardDescriptor) : in(stream), keyboard(keyboardDescriptor) {}

    void Read() {
        std::string line;
        while (std::getline(in, line)) {
            const std::scoped_lock guard(lock);
            lines.push_back(std::move(line));
        }
        const std::scoped_lock guard(lock);
        ended = true;
    }

    // Takes what was typed so far.
    void ReadKeyboard() {
        pollfd waiting{keyboard, POLLIN, 0};
        std::array<char, 0x400> part{};
        while (!ended && poll(&waiting, 1, 0) > 0) {
            const ssize_t count = read(keyboard, part.data(), part.size());
            ended = count <= 0;
            for (const char c : std::string_view(part.data(), ended ? 0 : static_cast<std::size_t>(count))) {
                if (c == '\n') {
                    lines.push_back(std::exchange(typed, {}));
                } else {
                    typed += c;
                }
            }
        }
    }

    std::istream& in; // the reading thread alone
    const int keyboard;
    std::mutex lock; // guards the rest
    std::deque<std::string> lines;
    std::string typed; // of the line that is not at its end
    bool started = false;
    bool ended = false;
};

LineSource::LineSource(std::istream& in, int keyboard) : m_shared(std::make_shared<Shared>(in, keyboard)) {}

void LineSource::Start() {
    if (std::exchange(m_shared->started, true)) {
        return;
    }
    // Nothing can be read without a thread; the input then counts as ended.
    m_shared->ended = Thread::Start([shared = m_shared] { shared->Read(); }) == nullptr;
}

std::optional<std::string> LineSource::TryTake() {
    const std::scoped_lock guard(m_shared->lock);
    if (m_shared->keyboard == kNoKeyboard) {
        Start();
    } else {
        m_shared->ReadKeyboard();
    }
    if (m_shared->lines.empty()) {
        return std::nullopt;
    }
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
        if (std::optional<std::string> line = TryTake()) {
            return line;
        }
        if (IsAtEnd()) {
            return std::nullopt;
        }
        turn();
    }
    return std::nullopt;
}

} // namespace kalvio::bench
