#pragma once

// Lines that a user types. The program goes on measuring meanwhile: a stream is read by a thread of its own;
// a keyboard is looked at without waiting, so that nothing is taken from whoever reads it next.

#include "bench/terminal/Terminal.h"
#include "platform/Thread.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kalvio::bench {

// Any thread. The reading thread starts with the first wish for a line and may be left behind in a read
// when the program ends; what it touches stays alive with it.
class LineSource {
public:
    // The stream must outlive the process's use of it when a read may still be under way. With a keyboard the
    // stream is left alone.
    explicit LineSource(std::istream& in, int keyboard = kNoKeyboard);

    // The next line, if one has come.
    std::optional<std::string> TryTake();
    // Whether the input has ended and every line was taken.
    [[nodiscard]] bool IsAtEnd();
    // Waits for a line and calls `turn` meanwhile; none at the end of input or after Ctrl-C.
    std::optional<std::string> Take(const std::function<void()>& turn);

private:
    struct Shared;
    void Start();

    std::shared_ptr<Shared> m_shared;
};

} // namespace kalvio::bench
