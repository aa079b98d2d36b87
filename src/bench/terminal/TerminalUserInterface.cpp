#include "bench/terminal/TerminalUserInterface.h"

#include "bench/terminal/Interrupt.h"
#include "hardware/HardwareAccessDlg.h"
#include "platform/Clock.h"
#include "platform/Dialog.h"

#include <algorithm>
#include <string_view>

namespace kalvio::bench {

namespace {

constexpr std::uint32_t kLookEveryMs = 10;

bool StartsWith(const std::string& line, char letter) {
    const std::string word = Trim(line);
    return !word.empty() && (word.front() | 0x20) == letter;
}

// Presses the first button whose text holds the word; the texts carry an "&" before their letter.
void PressButtonNamed(CDialog& dialog, std::string_view word) {
    const auto& controls = dialog.Children();
    const auto found = std::find_if(controls.begin(), controls.end(), [word](const CWnd* control) {
        return dynamic_cast<const CButton*>(control) != nullptr &&
               control->GetText().find(word) != CString::npos;
    });
    if (found == controls.end() || !dialog.PressButton((*found)->GetDlgCtrlID())) {
        dialog.PressEscape();
    }
}

} // namespace

TerminalUserInterface::TerminalUserInterface(Terminal& terminal, LineSource& lines, Answers answers,
                                             bool withoutHardware)
    : m_terminal(terminal),
      m_lines(lines),
      m_answers(answers),
      m_withoutHardware(withoutHardware),
      m_previous(InstallUserInterface(this)) {}

TerminalUserInterface::~TerminalUserInterface() {
    InstallUserInterface(m_previous);
}

void TerminalUserInterface::Say(const CString& text, const char* mark) {
    m_terminal.err << mark << Trim(text);
}

BoxAnswer TerminalUserInterface::ShowBox(const CString& text, BoxButtons buttons, BoxIcon, const CString&) {
    const std::scoped_lock guard(m_lock);
    if (buttons == BoxButtons::Ok) {
        Say(text, "! ");
        m_terminal.err << std::endl;
        return BoxAnswer::Ok;
    }
    Say(text, "? ");
    m_terminal.err << " [y/n] " << std::flush;
    return AskYesNo() ? BoxAnswer::Yes : BoxAnswer::No;
}

bool TerminalUserInterface::AskYesNo() {
    bool yes = m_answers == Answers::Yes;
    if (m_answers != Answers::Ask) {
        m_terminal.err << (yes ? "yes" : "no") << std::endl;
        return yes;
    }
    const std::optional<std::string> line = m_lines.Take([] { Sleep(kLookEveryMs); });
    yes = line && StartsWith(*line, 'y');
    if (!line) {
        m_terminal.err << "no" << std::endl;
    }
    return yes;
}

CString TerminalUserInterface::BrowseForFile(const CString& title, const CString&) {
    const std::scoped_lock guard(m_lock);
    if (m_answers != Answers::Ask) {
        return {};
    }
    Say(title, "? ");
    m_terminal.err << " [file] " << std::flush;
    return Trim(m_lines.Take([] { Sleep(kLookEveryMs); }).value_or(""));
}

void TerminalUserInterface::ShowWaitCursor(bool) {}

void TerminalUserInterface::DialogShown(CDialog& dialog) {
    if (dynamic_cast<CHardwareAccessDlg*>(&dialog) == nullptr) {
        if (onDialogShown) {
            onDialogShown(dialog);
        }
        return;
    }
    m_dialog = &dialog;
    m_terminal.err << Trim(dialog.GetText()) << std::endl;
    for (const CWnd* control : dialog.Children()) {
        if (dynamic_cast<const CStatic*>(control) != nullptr) {
            m_terminal.err << "  " << Trim(control->GetText()) << std::endl;
        }
    }
    if (m_withoutHardware) {
        m_terminal.err << "  (continuing without hardware)" << std::endl;
    } else if (m_answers == Answers::Ask) {
        m_terminal.err << "  e: exit, c: continue without hardware" << std::endl;
    }
}

void TerminalUserInterface::DialogClosed(CDialog& dialog) {
    if (m_dialog == &dialog) {
        m_dialog = nullptr;
    } else if (onDialogClosed) {
        onDialogClosed(dialog);
    }
}

TerminalUserInterface::Choice TerminalUserInterface::ChooseForDialog() {
    if (IsInterrupted()) {
        return Choice::Exit;
    }
    if (m_withoutHardware) {
        return Choice::Continue;
    }
    if (m_answers != Answers::Ask) {
        return m_answers == Answers::Yes ? Choice::Continue : Choice::Exit;
    }
    const std::optional<std::string> line = m_lines.TryTake();
    if (!line) {
        return m_lines.IsAtEnd() ? Choice::Exit : Choice::None;
    }
    if (StartsWith(*line, 'e')) {
        return Choice::Exit;
    }
    return StartsWith(*line, 'c') ? Choice::Continue : Choice::None;
}

void TerminalUserInterface::AnswerDialog() {
    if (m_dialog == nullptr) {
        return;
    }
    const Choice choice = ChooseForDialog();
    if (choice != Choice::None) {
        PressButtonNamed(*m_dialog, choice == Choice::Exit ? "Exit" : "Continue");
    }
}

} // namespace kalvio::bench
