// The panels of the I/O switcher and of the channel arrays, act by act.

#include "SwitchingRig.h"
#include "switching/ChannelArrayControlPanelView.h"
#include "switching/ChannelArrayDetailsDlg.h"
#include "switching/IOSwitcherControlPanelView.h"
#include "switching/panels/ChannelArrayControlPanelLayout.h"

namespace kalvio::test {
namespace {

class PanelsTest : public ::testing::Test {
protected:
    // Devices answer at 3, 5 and 9 only.
    PanelsTest() {
        for (std::uint8_t address = 0; address < 64; ++address) {
            if (address != 3 && address != 5 && address != 9) {
                rig.unit.AttachPeripheral(address, nullptr);
            }
        }
        rig.host.application.oleDisplay = 1;
    }

    // Words that both panels' files use.
    void Teach(WindowScript& script, const std::function<CTypedFrameWnd*()>& open) {
        TeachNetwork(script, rig);
        script.frames = [this] { // and the hints
            std::string hints;
            for (const std::string& event : rig.events) {
                hints += event.starts_with("55") ? "" : ", hint " + event;
            }
            const std::string frames = rig.Frames();
            return frames.empty() && !hints.empty() ? "nothing" + hints : frames + hints;
        };
        script.words["open"] = [this, &script, open](const std::string&) {
            windows.push_back(open());
            script.window = windows.back();
            script.Note(
                Format("window type %d, panel %d", windows.back()->WindowType(), windows.back()->Panel()));
        };
        script.words["window"] = [this, &script](const std::string& rest) {
            script.window = windows[std::stoul(rest)];
        };
        script.words["pump"] = [](const std::string&) { PumpMessages(); };
        script.words["silent"] = [this](const std::string& rest) { rig.silent = std::stoi(rest); };
        script.words["suspend"] = [this](const std::string&) { rig.hardware.SuspendDevice(); };
        script.words["demo"] = [this](const std::string&) { rig.hardware.GoIntoDemoMode(); };
        script.words["resume"] = [this](const std::string&) {
            rig.hardware.UnsuspendDevice();
            rig.BringUp();
        };
        script.words["status"] = [this](const std::string& rest) {
            rig.models[std::stoi(rest)].status = Hex(rest.substr(rest.find(' ')));
        };
        script.words["print"] = [&script](const std::string&) {
            NotePrint(script, dynamic_cast<CPrintView&>(*script.window->Children()[0]));
        };
        script.words["store"] = [&script](const std::string&) {
            CArchive archive;
            dynamic_cast<CSettingsView&>(*script.window->Children()[0]).Serialize(archive);
            script.Note(ToHex(archive.Bytes()));
        };
        script.words["load"] = [&script](const std::string& rest) {
            const Bytes bytes = Hex(rest);
            CArchive archive(bytes);
            dynamic_cast<CSettingsView&>(*script.window->Children()[0]).Serialize(archive);
        };
        script.words["links"] = [this, &script](const std::string&) {
            const auto* view = dynamic_cast<CView*>(script.window->Children()[0]);
            script.Note(Format("%zu links", rig.host.application.Updaters().Count(view)));
        };
    }

    SwitchingRig rig;
    std::vector<CTypedFrameWnd*> windows;
};

class SwitcherPanelTest : public PanelsTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(SwitcherPanelTest, ActByAct) {
    WindowScript script(rig.host, __FILE__, GetParam());
    Teach(script, [this] { return rig.Switchers().OpenIOSwitcherControlPanel(); });
    script.words["seconds"] = [this](const std::string& rest) {
        for (int step = 0; step < 20 * std::stoi(rest); ++step) {
            rig.host.clock.Advance(50);
            PumpMessages();
        }
    };
    script.words["voltages"] = [this](const std::string& rest) { rig.models[3].voltages = Hex(rest); };
    script.words["relays"] = [this](const std::string& rest) { rig.models[3].state = Hex(rest); };
    script.words["script"] = [this](const std::string& rest) {
        EXPECT_TRUE(
            rig.Switchers().OLEBusGroupSwitch(static_cast<std::int16_t>(std::stoi(rest)), 0, 1, 0x0F));
    };
    script.words["reset"] = [this](const std::string&) { rig.network.Reset(3, 1, nullptr); };
    script.Play();
}

INSTANTIATE_TEST_SUITE_P(Windows, SwitcherPanelTest,
                         ::testing::Values("windows/switcher.txt", "windows/switcher_acts.txt"));

class ArrayPanelTest : public PanelsTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ArrayPanelTest, ActByAct) {
    WindowScript script(rig.host, __FILE__, GetParam());
    Teach(script, [this] { return rig.network.OpenChannelArrayControlPanel(); });
    const auto array = [this](const std::string& name) { return rig.network.GetChannelArray(name.c_str()); };
    script.words["states"] = [&](const std::string& rest) { script.Note(States(*array(rest))); };
    script.words["rename"] = [&](const std::string& rest) {
        array(Words(rest)[0])->SetName(Words(rest)[1]);
        UpdateViews(nullptr, HINT_ARRAY_NAME_CHANGED, array(Words(rest)[1]), 0);
    };
    const auto put = [&](const std::string& rest) { // name, states
        short index = 0;
        for (const std::string& state : Words(rest.substr(rest.find(' ')))) {
            ChannelDetails channel;
            array(Words(rest)[0])->GetChannelDetails(index, channel);
            channel.state = static_cast<std::uint8_t>(std::stoi(state));
            EXPECT_EQ(array(Words(rest)[0])->SetChannelDetails(index++, channel), 1);
        }
    };
    script.words["put"] = put; // and nobody is told
    script.words["set"] = [&](const std::string& rest) {
        put(rest);
        UpdateViews(nullptr, HINT_ARRAY_CHANGED, array(Words(rest)[0]), 0);
    };
    script.words["hint"] = [](const std::string& rest) {
        UpdateViews(nullptr, HINT_DEVICE_CHANGED,
                    HintObject(static_cast<std::uint32_t>(std::stoul(rest, nullptr, 16))), 0);
    };
    script.Play();
}

INSTANTIATE_TEST_SUITE_P(Windows, ArrayPanelTest,
                         ::testing::Values("windows/arrays.txt", "windows/array_acts.txt"));

struct Names final : ChannelArrayNames {
    int IsNameUnique(const CString& name, CChannelArray*) override {
        asked += name + ";";
        return name == "taken" ? 0 : 1;
    }
    CString asked;
};

TEST_F(PanelsTest, DetailsDialog) {
    WindowScript script(rig.host, __FILE__, "windows/details.txt");
    script.words["details"] = [&script](const std::string& rest) { // whether name and kind can be changed
        Names names;
        CChannelArrayDetailsDlg dialog(names, nullptr, {"old", 0, 0}, rest[0] == '1', rest[2] == '1');
        const int result = static_cast<int>(dialog.DoModal());
        const ArrayIdentity made = dialog.Identity();
        script.Note(
            Format("button %d, %s %d %d", result, made.name.c_str(), made.stereo, made.exclusiveOnly));
        script.Note("asked for " + names.asked);
    };
    script.Play();
}

// A question lets the program go on: the array goes, or the panel itself.
TEST_F(PanelsTest, TheQuestionStandsWhileThingsGo) {
    class Busy final : public UserInterface {
    public:
        BoxAnswer ShowBox(const CString&, BoxButtons, BoxIcon, const CString&) override {
            meanwhile();
            PumpMessages();
            return BoxAnswer::Yes;
        }
        CString BrowseForFile(const CString&, const CString&) override { return {}; }
        void ShowWaitCursor(bool) override {}
        void DialogShown(CDialog&) override {}
        void DialogClosed(CDialog&) override {}
        std::function<void()> meanwhile;
    } busy;
    rig.network.DefineArray("one", 0, 0);
    AddChannels(*rig.network.GetChannelArray("one"), "3:0:0:0 3:0:0:1 3:0:0:2");
    CTypedFrameWnd* frame = rig.network.OpenChannelArrayControlPanel();
    PerformAct(*frame, {ActKind::Choose, kCtrlArray, {}, 0});
    auto* view = dynamic_cast<CSettingsView*>(frame->Children()[0]);
    rig.Frames();
    UserInterface* const before = InstallUserInterface(&busy);
    busy.meanwhile = [this] { rig.network.RemoveArray("one"); };
    EXPECT_EQ(view->OnControlChanged(kCtrlSetAll), 0);
    EXPECT_EQ(rig.Frames(), "3:8C:00") << "the array's own farewell";
    rig.network.DefineArray("two", 0, 0);
    AddChannels(*rig.network.GetChannelArray("two"), "3:0:0:0 3:0:0:1 3:0:0:2");
    PerformAct(*frame, {ActKind::Choose, kCtrlArray, {}, 0});
    busy.meanwhile = [frame] { frame->Close(); };
    EXPECT_EQ(view->OnControlChanged(kCtrlSetAll), 0);
    InstallUserInterface(before);
    EXPECT_TRUE(OpenFrames().empty());
}

} // namespace
} // namespace kalvio::test
