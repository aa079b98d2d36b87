#pragma once

// Reads lines and runs them, on a terminal with a prompt and editing.

#include "bench/commands/ScriptExecution.h"
#include "bench/console/LineEditor.h"

#include <memory>
#include <optional>
#include <string>

namespace kalvio::bench {

// User-interface thread.
class Console {
public:
    Console(BenchApplication& application, ScriptExecution& execution, Terminal& terminal);

    // Until quit, the end of input, or a request to end the program; a faulty line does not end it. On a
    // terminal Ctrl-C ends only what is under way, else all.
    void Run();

private:
    std::optional<std::string> NextLine();
    // False after quit.
    bool RunLine(const std::string& text, int line);
    bool Quit(const std::string& rest, int line);
    bool Help(const std::string& rest, int line);
    bool Names(const std::string& rest, int line);
    void Show(int line, const std::string& text, const char* member, const std::string& json);
    void TellAt(int line, const std::string& message);
    // On a terminal: what is under way has ended by Ctrl-C, and the next line is awaited.
    void ForgetInterrupt();

    BenchApplication& m_application;
    ScriptExecution& m_execution;
    Terminal& m_terminal;
    std::unique_ptr<LineEditor> m_editor; // null: the lines come from no terminal
};

} // namespace kalvio::bench
