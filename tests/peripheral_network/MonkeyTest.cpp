// Whatever a user does, and whatever happens meanwhile, nothing breaks, and afterwards array, panel and
// device agree.

#include "platform/ControlState.h"
#include "switching/SwitchingRig.h"

#include <random>

namespace kalvio::test {
namespace {

class Monkey {
public:
    explicit Monkey(unsigned seed) : m_random(seed) {
        for (std::uint8_t address = 8; address < 64; ++address) {
            rig.unit.AttachPeripheral(address, nullptr);
        }
        rig.models[2].status = {0x11, 0x02, 1};
        rig.models[7].status = {0x21, 0x10, 1};
        rig.host.user.onDialog = [this](CDialog& dialog) { PlayDialog(dialog); };
        while (rig.network.GetChannelArrayList()->GetCount() < 4) {
            Define();
        }
        m_kept = rig.Stored();
    }

    void Play(int acts) {
        for (int act = 0; act < acts; ++act) {
            if (Below(12) == 0) {
                Disturb();
            }
            const std::vector<CTypedFrameWnd*> frames = OpenFrames();
            if (frames.size() < 4) {
                Open();
            } else {
                Act(*frames[Below(frames.size())]);
            }
            rig.host.clock.Advance(static_cast<std::uint32_t>(Below(300)));
            PumpMessages();
            rig.host.user.Clear();
            m_sent += Words(rig.Frames()).size();
        }
        rig.host.user.onDialog = nullptr;
    }

    // Chooses an array in a fresh panel of a healthy unit.
    void ExpectAgreement() {
        rig.silent = -1;
        Heal();
        rig.network.DefineArray("last", 0, 0);
        AddChannels(*rig.network.GetChannelArray("last"), "2:0:1:0 2:0:1:3 2:1:0:7:1 2:1:0:6");
        CTypedFrameWnd* frame = rig.network.OpenChannelArrayControlPanel();
        ASSERT_TRUE(
            PerformAct(*frame, {ActKind::Choose, 2590, {}, rig.network.GetChannelArrayList()->GetCount() - 1})
                .Ok());
        ASSERT_TRUE(PerformAct(*frame, {ActKind::Click, 2594, {}, 0}).Ok());
        ASSERT_TRUE(PerformAct(*frame, {ActKind::Click, 2702, {}, 0}).Ok());
        EXPECT_EQ(States(*rig.network.GetChannelArray("last")), "0 1 1 0");
        EXPECT_EQ(rig.models[2].state[1], 0x08);
        EXPECT_EQ(rig.models[2].state[3], 0x80);
        EXPECT_TRUE(rig.unit.ProtocolErrors().empty());
        EXPECT_GT(m_sent, 300U) << "the unit was well often enough";
    }

private:
    std::size_t Below(std::size_t end) { return m_random() % end; }

    // Plugs the unit in and starts anew.
    void Heal() {
        rig.unit.SetPresent(true);
        rig.hardware.TerminateHardware();
        EXPECT_EQ(rig.BringUp(), 1);
    }

    void Open() {
        const std::size_t kind = Below(6);
        if (kind == 0) {
            rig.network.OnKvNetSetup();
        } else if (kind < 3) {
            CTypedFrameWnd* const frame = rig.Switchers().OpenIOSwitcherControlPanel();
            PerformAct(*frame, {ActKind::Type, 2555, std::to_string(Below(4)), 0});
        } else {
            CTypedFrameWnd* const frame = rig.network.OpenChannelArrayControlPanel();
            PerformAct(*frame, {ActKind::Choose, 2590, {}, 0});
        }
    }

    // Now and then also what a user cannot work with.
    void Gather(const ControlState& state, std::vector<ControlState>& controls) {
        if (state.id != 0 && state.role != ControlRole::Text &&
            ((state.visible && state.enabled) || Below(10) == 0)) {
            controls.push_back(state);
        }
        for (const ControlState& child : state.children) {
            Gather(child, controls);
        }
    }

    void Act(CWnd& window) {
        std::vector<ControlState> controls;
        Gather(DescribeWindow(window), controls);
        if (controls.empty() || Below(60) == 0) {
            PerformAct(window, {ActKind::Close, 0, {}, 0});
            return;
        }
        static constexpr ActKind kKinds[] = {ActKind::Click, ActKind::Choose, ActKind::DoubleClick,
                                             ActKind::Type,  ActKind::Enter,  ActKind::Focus,
                                             ActKind::Key,   ActKind::Scroll};
        static constexpr const char* kTexts[] = {"2", "3", "7", "99", "", "x", "a name"};
        const ControlState& control = controls[Below(controls.size())];
        ActKind kind = Below(2) == 0 ? ActKind::Click : kKinds[Below(std::size(kKinds))];
        if (!control.items.empty() && Below(2) == 0) {
            kind = control.role == ControlRole::ListBox && Below(3) == 0 ? ActKind::DoubleClick
                                                                         : ActKind::Choose;
        }
        if (Below(2) == 0) {
            rig.host.user.QueueAnswer(BoxAnswer::Yes);
        }
        PerformAct(window, {kind, control.id, kTexts[Below(std::size(kTexts))],
                            static_cast<int>(Below(control.items.size() + 2)) - 1});
    }

    void PlayDialog(CDialog& dialog) {
        for (int act = 0; act < 60 && dialog.Exists(); ++act) {
            if (Below(12) == 0) {
                Disturb();
            }
            Act(dialog);
        }
        while (dialog.Exists()) {
            rig.host.user.QueueAnswer(BoxAnswer::Yes);
            dialog.PressEscape();
        }
    }

    void Define() {
        const CString name = "array " + std::to_string(++m_defined);
        rig.network.DefineArray(name.c_str(), Below(3) == 0 ? 1 : 0, Below(4) == 0 ? 1 : 0);
        const std::size_t blocks = Below(6);
        for (std::size_t block = 0; block < blocks; ++block) {
            for (int channel = 0; channel < 8; ++channel) {
                AddChannels(*rig.network.GetChannelArray(name.c_str()),
                            Format("%zu:%zu:%zu:%d", Below(4) + 1, block / 2 % 2, block % 2, channel));
            }
        }
    }

    void Disturb() {
        CChannelArrayList& arrays = *rig.network.GetChannelArrayList();
        CChannelArray* const array =
            arrays.GetCount() != 0 ? arrays.GetAt(static_cast<int>(Below(std::size_t(arrays.GetCount()))))
                                   : nullptr;
        if (arrays.GetCount() < 3) {
            return Define();
        }
        CString error;
        switch (Below(14)) {
        case 0:
            return rig.unit.SetPresent(Below(2) == 0);
        case 1:
            rig.silent = static_cast<int>(Below(10)) - 1;
            return;
        case 2:
            return rig.hardware.SuspendDevice();
        case 3:
            m_kept = rig.Stored();
            return;
        case 4:
            rig.network.Load(m_kept, error);
            return;
        case 5:
            if (array != nullptr) {
                rig.network.RemoveArray(CString(array->GetName()).c_str());
            }
            return;
        case 6:
            rig.network.Reset(static_cast<std::uint8_t>(Below(8)), Below(2) == 0 ? 1 : 0, nullptr);
            return;
        case 7:
            return Heal();
        case 8:
            rig.network.FillDeviceList();
            return;
        case 9:
            return arrays.GetCount() < 8 ? Define() : void();
        default:
            return Heal();
        }
    }

    SwitchingRig rig;
    std::size_t m_sent = 0; // frames
    std::mt19937 m_random;
    int m_defined = 0;
    std::vector<std::uint8_t> m_kept;
};

TEST(MonkeyTest, WindowsOfTheNetwork) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(seed);
        Monkey monkey(seed);
        monkey.Play(600);
        monkey.ExpectAgreement();
    }
}

} // namespace
} // namespace kalvio::test
