#pragma once

// Opens the library's windows by name and acts on them as a user does, for scripts and programs.

#include "platform/ControlState.h"
#include "platform/Text.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

class CDialog;
class CKvNetSetupPropertySheet;
class CTypedFrameWnd;
class CWnd;

namespace kalvio::reference_host {

class ReferenceHost;

// An act as words: the control by its id or its name, the act, and its value where it takes one.
struct ActWords {
    std::string control;
    std::string act;   // one of ActNames
    std::string value; // type: the text; choose: an item's text or index; scroll: the position; key: its name
};

// Texts that operations answer are empty when they did what was asked, else say what is wrong.
// User-interface thread.
class WindowSession {
public:
    explicit WindowSession(ReferenceHost& host);
    ~WindowSession();
    WindowSession(const WindowSession&) = delete;
    WindowSession& operator=(const WindowSession&) = delete;

    [[nodiscard]] static std::vector<std::string> Names();    // of the windows
    [[nodiscard]] static std::vector<std::string> ActNames(); // focus, click, ...
    [[nodiscard]] static CString RefuseName(const std::string& window);
    [[nodiscard]] static CString RefuseAct(const ActWords& words);

    // An open window is brought back instead of another one.
    CString Open(const std::string& window);
    // The frame of a window that is open; null when it is not.
    [[nodiscard]] CWnd* Find(const std::string& window) const;
    CString Close(const std::string& window);
    CString Act(const std::string& window, const ActWords& words);
    CString Show(const std::string& window, ControlState& state);
    // What the window prints, one string a line.
    CString Print(const std::string& window, std::vector<CString>& lines);

    // Acts for the dialog that comes up next, in this order; without any a dialog is dismissed as by Esc.
    CString QueueForDialog(const ActWords& words);
    // A dialog came up or went away: the queued acts are carried out as the program's messages run. A
    // progress window is left alone.
    void DialogShown(CDialog& dialog);
    void DialogClosed(const CDialog& dialog);
    // What went wrong with acts on dialogs since the last call.
    CString TakeDialogFault();

private:
    class Driver;

    void DriveDialog();
    CString OpenSetup();

    ReferenceHost& m_host;
    std::map<std::string, CTypedFrameWnd*> m_frames;   // some may be gone
    std::unique_ptr<CKvNetSetupPropertySheet> m_setup; // null or closed: not open
    std::deque<ActWords> m_dialogActs;
    std::vector<CDialog*> m_dialogs; // the last one is in front
    std::unique_ptr<Driver> m_driver;
    CString m_dialogFault;
};

} // namespace kalvio::reference_host
