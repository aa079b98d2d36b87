#pragma once

// What the library asks of whoever faces the user: message boxes, questions, file choice, wait cursor.

#include "platform/Export.h"
#include "platform/Text.h"

#include "platform/MacroNamesBegin.h"

class CDialog;

namespace kalvio {

enum class BoxButtons { Ok, YesNo };
enum class BoxIcon { None, Exclamation, Information, Question };
enum class BoxAnswer { Ok, Yes, No };

// Implementations are called from the thread that asks; the library holds no lock meanwhile.
class KALVIO_API UserInterface {
public:
    virtual ~UserInterface() = default;
    // Shows a box and waits for its answer. By default MessageBox, its former name, which programs that
    // override it go on with; one of the two is overridden. MessageBox itself answers Ok or No unseen.
    virtual BoxAnswer ShowBox(const CString& text, BoxButtons buttons, BoxIcon icon, const CString& caption);
    virtual BoxAnswer MessageBox(const CString& text, BoxButtons buttons, BoxIcon icon,
                                 const CString& caption);
    // A file chosen by the user, or empty when cancelled.
    virtual CString BrowseForFile(const CString& title, const CString& filter) = 0;
    virtual void ShowWaitCursor(bool on) = 0;
    // A modeless dialog came up or went away. The implementation acts on it through its model, for example
    // with CDialog::PressButton, from within the host's message loop.
    virtual void DialogShown(CDialog& dialog) = 0;
    virtual void DialogClosed(CDialog& dialog) = 0;
};

// The user interface in force. Without one installed, boxes answer Ok or No, dialogs
// are dismissed as by Esc and nothing is shown.
[[nodiscard]] KALVIO_API UserInterface& CurrentUserInterface();
// Installs one, or none with null; returns the one before. Install while no other thread uses the library.
KALVIO_API UserInterface* InstallUserInterface(UserInterface* userInterface);

// An OK box.
KALVIO_API void ShowMessage(const CString& text, BoxIcon icon = BoxIcon::None);
// A Yes/No box; true for Yes.
KALVIO_API bool AskYesNo(const CString& text, BoxIcon icon = BoxIcon::None, const CString& caption = {});

} // namespace kalvio

#include "platform/MacroNamesEnd.h"
