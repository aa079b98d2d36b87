// Acts of a user on every window: any control, any text, with and without a unit.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "host/Views.h"
#include "platform/Dialog.h"
#include "reference_host/application/ReferenceHost.h"
#include "reference_host/windows/WindowPictures.h"
#include "testing/ManualClock.h"
#include "testing/ScriptedUserInterface.h"

#include <nlohmann/json.hpp>

namespace {

using namespace kalvio;
using namespace kalvio::reference_host;
using fuzz::Require;

constexpr std::uint8_t kWithUnit = 0x80; // of the first byte, which names the window besides
constexpr int kMostActs = 60;
constexpr int kMostActsOnDialog = 8;
constexpr ActKind kKinds[] = {ActKind::Type,       ActKind::Enter,     ActKind::Click,  ActKind::Choose,
                              ActKind::Focus,      ActKind::Key,       ActKind::Scroll, ActKind::DoubleClick,
                              ActKind::SetDefault, ActKind::ShowRange, ActKind::Close};

void Gather(const ControlState& state, std::vector<int>& ids) {
    if (state.id != 0 && state.visible && state.role != ControlRole::Text) {
        ids.push_back(state.id);
    }
    for (const ControlState& child : state.children) {
        Gather(child, ids);
    }
}

class User {
public:
    explicit User(fuzz::FuzzInput& input) : m_input(input), m_choice(input.Byte()) {
        Require((m_choice & kWithUnit) == 0 || m_host.BringUp().Ok(), "the host comes up");
        m_interface.onDialog = [this](CDialog& dialog) { OnDialog(dialog); };
        m_host.Network().FillDeviceList();
        m_host.Network().DefineArray("outputs", 0, 0);
        m_host.Network().DefineArray("stereo", 1, 0);
        for (std::uint8_t channel = 0; channel < 8; ++channel) {
            for (const char* array : {"outputs", "stereo"}) {
                m_host.Network().AddChannelToArray(array, 1, kClassTypeIOSwitcher, channel % 2, 1, channel,
                                                   0);
            }
        }
    }

    void Play() {
        const std::vector<std::string> names = WindowSession::Names();
        const std::string& name = names[(m_choice & ~kWithUnit) % names.size()];
        for (int act = 0; act < kMostActs && !m_input.IsAtEnd(); ++act) {
            Require(m_host.WindowsByName().Open(name).empty(), "a window opens");
            Act(*m_host.WindowsByName().Find(name));
            m_clock.Advance(50);
            m_host.DoMessageLoop();
        }
        Require(m_host.WindowsByName().Open(name).empty(), "a window opens");
        ControlState state;
        Require(m_host.WindowsByName().Show(name, state).empty(), "a window shows itself");
        Require(nlohmann::json::accept(WindowJson(state)), "a window's JSON is JSON");
        Require(!DrawWindowText(state).empty() && !DrawWindowSvg(state).empty(), "a window can be drawn");
    }

private:
    void Act(CWnd& window) {
        std::vector<int> ids;
        Gather(DescribeWindow(window), ids);
        const ActKind kind = kKinds[m_input.Byte() % std::size(kKinds)];
        const std::uint8_t control = m_input.Byte();
        UserAct act{kind, ids.empty() ? 0 : ids[control % ids.size()], {}, 0};
        if (kind == ActKind::Type) {
            act.text = m_input.Text();
        } else if (kind == ActKind::Scroll) {
            act.value = static_cast<std::int16_t>(m_input.Word());
        } else if (kind == ActKind::Choose || kind == ActKind::Key) {
            act.value = m_input.Byte() - 2;
        }
        const ActOutcome outcome = PerformAct(window, act);
        Require(outcome.Ok() == outcome.text.empty(), "an act that is not done says why");
    }

    void OnDialog(CDialog& dialog) {
        for (int act = 0;
             act < kMostActsOnDialog && dialog.IsModal() && dialog.Exists() && !m_input.IsAtEnd(); ++act) {
            Act(dialog);
        }
        if (dialog.IsModal() && dialog.Exists()) {
            dialog.PressEscape();
        }
    }

    fuzz::FuzzInput& m_input;
    const std::uint8_t m_choice;
    test::ManualClock m_clock;
    test::ScriptedUserInterface m_interface;
    ReferenceHost m_host{
        {.unit = (m_choice & kWithUnit) != 0 ? UnitKind::Simulated : UnitKind::None, .threaded = false}};
};

} // namespace

// Of every window: each control typed into or clicked, in turn.
std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds;
    for (std::uint8_t window = 0; window < WindowSession::Names().size(); ++window) {
        Bytes typed{window};
        Bytes chosen{static_cast<std::uint8_t>(window | kWithUnit)};
        for (std::uint8_t control = 0; control < 25; ++control) {
            typed.insert(typed.end(), {0, control, 3, '0', '.', '5', 1, control});
            chosen.insert(chosen.end(), {3, control, static_cast<std::uint8_t>(control % 4 + 2), 2, control});
        }
        seeds.push_back(typed);
        seeds.push_back(chosen);
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    User(input).Play();
    return 0;
}
