#include "preprocessor/PPDebugView.h"

#include "preprocessor/Supervision.h"
#include "support/WindowScript.h"

namespace kalvio::test {

TEST_F(Supervision, TheDebugWindowActByAct) {
    settling.defaults = {0, 2, 0.01, 1, false};
    host.mainWindow.MoveWindow({100, 100, 900, 700});
    WindowScript script(host, __FILE__, "windows/debug.txt");
    script.words["open"] = [&](const std::string&) {
        CreatePPDebugWindow();
        script.window = OpenFrames().back();
        EXPECT_EQ(host.application.FindSettingsWindow(36, 0), OpenFrames().front());
        const CRect at = script.window->GetWindowRect();
        script.Note(Format("at %d %d %d %d", at.left, at.top, at.right, at.bottom));
    };
    script.words["values"] = [this](const std::string& rest) { // of the watched result
        std::istringstream values(rest);
        for (double value = 0.0; values >> value;) {
            Deliver(kBlock, {value});
        }
    };
    script.words["end"] = [&](const std::string& rest) { // the state that a watch reports
        script.window->Children()[0]->Send(0x8038, static_cast<WPARAM>(std::stoul(rest)), 0);
    };
    script.words["silence"] = [this](const std::string& rest) {
        host.clock.Advance(static_cast<std::uint32_t>(std::stoul(rest)));
        preprocessor::WakeUp(preprocessor::ListIndex::Block);
        PumpMessages();
    };
    script.words["gone"] = [this](const std::string&) { host.application.analyser = nullptr; };
    script.Play();
}

} // namespace kalvio::test
