#include "bench/console/Console.h"

#include "bench/commands/WithUnit.h"
#include "bench/console/ConsoleWords.h"
#include "bench/console/NameHelp.h"
#include "bench/console/NamePattern.h"
#include "bench/output/JsonOutput.h"
#include "bench/terminal/Interrupt.h"

#include <algorithm>

namespace kalvio::bench {

namespace {

constexpr int kOneLine = -1; // of JSON

// "rms", and "fft:" for "fft:N": the number is typed.
std::vector<std::string> ResultStems() {
    std::vector<std::string> stems = ResultNames();
    for (std::string& stem : stems) {
        stem = stem.substr(0, stem.find(':') == std::string::npos ? stem.size() : stem.find(':') + 1);
    }
    return stems;
}

CompletionWords WordsOf(const ScriptNames& names) {
    CompletionWords words;
    for (const ScriptTarget& target : names.All()) {
        words.names.emplace_back(target.entry->name);
    }
    words.starts = words.values = words.names;
    words.starts.insert(words.starts.end(), std::begin(kScriptWords), std::end(kScriptWords));
    words.starts.insert(words.starts.end(), std::begin(kConsoleWords), std::end(kConsoleWords));
    for (const std::string_view word : {kWordRead, kWordSource, kWordWithin}) {
        words.values.emplace_back(word);
    }
    words.results = ResultStems();
    words.sources = ChoiceWords("source");
    return words;
}

} // namespace

Console::Console(BenchApplication& application, ScriptExecution& execution, Terminal& terminal)
    : m_application(application), m_execution(execution), m_terminal(terminal) {
    if (terminal.keyboard == kNoKeyboard) {
        return;
    }
    m_editor = std::make_unique<LineEditor>(
        terminal.keyboard, "kalvio> ",
        LineEditorHooks{[this] { m_application.Host().Turn(); }, [] { return IsInterrupted(); },
                        [words = WordsOf(execution.Names())](std::string_view beforeCursor) {
                            return CompleteWord(beforeCursor, words);
                        }});
}

void Console::Run() {
    for (int line = 1; m_terminal.out; ++line) {
        const std::optional<std::string> text = NextLine();
        if (!text || !RunLine(*text, line)) {
            return;
        }
        ForgetInterrupt();
    }
}

std::optional<std::string> Console::NextLine() {
    if (m_editor == nullptr) {
        return m_application.Lines().Take([this] { m_application.Host().Turn(); });
    }
    std::string line;
    LineEnd end = LineEnd::Interrupted;
    while (end == LineEnd::Interrupted && !IsTerminated()) {
        m_terminal.out << std::flush;
        end = m_editor->Read(line);
        if (end == LineEnd::Interrupted) {
            SetInterrupted(false);
        }
    }
    return end == LineEnd::Entered ? std::optional(std::move(line)) : std::nullopt;
}

void Console::ForgetInterrupt() {
    if (m_editor == nullptr || !IsInterrupted()) {
        return;
    }
    SetInterrupted(false);
    m_terminal.err << std::endl; // behind the ^C that the terminal shows
}

bool Console::RunLine(const std::string& text, int line) {
    struct Word {
        std::string_view word;
        bool (Console::*run)(const std::string& rest, int line);
    };
    constexpr Word kWords[] = {
        {kWordHelp, &Console::Help}, {kWordNames, &Console::Names}, {kWordQuit, &Console::Quit}};
    const std::string trimmed = Trim(text);
    const std::size_t end = std::min(trimmed.find_first_of(" \t"), trimmed.size());
    const auto* found = std::ranges::find(kWords, std::string_view(trimmed).substr(0, end), &Word::word);
    if (found != std::end(kWords)) {
        return (this->*found->run)(Trim(trimmed.substr(end)), line);
    }
    m_execution.RunLine(text, line);
    return true;
}

void Console::Show(int line, const std::string& text, const char* member, const std::string& json) {
    m_execution.Answers().Show(
        {.line = line, .always = true, .text = text, .members = {{member, CString(json)}}});
}

void Console::TellAt(int line, const std::string& message) {
    m_execution.Tell({line, 1, message});
}

bool Console::Quit(const std::string& rest, int line) {
    if (!rest.empty()) {
        TellAt(line, "quit takes nothing");
        return true;
    }
    m_execution.Answers().Show({.line = line, .members = {{"quit", "true"}}});
    return false;
}

bool Console::Help(const std::string& rest, int line) {
    if (rest.empty()) {
        nlohmann::ordered_json words;
        for (const WordHelp& word : kWordHelps) {
            words.push_back({{"usage", word.usage}, {"meaning", word.meaning}});
        }
        Show(line, WordHelpText(), "words", DumpJson(words, kOneLine));
        return true;
    }
    const ScriptTarget target = m_execution.Names().Find(rest);
    if (target) {
        Show(line, Trim(NameHelpText(target)), "help", DumpJson(NameHelpJson(target), kOneLine));
    } else {
        TellAt(line, m_execution.Names().DescribeUnknown(rest));
    }
    return true;
}

bool Console::Names(const std::string& rest, int line) {
    std::string text;
    nlohmann::ordered_json names = nlohmann::ordered_json::array();
    for (const ScriptTarget& target : m_execution.Names().All()) {
        if (!MatchesPattern(target.entry->name, rest)) {
            continue;
        }
        text += (text.empty() ? "" : "\n") + NameLine(*target.entry);
        names.push_back(target.entry->name);
    }
    Show(line, names.empty() ? "no name matches" : text, "names", DumpJson(names, kOneLine));
    return true;
}

int RunConsole(const BenchOptions& options, const ScriptOptions& script, Terminal& terminal) {
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) -> int {
                        ScriptExecution execution(application, options, script, terminal);
                        Console(application, execution, terminal).Run();
                        return script.strict && execution.Faults() != 0 ? kExitScript : kExitOk;
                    }});
}

} // namespace kalvio::bench
