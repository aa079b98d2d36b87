// Whatever a user does in any window, and whatever happens to the unit meanwhile, nothing breaks; and a
// window that comes up afterwards shows what the others show.

#include "host/SettingsData.h"
#include "host/Views.h"
#include "platform/ControlState.h"
#include "platform/Dialog.h"
#include "platform/UserInterface.h"
#include "reference_host/application/ReferenceHost.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace kalvio::reference_host {
namespace {

class Monkey final : public UserInterface {
public:
    explicit Monkey(unsigned seed) : m_random(seed), m_previous(InstallUserInterface(this)) {}
    ~Monkey() override { InstallUserInterface(m_previous); }

    void Play(ReferenceHost& host, int acts) {
        m_host = &host;
        for (int act = 0; act < acts; ++act) {
            const std::vector<CTypedFrameWnd*> frames = OpenFrames();
            if (Below(40) == 0) {
                Disturb();
            }
            if (frames.size() < 6) {
                const std::vector<std::string> names = WindowSession::Names();
                host.WindowsByName().Open(names[Below(names.size())]);
            } else {
                Act(*frames[Below(frames.size())]);
            }
            m_clock.Advance(static_cast<std::uint32_t>(Below(200)));
            host.DoMessageLoop();
        }
        m_still = true;
        host.DoMessageLoop();
    }

    BoxAnswer ShowBox(const CString&, BoxButtons, BoxIcon, const CString&) override {
        return Below(2) == 0 ? BoxAnswer::Yes : BoxAnswer::No;
    }
    CString BrowseForFile(const CString&, const CString&) override { return {}; }
    void ShowWaitCursor(bool) override {}
    void DialogShown(CDialog& dialog) override {
        if (!dialog.IsModal()) {
            return;
        }
        for (int act = 0; !m_still && act < 30 && dialog.Exists(); ++act) {
            Act(dialog);
        }
        while (dialog.Exists()) {
            dialog.PressEscape();
        }
    }
    void DialogClosed(CDialog&) override {}

    test::ManualClock m_clock;

private:
    std::size_t Below(std::size_t end) { return m_random() % end; }

    static void Gather(const ControlState& state, std::vector<ControlState>& controls) {
        if (state.id != 0 && state.visible && state.role != ControlRole::Text) {
            controls.push_back(state);
        }
        for (const ControlState& child : state.children) {
            Gather(child, controls);
        }
    }

    void Act(CWnd& window) {
        static constexpr ActKind kKinds[] = {
            ActKind::Focus, ActKind::Click, ActKind::DoubleClick, ActKind::Choose,     ActKind::Type,
            ActKind::Enter, ActKind::Key,   ActKind::Scroll,      ActKind::SetDefault, ActKind::ShowRange};
        static constexpr const char* kTexts[] = {"", "1", "8", "0.5", "-3", "1e9", "nan", "5A 00", "array"};
        std::vector<ControlState> controls;
        Gather(DescribeWindow(window), controls);
        if (controls.empty() || Below(150) == 0) {
            PerformAct(window, {ActKind::Close, 0, {}, 0});
            return;
        }
        const ControlState& control = controls[Below(controls.size())];
        const bool choose = !control.items.empty() && Below(2) == 0;
        const ActKind kind = choose ? ActKind::Choose : kKinds[Below(std::size(kKinds))];
        const int number = kind == ActKind::Key ? kKeySpace + static_cast<int>(Below(9))
                                                : static_cast<int>(Below(control.items.size() + 40)) - 2;
        PerformAct(window, {kind, control.id, kTexts[Below(std::size(kTexts))],
                            choose ? static_cast<int>(Below(control.items.size())) : number});
    }

    void Disturb() {
        switch (Below(6)) {
        case 0:
            m_host->Unit().AddFault(
                {simulator::FaultKind::Silence, static_cast<std::uint32_t>(Below(20) + 1), 1, 0});
            break;
        case 1:
            m_host->Unit().AddFault(
                {simulator::FaultKind::FailAny, static_cast<std::uint32_t>(Below(20) + 1), 1, 0});
            break;
        case 2:
            m_host->Unit().ClearFaults();
            break;
        case 3:
            m_host->Network().FillDeviceList();
            break;
        case 4:
            m_host->Network().DefineArray(Format("array %zu", Below(5)).c_str(), Below(2) == 0 ? 1 : 0, 0);
            break;
        default:
            m_host->Network().RemoveArray(Format("array %zu", Below(5)).c_str());
            break;
        }
    }

    std::mt19937 m_random;
    ReferenceHost* m_host = nullptr;
    bool m_still = false; // dialogs are dismissed at once
    UserInterface* m_previous;
};

// What a window shows, without who has the focus.
CString Shown(ReferenceHost& host, const char* name) {
    ControlState state;
    EXPECT_EQ(host.WindowsByName().Show(name, state), "");
    CString text = DumpWindow(state);
    for (std::size_t at = text.find(" focus"); at != CString::npos; at = text.find(" focus")) {
        text.erase(at, 6);
    }
    return text;
}

// A window that edits one document and nothing of its own.
void ExpectFreshWindowAgrees(ReferenceHost& host, const char* name) {
    ASSERT_EQ(host.WindowsByName().Open(name), "");
    UpdateViews(nullptr, -1, nullptr, 0); // what was typed and never taken goes
    const CString before = Shown(host, name);
    ASSERT_EQ(host.WindowsByName().Close(name), "");
    host.DoMessageLoop();
    ASSERT_EQ(host.WindowsByName().Open(name), "");
    EXPECT_EQ(Shown(host, name), before) << name;
}

// The number of acts a seed can be set from outside for longer runs.
int Acts() {
    const char* const wanted = std::getenv("KALVIO_MONKEY_ACTS");
    return wanted == nullptr ? 1500 : std::atoi(wanted);
}

TEST(WindowMonkey, EveryWindowUnderFaults) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(seed);
        Monkey monkey(seed);
        ReferenceHost host{{.threaded = false}};
        ASSERT_TRUE(host.BringUp().Ok());
        monkey.Play(host, Acts());
        host.Unit().ClearFaults();
        host.Regulation().StopRegulation();
        host.DoMessageLoop();
        EXPECT_TRUE(host.Unit().ProtocolErrors().empty());
        for (const char* name : {"settling", "regulation"}) {
            ExpectFreshWindowAgrees(host, name);
        }
        EXPECT_EQ(host.Network().GetShowErrorMessages(), 1) << "put back by every window";
    }
}

} // namespace
} // namespace kalvio::reference_host
