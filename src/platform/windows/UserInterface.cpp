#include "platform/UserInterface.h"

#include "platform/Dialog.h"

#include <atomic>

namespace kalvio {

namespace {

// Nobody faces the user: every question is declined, every dialog dismissed and nothing is shown.
class NoUserInterface final : public UserInterface {
public:
    CString BrowseForFile(const CString&, const CString&) override { return {}; }
    void ShowWaitCursor(bool) override {}
    void DialogShown(CDialog& dialog) override { dialog.PressEscape(); }
    void DialogClosed(CDialog&) override {}
};

std::atomic<UserInterface*> g_installed{nullptr};

} // namespace

BoxAnswer UserInterface::ShowBox(const CString& text, BoxButtons buttons, BoxIcon icon,
                                 const CString& caption) {
    return MessageBox(text, buttons, icon, caption);
}

BoxAnswer UserInterface::MessageBox(const CString&, BoxButtons buttons, BoxIcon, const CString&) {
    return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
}

UserInterface& CurrentUserInterface() {
    // Never destroyed: an abandoned thread may still report something while the process ends.
    static UserInterface& none = *new NoUserInterface;
    UserInterface* installed = g_installed.load();
    return installed != nullptr ? *installed : none;
}

UserInterface* InstallUserInterface(UserInterface* userInterface) {
    return g_installed.exchange(userInterface);
}

void ShowMessage(const CString& text, BoxIcon icon) {
    CurrentUserInterface().ShowBox(text, BoxButtons::Ok, icon, {});
}

bool AskYesNo(const CString& text, BoxIcon icon, const CString& caption) {
    return CurrentUserInterface().ShowBox(text, BoxButtons::YesNo, icon, caption) == BoxAnswer::Yes;
}

} // namespace kalvio
