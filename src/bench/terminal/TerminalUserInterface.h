#pragma once

// Message boxes, questions and the access dialog on a terminal.

#include "bench/commands/BenchOptions.h"
#include "bench/terminal/LineSource.h"
#include "bench/terminal/Terminal.h"
#include "platform/UserInterface.h"

#include <functional>
#include <mutex>

namespace kalvio::bench {

// Installs itself for its lifetime. Boxes may come from any thread; dialogs on the user-interface thread.
class TerminalUserInterface final : public UserInterface {
public:
    // `withoutHardware`: the access dialog is answered with "continue without hardware" unasked.
    TerminalUserInterface(Terminal& terminal, LineSource& lines, Answers answers, bool withoutHardware);
    ~TerminalUserInterface() override;
    TerminalUserInterface(const TerminalUserInterface&) = delete;
    TerminalUserInterface& operator=(const TerminalUserInterface&) = delete;

    BoxAnswer ShowBox(const CString& text, BoxButtons buttons, BoxIcon icon, const CString& caption) override;
    CString BrowseForFile(const CString& title, const CString& filter) override;
    void ShowWaitCursor(bool on) override;
    void DialogShown(CDialog& dialog) override;
    void DialogClosed(CDialog& dialog) override;

    // Dialogs other than the access dialog: nobody sees them unless these are set. User-interface thread.
    std::function<void(CDialog&)> onDialogShown;
    std::function<void(CDialog&)> onDialogClosed;

    // Presses a button of the open access dialog once an answer is there: typed e or c; yes continues without
    // hardware; no and Ctrl-C exit. Called from the message loop, on the user-interface thread.
    void AnswerDialog();

private:
    enum class Choice { None, Exit, Continue };

    bool AskYesNo();
    [[nodiscard]] Choice ChooseForDialog();
    void Say(const CString& text, const char* mark);

    Terminal& m_terminal;
    LineSource& m_lines;
    const Answers m_answers;
    const bool m_withoutHardware;
    CDialog* m_dialog = nullptr; // the open access dialog; user-interface thread
    std::mutex m_lock;           // keeps the lines of one box together
    UserInterface* m_previous;
};

} // namespace kalvio::bench
