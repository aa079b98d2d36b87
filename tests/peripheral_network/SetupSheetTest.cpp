// The setup sheet, act by act.

#include "peripheral_network/KvNetSetupPropertySheet.h"
#include "peripheral_network/NetworkRig.h"
#include "switching/SwitchingRig.h"

namespace kalvio::test {
namespace {

class SetupSheetTest : public ::testing::Test {
protected:
    // Switchers at 3 and 5, an adapter at 7, something unknown at 9.
    SetupSheetTest() {
        for (std::uint8_t address = 0; address < 64; ++address) {
            if (address % 2 == 0 || address < 3 || address > 9) {
                rig.unit.AttachPeripheral(address, nullptr);
            }
        }
        rig.models[3].status = {0x11, 0x20, 1};
        rig.models[7].status = {0x21, 0x13, 1};
        rig.models[9].status = {0x35, 0x00, 0};
        rig.host.application.oleDisplay = 1;
    }

    // What the network has: name, stereo, exclusive only, then runs of address.bus.group:channels and states.
    std::string Live() {
        std::string text;
        for (int index = 0; index < rig.network.GetChannelArrayList()->GetCount(); ++index) {
            const CChannelArray& array = *rig.network.GetChannelArrayList()->GetAt(index);
            text += Format("%s%s/%d%d", index == 0 ? "" : ", ", array.GetName().c_str(),
                           array.IsStereoArray(), array.GetExclusiveOnly());
            ChannelDetails channel;
            for (short at = 0; array.GetChannelDetails(at, channel) != 0; ++at) {
                text += channel.channel == 0
                            ? Format(" %d.%d.%d:", channel.address, channel.bus, channel.group)
                            : std::string();
                text += Format("%X", channel.channel) + (channel.state != 0 ? "+" : "") +
                        (array.IsStereoArray() != 0 ? Format("%c", 'a' + channel.bus) : std::string());
            }
        }
        return text;
    }

    void Play(const char* name) {
        WindowScript script(rig.host, __FILE__, name);
        script.frames = [this] { // but for the data of firmware
            std::string frames;
            for (const std::string& frame : Words(rig.Frames())) {
                frames += (frames.empty() ? "" : " ") + frame.substr(0, 21);
            }
            return frames;
        };
        script.words["setup"] = [this](const std::string&) { rig.network.OnMenuCommand(33192); };
        script.words["live"] = [&](const std::string&) { script.Note(Live()); };
        TeachNetwork(script, rig);
        script.words["on"] = [this](const std::string& rest) { // name, channel
            const auto words = Words(rest);
            rig.network.GetChannelArray(words[0].c_str())
                ->AddRemoveChannel(static_cast<short>(std::stoi(words[1])), 1);
        };
        script.words["sweep"] = [this](const std::string& rest) {
            rig.host.application.sweepAxes[0] = {kSweepChannelArray, nullptr, true,
                                                 rig.network.GetChannelArray(rest.c_str())};
        };
        script.words["firmware"] = [this](const std::string& rest) {
            rig.host.user.QueueFile(rig.WriteFile("new.fw", Firmware({{1, std::stoi(rest)}})));
            rig.scripted = [this](std::span<const std::uint8_t> frame) {
                return frame[3] == 0xB1 ? AnswerFrame(frame[1], 0xCF, {})
                                        : AnswerFrame(frame[1], frame[3], rig.models[frame[1]].status);
            };
        };
        script.words["press"] = [&](const std::string& rest) {
            dynamic_cast<CDialog&>(*script.window).PressButton(std::stoi(rest));
        };
        const int observer =
            rig.host.application.AddViewObserver([&](CView* sender, int hint, void*, int flag) {
                if (hint <= HINT_ARRAY_ADDED && hint != HINT_DEVICE_CHANGED) {
                    script.Note("hint " + HintText(sender, hint, flag));
                }
            });
        script.Play();
        rig.host.application.RemoveViewObserver(observer);
        EXPECT_TRUE(rig.unit.ProtocolErrors().empty());
    }

    SwitchingRig rig;
};

TEST_F(SetupSheetTest, GeneralPage) {
    Play("windows/setup_general.txt");
}

TEST_F(SetupSheetTest, ChannelArrayPage) {
    Play("windows/setup_arrays.txt");
}

TEST_F(SetupSheetTest, EveryAct) {
    Play("windows/setup_acts.txt");
}

TEST_F(SetupSheetTest, ThingsHappenUnderTheSheet) {
    Play("windows/setup_disturbed.txt");
}

TEST_F(SetupSheetTest, HelpAndNoNetwork) {
    rig.host.user.onDialog = [](CDialog& dialog) {
        EXPECT_EQ(dialog.GetContextHelpId(), 1028);
        dialog.PressEscape();
    };
    CKvNetSetupPropertySheet sheet("Kv-NET Peripheral Setup", nullptr, 1);
    EXPECT_EQ(sheet.DoModal(), IDCANCEL);
    EXPECT_FALSE(sheet.SetActivePage(2));
    // Without a network there is nothing to set up.
    rig.host.application.kvNet = nullptr;
    EXPECT_EQ(sheet.DoModal(), IDCANCEL);
    EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{"Failed to initialise the Kv-NET setup window."});
    rig.host.application.kvNet = &rig.network;
}

} // namespace
} // namespace kalvio::test
