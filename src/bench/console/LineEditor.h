#pragma once

// Lines typed on a terminal, with editing, a history and completion.

#include "bench/console/NameCompletion.h"

#include <functional>
#include <memory>
#include <string>

namespace kalvio::bench {

// What the editor asks of the program around it.
struct LineEditorHooks {
    std::function<void()> turn; // again and again while nothing is typed
    std::function<bool()> isInterrupted;
    std::function<Completion(std::string_view beforeCursor)> complete;
};

enum class LineEnd {
    Entered,
    Interrupted, // Ctrl-C: what was typed is given up
    Closed,      // the end of input
};

// User-interface thread. The terminal is the process's standard input and output; between two lines it is in
// the state that it was found in.
class LineEditor {
public:
    LineEditor(int keyboard, std::string prompt, LineEditorHooks hooks);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    // Shows the prompt and reads a line, which joins the history.
    LineEnd Read(std::string& line);

private:
    struct Session;
    std::unique_ptr<Session> m_session;
};

} // namespace kalvio::bench
