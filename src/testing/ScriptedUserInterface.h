#pragma once

// A user interface for tests: a log of what was shown and a queue of answers.

#include "platform/Dialog.h"
#include "platform/Sync.h"
#include "platform/UserInterface.h"

#include <deque>
#include <functional>
#include <vector>

namespace kalvio::test {

// Installs itself for its lifetime. Any thread may show; guarded by one lock.
class ScriptedUserInterface final : public UserInterface {
public:
    struct Box {
        CString text;
        BoxButtons buttons;
        BoxIcon icon;
        CString caption;
    };

    ScriptedUserInterface();
    ~ScriptedUserInterface() override;

    BoxAnswer ShowBox(const CString& text, BoxButtons buttons, BoxIcon icon, const CString& caption) override;
    CString BrowseForFile(const CString& title, const CString& filter) override;
    void ShowWaitCursor(bool on) override;
    void DialogShown(CDialog& dialog) override;
    void DialogClosed(CDialog& dialog) override;

    // Answers of the coming Yes/No boxes; without one queued the answer is No.
    void QueueAnswer(BoxAnswer answer);
    void QueueFile(const CString& path);
    // Called with every dialog shown. Without it nobody acts on dialogs, and modal ones are dismissed as by
    // Esc.
    std::function<void(CDialog&)> onDialog;

    [[nodiscard]] std::vector<Box> Boxes() const;
    [[nodiscard]] std::vector<CString> Texts() const; // of all boxes
    void Clear();

private:
    mutable Mutex m_lock;
    std::vector<Box> m_boxes KALVIO_GUARDED_BY(m_lock);
    std::deque<BoxAnswer> m_answers KALVIO_GUARDED_BY(m_lock);
    std::deque<CString> m_files KALVIO_GUARDED_BY(m_lock);
    UserInterface* m_previous;
};

} // namespace kalvio::test
