#include "bench/console/LineEditor.h"

#include <clocale>
#include <cstdio>
#include <cwchar>
#include <histedit.h>
#include <poll.h>
#include <unistd.h>

namespace kalvio::bench {

namespace {

constexpr int kHistoryLines = 500;
constexpr std::size_t kListWidth = 78;
constexpr std::size_t kLongestList = 200; // candidates

} // namespace

struct LineEditor::Session {
    Session(int keyboardDescriptor, std::string promptText, LineEditorHooks hooksOfProgram)
        : keyboard(keyboardDescriptor), prompt(std::move(promptText)), hooks(std::move(hooksOfProgram)) {
        // The editor counts characters; names are ASCII, texts in quotes may be anything.
        std::setlocale(LC_CTYPE, "C.UTF-8");
        editor = el_init("kalvio-bench", stdin, stdout, stderr);
        past = history_init();
        HistEvent event{};
        history(past, &event, H_SETSIZE, kHistoryLines);
        history(past, &event, H_SETUNIQUE, 1);
        el_set(editor, EL_CLIENTDATA, this);
        el_set(editor, EL_PROMPT, &Prompt);
        el_set(editor, EL_EDITOR, "emacs");
        el_set(editor, EL_HIST, history, past);
        el_set(editor, EL_GETCFN, &ReadCharacter);
        el_set(editor, EL_ADDFN, "complete-name", "Completes a name", &Complete);
        el_set(editor, EL_BIND, "^I", "complete-name", nullptr);
        el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    }
    ~Session() {
        history_end(past);
        el_end(editor);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    static Session& Of(EditLine* editor) {
        Session* session = nullptr;
        el_get(editor, EL_CLIENTDATA, &session);
        return *session;
    }

    static char* Prompt(EditLine* editor) { return Of(editor).prompt.data(); }
    static int ReadCharacter(EditLine* editor, wchar_t* character) {
        return Of(editor).WaitForCharacter(*character);
    }
    static unsigned char Complete(EditLine* editor, int) { return Of(editor).CompleteAtCursor(); }

    // 1 with a character, 0 at the end of input, -1 after Ctrl-C.
    int WaitForCharacter(wchar_t& character) {
        pollfd waiting{keyboard, POLLIN, 0};
        for (;;) {
            if (hooks.isInterrupted()) {
                return -1;
            }
            if (poll(&waiting, 1, 0) <= 0) {
                hooks.turn();
                continue;
            }
            char byte = 0;
            if (read(keyboard, &byte, 1) != 1) {
                return 0;
            }
            const std::size_t length = std::mbrtowc(&character, &byte, 1, &partial);
            if (length <= 1) {
                return 1;
            }
            if (length == static_cast<std::size_t>(-1)) {
                partial = {}; // no UTF-8: the byte is dropped
            }
        }
    }

    unsigned char CompleteAtCursor() {
        const LineInfo* line = el_line(editor);
        const std::string typed(line->buffer, line->cursor);
        const Completion completion = hooks.complete(typed);
        const std::string_view word = std::string_view(typed).substr(typed.size() - completion.replaced);
        if (completion.candidates.empty()) {
            return CC_ERROR;
        }
        if (completion.candidates.size() > 1 && completion.text.size() == word.size()) {
            List(completion.candidates);
            return CC_REDISPLAY;
        }
        el_deletestr(editor, static_cast<int>(completion.replaced));
        el_insertstr(editor, completion.text.c_str());
        return CC_REFRESH;
    }

    static void List(const std::vector<std::string>& candidates) {
        std::string text;
        std::size_t width = 0;
        for (std::size_t i = 0; i < candidates.size() && i < kLongestList; ++i) {
            const bool full = width == 0 || width + candidates[i].size() > kListWidth;
            text += (full ? "\n" : "  ") + candidates[i];
            width = (full ? 0 : width + 2) + candidates[i].size();
        }
        if (candidates.size() > kLongestList) {
            text += "\n... and more: " + std::to_string(candidates.size()) + " in all";
        }
        std::fprintf(stdout, "%s\n", text.c_str());
    }

    const int keyboard;
    std::string prompt;
    LineEditorHooks hooks;
    std::mbstate_t partial{}; // of a character of several bytes
    EditLine* editor = nullptr;
    History* past = nullptr;
};

LineEditor::LineEditor(int keyboard, std::string prompt, LineEditorHooks hooks)
    : m_session(std::make_unique<Session>(keyboard, std::move(prompt), std::move(hooks))) {}

LineEditor::~LineEditor() = default;

LineEnd LineEditor::Read(std::string& line) {
    // Before the prompt, so that nothing is typed into a line that the terminal would show by itself.
    el_set(m_session->editor, EL_PREP_TERM, 1);
    int length = 0;
    const char* text = el_gets(m_session->editor, &length);
    if (text == nullptr || length <= 0) {
        const bool interrupted = m_session->hooks.isInterrupted();
        std::fputs(interrupted ? "^C\n" : "\n", stdout);
        std::fflush(stdout);
        return interrupted ? LineEnd::Interrupted : LineEnd::Closed;
    }
    line.assign(text, static_cast<std::size_t>(length));
    while (line.ends_with('\n') || line.ends_with('\r')) {
        line.pop_back();
    }
    HistEvent event{};
    if (!line.empty()) {
        history(m_session->past, &event, H_ENTER, line.c_str());
    }
    return LineEnd::Entered;
}

} // namespace kalvio::bench
