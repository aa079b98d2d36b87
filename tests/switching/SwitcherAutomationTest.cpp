// What scripts do with switchers, and what they are told.

#include "SwitchingRig.h"

namespace kalvio::test {
namespace {

struct Outcome {
    CString value; // "true", "false", or the fault's text
    std::vector<VARIANT> outputs;
};

// A call as text: the name, then numbers, texts without blanks, "&" for an output, "''" for an empty text.
Outcome Script(CCmdTarget& document, const std::string& call) {
    const std::vector<std::string> words = Words(call);
    Outcome outcome;
    outcome.outputs.resize(words.size());
    std::vector<VARIANT> arguments;
    for (std::size_t at = 1; at < words.size(); ++at) {
        if (words[at] == "&") {
            arguments.push_back(VARIANT::Reference(&outcome.outputs[at]));
        } else if (words[at].find_first_not_of("-0123456789") == std::string::npos) {
            arguments.push_back(VARIANT::Short(static_cast<std::int16_t>(std::stoi(words[at]))));
        } else {
            arguments.push_back(VARIANT::String(words[at] == "''" ? "" : words[at]));
        }
    }
    const AutomationResult result = document.Invoke(words[0], arguments);
    outcome.value = result.Ok() ? result.value.ToText() : result.text;
    std::erase_if(outcome.outputs, [](const VARIANT& v) { return v.Type() == AutomationType::Empty; });
    return outcome;
}

std::string ReasonOf(const std::string& word) {
    const Rows rows = TableOf("reasons.txt");
    return std::ranges::find(rows, word, [](const auto& row) { return row[1]; })->at(2);
}

class AutomationTest : public ::testing::Test {
protected:
    // Arrays "mono" (3, bus A, group X), "only" (exclusive only), "other" (devices of another class) and
    // "stereo" (empty).
    AutomationTest() {
        const auto define = [this](const char* name, int stereo, int only, const char* channels) {
            rig.network.DefineArray(name, stereo, only);
            AddChannels(Array(name), channels);
        };
        define("mono", 0, 0, "3:0:0:0 3:0:0:1 3:0:0:2");
        define("only", 0, 1, "4:0:0:0");
        define("other", 0, 0, "9:1:0:0:0:0:31");
        define("stereo", 1, 0, "");
        rig.events.clear();
    }

    CChannelArray& Array(const char* name) { return *rig.network.GetChannelArray(name); }

    // Calls, with what comes of them.
    void Play(CCmdTarget& document, const Rows& rows) {
        for (auto line : rows) {
            line.resize(3);
            SCOPED_TRACE(line[0]);
            rig.host.user.Clear();
            const bool done = line[1] == "ok";
            EXPECT_EQ(Script(document, line[0]).value, VARIANT::Bool(done).ToText());
            lastEvent = rig.events.empty() ? "" : rig.events.back();
            EXPECT_EQ(rig.Frames(), line[2]);
            std::vector<CString> reports;
            if (!done) {
                const CString why = ReasonOf(line[1]);
                const CString end = why.ends_with('.') ? " " : ".";
                const CString what = "The " + Words(line[0])[0] + " method failed because " + why + end;
                reports.push_back(line[1] == "no array" ? why : what);
            }
            EXPECT_EQ(rig.host.user.Texts(), reports);
        }
    }

    SwitchingRig rig;
    CIOSwitcherSettings& switchers = rig.Switchers();
    std::string lastEvent;
};

TEST_F(AutomationTest, ArraysByName) {
    for (CCmdTarget* document : std::initializer_list<CCmdTarget*>{&rig.Arrays(), &switchers}) {
        Play(*document, TableOf("automation.txt", "undefined"));
        Play(*document, Table("SWITCHER_ClearChannels " + CString(10000, 'n') + " | not defined"));
    }
    Play(rig.Arrays(), TableOf("automation.txt", "by_name"));
    EXPECT_EQ(Array("mono").IsStereoArray(), 0);
}

TEST_F(AutomationTest, TheCurrentArray) {
    rig.network.OnArrayRemoved(rig.network.GetCurrentChannelArray());
    Play(rig.network, TableOf("current_array.txt", "none"));
    Play(rig.network, TableOf("current_array.txt", "current"));
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), &Array("other"));
    Play(rig.network, TableOf("current_array.txt", "definitions"));
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), &Array("")) << "the one that was defined last";
    EXPECT_EQ(rig.network.DefineArray(CString(10000, 'n').c_str(), 0, 0), 0);
    rig.host.application.oleDisplay = 0;
    rig.host.user.Clear();
    EXPECT_EQ(Script(rig.network, "CA_AddChannel 9").value, "false");
    EXPECT_TRUE(rig.host.user.Texts().empty());
}

TEST_F(AutomationTest, OneSwitcher) {
    rig.models[3].state = {0x12, 0x34, 0x83, 0x56, 0x78, 2};
    rig.models[3].voltages = {5, 0xFB, 0x7F, 0x80};
    // A bus whose other group no array uses is switched off whole; everything else stays as it was read.
    Play(switchers, TableOf("automation.txt", "one_switcher"));
    EXPECT_EQ(Script(switchers, "IOSWITCHER_GetBusStatus 3 1 &").outputs[0].ToText(),
              std::to_string(0x378FF));
    const Outcome both = Script(switchers, "IOSWITCHER_GetFullStatus 3 & &");
    EXPECT_EQ(both.outputs[0].ToText() + " " + both.outputs[1].ToText(), Format("%d %d", 0x820F12, 0x378FF));
    const Outcome voltages = Script(switchers, "IOSWITCHER_GetBusDC 3 1 & &");
    EXPECT_EQ(voltages.outputs[0].ToText() + voltages.outputs[1].ToText(), "127-128");
    EXPECT_EQ(Script(switchers, "IOSWITCHER_GetBusDC 3 0 & &").outputs[1].ToText(), "-5");
    rig.events.clear();
    Play(switchers, TableOf("automation.txt", "adding"));
    EXPECT_EQ(States(Array("mono")).substr(0, 7), "0/2 0/2") << "the load was noted";
    EXPECT_EQ(Array("mono").GetNumChannels(), 35);
    ChannelDetails entry;
    EXPECT_EQ(Array("stereo").GetChannelDetails(13, entry), 1);
    EXPECT_EQ(entry, (ChannelDetails{5, 0x11, 1, 0, 5, 0, 0}));
}

TEST_F(AutomationTest, BadArgumentsAndFailures) {
    for (const char* call :
         {"IOSWITCHER_GetBusStatus %d 0 &", "IOSWITCHER_GetFullStatus %d & &",
          "IOSWITCHER_BusGroupSwitch %d 0 0 1", "IOSWITCHER_BusLoad %d 0 1", "IOSWITCHER_BusBalance %d 0 1",
          "IOSWITCHER_AddToArray %d 0 0 mono", "IOSWITCHER_AddToStereoArray %d 0 stereo",
          "IOSWITCHER_GetBusDC %d 0 & &", "KVNET_GetStatus %d &", "KVNET_Reset %d 1 &"}) {
        for (const int address : {64, 254, 300, -1, -32768}) {
            const bool device = address == 254 && call[0] == 'I';
            Play(switchers, Table(FormatText(call, address) + (device ? "|device" : "|address")));
        }
    }
    Play(switchers, TableOf("automation.txt", "bad_arguments"));
    EXPECT_EQ(Array("mono").GetNumChannels() + Array("stereo").GetNumChannels(), 3);
    for (const char* call : {"IOSWITCHER_GetBusStatus 3 2 &", "IOSWITCHER_GetFullStatus 64 & &",
                             "IOSWITCHER_GetBusDC 3 2 & &"}) {
        const bool voltage = CString(call).find("DC") != CString::npos;
        for (const VARIANT& output : Script(switchers, call).outputs) {
            EXPECT_EQ(output.Type(), voltage ? AutomationType::Short : AutomationType::Long);
        }
    }
    rig.silent = 3;
    Play(switchers, TableOf("automation.txt", "silent"));
    EXPECT_EQ(lastEvent, "-603") << "the array has its channels all the same";
}

// What a wrong answer to the second frame is reported as, after views were told.
TEST_F(AutomationTest, WrongEchoes) {
    for (const auto& row : TableOf("automation.txt", "echoes")) {
        rig.scripted = [answer = Hex(row[3])](std::span<const std::uint8_t> frame) {
            return AnswerFrame(3, frame[3], frame[3] < 0x88 ? answer : Bytes(3));
        };
        Play(switchers, {{row[0], row[1], row[2]}});
        EXPECT_EQ(lastEvent, row[4]);
    }
    EXPECT_EQ(States(Array("mono")), "0 0 0") << "no load is noted";
}

TEST_F(AutomationTest, SwitchersOnDemand) {
    rig.models[4].status[0] = 0x21;
    rig.silent = 5;
    // Address and force; whether one is made, its not-responding flag and status word.
    for (const auto& row : Table("3 0 | 1 0 10011\n4 0 | 0\n4 1 | 1 0 10021\n5 0 | 0\n5 1 | 1 1 00000")) {
        const auto asked = Words(row[0]);
        const std::unique_ptr<CIOSwitcher> made(CIOSwitcherSettings::CreateIOSwitcher(
            static_cast<std::uint8_t>(std::stoi(asked[0])), std::stoi(asked[1])));
        EXPECT_EQ(made == nullptr
                      ? "0"
                      : Format("1 %d %05X", made->IsNotResponding(), made->Status().GetStatusWord()),
                  row[1]);
    }
    EXPECT_TRUE(rig.host.user.Texts().empty() && rig.network.GetShowErrorMessages() == 1);
    EXPECT_EQ(Script(switchers, "KVNET_GetStatus 3 &").outputs[0].ToText(), std::to_string(0x10011));
    EXPECT_EQ(Script(switchers, "KVNET_Reset 3 0 &").outputs[0].ToText(), std::to_string(0x00011));
    EXPECT_TRUE(switchers.SetProperty("KVNET_ShowErrorMessages", VARIANT::Bool(false)).Ok());
    EXPECT_EQ(rig.network.GetShowErrorMessages(), 0);
    // Without a network nothing is done and nobody falls over.
    rig.host.application.kvNet = nullptr;
    for (const char* call : {"SWITCHER_ClearChannels mono", "IOSWITCHER_AddToArray 3 0 0 mono",
                             "KVNET_ShowErrorMessages", "KVNET_Reset 3 1 &"}) {
        EXPECT_EQ(Script(switchers, call).value, "false");
    }
    EXPECT_EQ(CIOSwitcherSettings::CreateIOSwitcher(3, 1), nullptr);
    rig.host.application.kvNet = &rig.network;
}

TEST_F(AutomationTest, DefinitionsAreFlags) {
    for (const char* flags : {"1 0", "0 1"}) {
        EXPECT_EQ(Script(rig.network, std::string("KVNET_DefineChannelArray flagged ") + flags).value,
                  "true");
        EXPECT_EQ(Format("%d %d", Array("flagged").IsStereoArray(), Array("flagged").GetExclusiveOnly()),
                  flags);
        EXPECT_EQ(rig.network.RemoveArray("flagged"), 0);
    }
}

TEST_F(AutomationTest, ADeviceIsAskedBeforeItIsUpdated) {
    const std::unique_ptr<CIOSwitcher> device(CIOSwitcherSettings::CreateIOSwitcher(3, 1));
    EXPECT_EQ(device->CKvNetDevice::UpdateDeviceFromSettings(), 1);
    bool obeys = true;
    rig.scripted = [&obeys](std::span<const std::uint8_t> frame) { // it is in standby now
        const std::uint8_t on = frame[3] == 0xFF ? 1 : 0;
        return on != 0 && !obeys ? Bytes() : AnswerFrame(3, frame[3], {0x11, 0, on});
    };
    EXPECT_EQ(device->CKvNetDevice::UpdateDeviceFromSettings(), 1);
    obeys = false;
    EXPECT_EQ(device->CKvNetDevice::UpdateDeviceFromSettings(), 0) << "it cannot be switched on";
    EXPECT_EQ(device->ResetDevice(1), 0);
    EXPECT_EQ(device->IsNotResponding(), 1);
    EXPECT_EQ(device->ResetDevice(0), 1) << "there is nobody to switch off";
    rig.scripted = [](std::span<const std::uint8_t>) { return Bytes(); };
    EXPECT_EQ(device->CKvNetDevice::UpdateDeviceFromSettings() + device->RefreshStatus(), 0);
}

TEST_F(AutomationTest, TreeAndWindow) {
    EXPECT_EQ(Script(switchers, "IOSWITCHER_BUS_B").value + Script(switchers, "IOSWITCHER_GROUP_Y").value,
              "11");
    COLETreeCtrl tree;
    rig.Arrays().PopulateOLETreeCtrl(&tree, nullptr);
    const HTREEITEM folder = tree.GetChildItem(tree.GetRootItem());
    std::string items = folder->text + Format(" %d", folder->id);
    for (HTREEITEM item = tree.GetChildItem(folder); item != nullptr; item = tree.GetNextSiblingItem(item)) {
        items += "; " + item->text + Format(" %d", item->id);
    }
    EXPECT_EQ(items, "I/O Switcher 10600; Get bus status 10620; Get full status 10621; "
                     "Switch relays for bus/group 10622; Load for bus 10623; Balance for bus 10624; "
                     "Get bus DC 10627; Add bus/group to array definition 10625; "
                     "Add group to stereo array definition 10626");
    EXPECT_EQ(rig.host.application.GetDocForID(HINT_SWITCHER_CHANGED), &rig.Arrays());

    switchers.SetViewFactory(nullptr);
    EXPECT_EQ(switchers.OpenIOSwitcherControlPanel(), nullptr);
    EXPECT_EQ(rig.host.user.Boxes().size(), 1U) << "there is no such window without a factory";
    switchers.SetViewFactory([] { return std::make_unique<CView>(); });
    EXPECT_EQ(switchers.OpenIOSwitcherControlPanel()->GetText(), "I/O Switcher Diagnostic Control");
    switchers.SetViewFactory([]() -> std::unique_ptr<CView> { throw int{kTextReasonUnknown}; });
    EXPECT_EQ(switchers.OpenIOSwitcherControlPanel(), nullptr);
    EXPECT_EQ(rig.host.user.Texts().back(), "an unknown error occurred");
}

} // namespace
} // namespace kalvio::test
