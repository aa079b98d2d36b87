#pragma once

// A user interface that looks around while a message box stands.

#include "platform/UserInterface.h"

#include <functional>
#include <thread>
#include <utility>

namespace kalvio::test {

// Installs itself for its lifetime. Every box is answered Ok after `look` has run in a thread of its own, so
// that it can tell whether a lock is held meanwhile.
class BoxProbe final : public UserInterface {
public:
    explicit BoxProbe(std::function<void()> look)
        : m_look(std::move(look)), m_previous(InstallUserInterface(this)) {}
    ~BoxProbe() override { InstallUserInterface(m_previous); }
    BoxProbe(const BoxProbe&) = delete;
    BoxProbe& operator=(const BoxProbe&) = delete;

    BoxAnswer ShowBox(const CString&, BoxButtons, BoxIcon, const CString&) override {
        std::thread(m_look).join();
        return BoxAnswer::Ok;
    }
    CString BrowseForFile(const CString&, const CString&) override { return {}; }
    void ShowWaitCursor(bool) override {}
    void DialogShown(CDialog&) override {}
    void DialogClosed(CDialog&) override {}

private:
    std::function<void()> m_look;
    UserInterface* m_previous;
};

} // namespace kalvio::test
