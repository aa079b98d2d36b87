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
    std::vector<std::string> words = Words(call);
    Outcome outcome;
    outcome.outputs.resize(words.size());
    std::vector<VARIANT> arguments;
    for (std::size_t at = 1; at < words.size(); ++at) {
        const bool number = words[at].find_first_not_of("-0123456789") == std::string::npos;
        if (words[at] == "&") {
            arguments.push_back(VARIANT::Reference(&outcome.outputs[at]));
        } else if (number) {
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

struct Line {
    const char* call;
    bool done;
    const char* reason; // after "The ... method failed because "
    const char* frames;
};

class AutomationTest : public ::testing::Test {
protected:
    // Arrays "mono" (3, bus A, group X), "stereo" (empty), "only" (exclusive only) and "keda" (adapters).
    AutomationTest() {
        for (const char* name : {"mono", "only", "keda"}) {
            rig.network.DefineArray(name, 0, CString(name) == "only" ? 1 : 0);
        }
        rig.network.DefineArray("stereo", 1, 0);
        AddChannels(*rig.network.GetChannelArray("mono"), "3:0:0:0-7");
        AddChannels(*rig.network.GetChannelArray("only"), "4:0:0:0-1");
        AddChannels(*rig.network.GetChannelArray("keda"), "k9:1:0:0");
    }

    void Play(CCmdTarget& document, std::span<const Line> lines) {
        for (const Line& line : lines) {
            SCOPED_TRACE(line.call);
            rig.events.clear();
            rig.network.reports.clear();
            EXPECT_EQ(Script(document, line.call).value, VARIANT::Bool(line.done).ToText());
            EXPECT_EQ(rig.Frames(), line.frames);
            const std::string name = Words(line.call)[0];
            const std::vector<CString> reports{"The " + name + " method failed because " + line.reason + "."};
            EXPECT_EQ(rig.network.reports, line.done ? std::vector<CString>{} : reports);
        }
    }

    SwitchingRig rig;
    CIOSwitcherSettings& switchers = rig.network.IOSwitchers();
};

constexpr const char* kNotDefined = "the specified Channel Array has not been defined";
constexpr const char* kNoChannel = "the specified channel does not exist in the Channel Array";
constexpr const char* kExists = "the specified array already exists";
constexpr const char* kUnknown = "an unknown error occurred";
constexpr const char* kTimeout = "the hardware timed out waiting for a response from the device";
constexpr const char* kNoDevice = "an invalid Kv-NET device type was specified";
constexpr const char* kUnknownDevice = "the Kalvio does not know about this type of Kv-Net device";
constexpr const char* kBadAddress = "the 'sAddress' parameter passed is invalid";
constexpr const char* kBadBus = "the 'sBus' parameter passed is invalid";
constexpr const char* kBadGroup = "the 'sGroup' parameter passed is invalid";
constexpr const char* kStereo =
    "an attempt was made to add stereo channels to a non-stereo Channel Array, or vice versa";
constexpr const char* kConflict = "a conflict was detected with some details already in the Channel Array";

TEST_F(AutomationTest, ArraysByName) {
    const Line lines[] = {
        {"SWITCHER_ExclusiveChannel MONO 2", true, "", "3:8C:00 3:8C:02"},
        {"SWITCHER_NotChannel mono 1", true, "", "3:8C:FF 3:8C:FE"},
        {"SWITCHER_AddChannel mono 1", true, "", "3:84:00"},
        {"SWITCHER_RemoveChannel mono 8", true, "", "3:86:07"},
        {"SWITCHER_ClearChannels mono", true, "", "3:8C:00"},
        {"SWITCHER_ClearChannels mono", true, "", ""},
        {"SWITCHER_SetAllChannels mono", true, "", "3:82:FFFF00"},
        {"SWITCHER_Balance mono 1", true, "", "3:8A:01"},
        {"SWITCHER_ExclusiveChannel mono 0", false, kNoChannel, ""},
        {"SWITCHER_NotChannel mono 9", false, kNoChannel, ""},
        {"SWITCHER_AddChannel mono -1", false, kNoChannel, ""},
        {"SWITCHER_RemoveChannel mono 32767", false, kNoChannel, ""},
        {"SWITCHER_AddChannel only 1", false, kUnknown, ""},
        {"SWITCHER_SetAllChannels only", false, kUnknown, ""},
        {"SWITCHER_AddChannel keda 1", false, kNoDevice, ""},
        {"SWITCHER_ExclusiveChannel none 1", false, kNotDefined, ""},
        {"SWITCHER_NotChannel nobody 1", false, kNotDefined, ""},
        {"SWITCHER_AddChannel none 1", false, kNotDefined, ""},
        {"SWITCHER_RemoveChannel none 1", false, kNotDefined, ""},
        {"SWITCHER_ClearChannels none", false, kNotDefined, ""},
        {"SWITCHER_Balance none 0", false, kNotDefined, ""},
        {"SWITCHER_DefineArray Mono", false, kExists, ""},
        {"SWITCHER_DefineStereoArray Mono", false, kExists, ""},
        {"SWITCHER_RemoveArray none", false, kNotDefined, ""},
        {"SWITCHER_RemoveArray MONO", true, "", ""},
        {"SWITCHER_DefineStereoArray mono", true, "", ""},
        {"SWITCHER_RemoveArray mono", true, "", ""},
        {"SWITCHER_DefineArray ''", true, "", ""},
        {"SWITCHER_DefineArray mono", true, "", ""},
    };
    Play(rig.network.switchers, lines);
    EXPECT_EQ(rig.network.GetChannelArray("mono")->IsStereoArray(), 0);
    EXPECT_EQ(Script(rig.network.switchers, "SWITCHER_ClearChannels " + std::string(10000, 'n')).value,
              "false");

    // The I/O switchers' document hands the same on, but for one.
    rig.network.RemoveArray("mono");
    const std::string leftOut = "SWITCHER_SetAllChannels";
    for (const Line& line : lines) {
        if (Words(line.call)[0] == leftOut) {
            EXPECT_EQ(switchers.FindName(leftOut), nullptr);
        } else if (!line.done && CString(line.reason) == kNotDefined) {
            Play(switchers, {&line, 1});
        }
    }
}

TEST_F(AutomationTest, OneSwitcher) {
    rig.models[3].state = {0x12, 0x34, 3, 0x56, 0x78, 2};
    rig.models[3].voltages = {5, 0xFB, 0x7F, 0x80};
    const Line lines[] = {
        {"IOSWITCHER_GetBusStatus 3 0 &", true, "", "3:88:"},
        {"IOSWITCHER_GetFullStatus 3 & &", true, "", "3:80:"},
        {"IOSWITCHER_GetBusDC 3 1 & &", true, "", "3:92:"},
        {"IOSWITCHER_BusGroupSwitch 3 0 1 15", true, "", "3:88: 3:82:120F03"},
        {"IOSWITCHER_BusGroupSwitch 3 1 0 -1", true, "", "3:89: 3:83:FF7802"},
        {"IOSWITCHER_BusLoad 3 0 0", true, "", "3:88: 3:82:120F01"},
        {"IOSWITCHER_BusLoad 3 0 1", true, "", "3:88: 3:82:120F03"},
        {"IOSWITCHER_BusBalance 3 1 1", true, "", "3:89: 3:83:FF7803"},
        {"IOSWITCHER_BusBalance 3 0 0", true, "", "3:88: 3:82:120F02"},
        // A bus that no array uses otherwise is switched off whole.
        {"IOSWITCHER_AddToArray 3 1 1 mono", true, "", "3:83:000000"},
        {"IOSWITCHER_AddToArray 3 0 1 mono", true, "", "3:8E:00"},
        {"IOSWITCHER_AddToStereoArray 5 1 stereo", true, "", "5:81:000000000000"},
        {"IOSWITCHER_AddToStereoArray 5 0 stereo", true, "", "5:8C:00 5:8D:00"},
        {"IOSWITCHER_AddToArray 3 0 0 stereo", false, kStereo, ""},
        {"IOSWITCHER_AddToStereoArray 3 0 mono", false, kStereo, ""},
        {"IOSWITCHER_AddToArray 3 0 0 none", false, kNotDefined, ""},
        {"IOSWITCHER_AddToStereoArray 3 0 none", false, kNotDefined, ""},
        {"IOSWITCHER_AddToArray 3 0 0 keda", false, kConflict, ""},
    };
    Play(switchers, lines);
    EXPECT_EQ(Script(switchers, "IOSWITCHER_GetBusStatus 3 1 &").outputs[0].ToText(), Format("%d", 0x30000));
    const Outcome both = Script(switchers, "IOSWITCHER_GetFullStatus 3 & &");
    EXPECT_EQ(both.outputs[0].ToText(), Format("%d", 0x20012));
    EXPECT_EQ(both.outputs[1].ToText(), Format("%d", 0x30000));
    const Outcome voltages = Script(switchers, "IOSWITCHER_GetBusDC 3 1 & &");
    EXPECT_EQ(voltages.outputs[0].ToText() + voltages.outputs[1].ToText(), "127-128");
    EXPECT_EQ(Script(switchers, "IOSWITCHER_GetBusDC 3 0 & &").outputs[1].ToText(), "-5");
    EXPECT_EQ(rig.network.GetChannelArray("mono")->GetNumChannels(), 24);
    ChannelDetails entry;
    ASSERT_EQ(rig.network.GetChannelArray("stereo")->GetChannelDetails(13, entry), 1);
    EXPECT_EQ(entry, (ChannelDetails{5, 0x11, 1, 0, 5, 0, 0}));
    EXPECT_EQ(States(*rig.network.GetChannelArray("mono")).substr(0, 7), "0/2 0/2") << "the load was noted";
}

TEST_F(AutomationTest, BadArgumentsAndFailures) {
    const char* const calls[] = {
        "IOSWITCHER_GetBusStatus %d 0 &",
        "IOSWITCHER_GetFullStatus %d & &",
        "IOSWITCHER_BusGroupSwitch %d 0 0 1",
        "IOSWITCHER_BusLoad %d 0 1",
        "IOSWITCHER_BusBalance %d 0 1",
        "IOSWITCHER_AddToArray %d 0 0 mono",
        "IOSWITCHER_AddToStereoArray %d 0 stereo",
        "IOSWITCHER_GetBusDC %d 0 & &",
        "KVNET_GetStatus %d &",
        "KVNET_Reset %d 1 &",
    };
    for (const char* call : calls) {
        for (const int address : {64, 254, 255, 300, -1, -32768}) {
            const bool network = call[0] == 'K';
            if (network && address == 255 && CString(call).starts_with("KVNET_Reset")) {
                continue; // a broadcast
            }
            const std::string text = FormatText(call, address);
            const Line line{text.c_str(), false, address == 254 && !network ? kUnknownDevice : kBadAddress,
                            ""};
            Play(switchers, {&line, 1});
        }
    }
    const Line lines[] = {
        {"IOSWITCHER_GetBusStatus 3 2 &", false, kBadBus, ""},
        {"IOSWITCHER_GetBusDC 3 -1 & &", false, kBadBus, ""},
        {"IOSWITCHER_BusLoad 3 256 1", false, kBadBus, ""},
        {"IOSWITCHER_BusBalance 3 300 1", false, kBadBus, ""},
        {"IOSWITCHER_BusGroupSwitch 3 2 2 1", false, kBadBus, ""},
        {"IOSWITCHER_BusGroupSwitch 3 1 2 1", false, kBadGroup, ""},
        {"IOSWITCHER_AddToArray 3 2 0 mono", false, kBadBus, ""},
        {"IOSWITCHER_AddToArray 3 0 256 mono", false, kBadGroup, ""},
        {"IOSWITCHER_AddToStereoArray 3 -1 stereo", false, kBadGroup, ""},
    };
    Play(switchers, lines);
    EXPECT_EQ(rig.network.GetChannelArray("mono")->GetNumChannels(), 8);
    EXPECT_EQ(rig.network.GetChannelArray("stereo")->GetNumChannels(), 0);
    for (const char* call : {"IOSWITCHER_GetBusStatus 3 2 &", "IOSWITCHER_GetFullStatus 64 & &",
                             "IOSWITCHER_GetBusDC 3 2 & &"}) {
        const bool voltage = CString(call).find("DC") != CString::npos;
        for (const VARIANT& output : Script(switchers, call).outputs) {
            EXPECT_EQ(output.Type(), voltage ? AutomationType::Short : AutomationType::Long);
        }
    }
    rig.silent = 3;
    const Line silent[] = {
        {"IOSWITCHER_GetBusStatus 3 0 &", false, kTimeout, "3:88: 3:88:"},
        {"IOSWITCHER_GetFullStatus 3 & &", false, kTimeout, "3:80: 3:80:"},
        {"IOSWITCHER_GetBusDC 3 0 & &", false, kTimeout, "3:92: 3:92:"},
        {"IOSWITCHER_BusLoad 3 0 1", false, kTimeout, "3:88: 3:88:"},
        {"IOSWITCHER_AddToArray 3 1 0 mono", false, kTimeout, "3:83:000000 3:83:000000"},
    };
    Play(switchers, silent);
    EXPECT_EQ(rig.events.back(), "-603") << "the array has its channels all the same";
}

// What a wrong answer to the second frame is reported as, after views were told.
TEST_F(AutomationTest, WrongEchoes) {
    const struct {
        const char* call;
        Bytes answer; // of the set frame
        const char* parameter;
        const char* hint;
    } table[] = {
        {"IOSWITCHER_BusGroupSwitch 3 0 0 15", {0x0E, 0, 0}, "'Mask' status", "-609 11030000"},
        {"IOSWITCHER_BusGroupSwitch 3 1 1 15", {0x0F, 0x1F, 0}, "'Mask' status", "-609 11030101"},
        {"IOSWITCHER_BusLoad 3 0 1", {0, 0, 1}, "'On' status", "-609 110300FF"},
        {"IOSWITCHER_BusLoad 3 0 0", {0, 0, 2}, "'On' status", "-609 110300FF"},
        {"IOSWITCHER_BusBalance 3 1 1", {0, 0, 2}, "'On' status", "-609 110301FF"},
        {"IOSWITCHER_BusBalance 3 1 0", {9, 9, 2}, nullptr, "-609 110301FF"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.call);
        rig.network.reports.clear();
        rig.scripted = [&row](std::span<const std::uint8_t> frame) {
            return AnswerFrame(3, frame[3], frame[3] < 0x88 ? row.answer : Bytes(3));
        };
        EXPECT_EQ(Script(switchers, row.call).value, VARIANT::Bool(row.parameter == nullptr).ToText());
        EXPECT_EQ(rig.events.back(), row.hint);
        const CString method = Words(row.call)[0];
        EXPECT_EQ(rig.network.reports,
                  row.parameter == nullptr
                      ? std::vector<CString>{}
                      : std::vector<CString>{"The " + method + " method failed because the " + row.parameter +
                                             " field of the response disagrees with the parameters passed."});
    }
    EXPECT_EQ(States(*rig.network.GetChannelArray("mono")), "0 0 0 0 0 0 0 0") << "no load is noted";
}

TEST_F(AutomationTest, SwitchersOnDemand) {
    rig.network.statusWords = {{3, 0x10011}, {4, 0x10021}};
    const struct {
        int address;
        int force;
        bool made;
        int notResponding;
        std::uint32_t word;
    } table[] = {{3, 0, true, 0, 0x10011},
                 {4, 0, false, 0, 0},
                 {4, 1, true, 0, 0x10021},
                 {5, 0, false, 0, 0},
                 {5, 1, true, 1, 0}};
    for (const auto& row : table) {
        const std::unique_ptr<CIOSwitcher> made(
            CIOSwitcherSettings::CreateIOSwitcher(static_cast<std::uint8_t>(row.address), row.force));
        ASSERT_EQ(made != nullptr, row.made);
        if (made != nullptr) {
            EXPECT_EQ(made->GetAddress(), row.address);
            EXPECT_EQ(made->IsNotResponding(), row.notResponding);
            EXPECT_EQ(made->Status().GetStatusWord(), row.word);
        }
    }
    EXPECT_TRUE(rig.network.reports.empty());
    EXPECT_EQ(rig.network.show, 1);
    EXPECT_EQ(Script(switchers, "KVNET_GetStatus 3 &").outputs[0].ToText(), Format("%d", 0x10011));
    EXPECT_EQ(Script(switchers, "KVNET_Reset 3 0 &").outputs[0].ToText(), Format("%d", 0x00011));
    EXPECT_TRUE(switchers.SetProperty("KVNET_ShowErrorMessages", VARIANT::Bool(false)).Ok());
    EXPECT_EQ(rig.network.show, 0);
    // Without a network nothing is done and nobody falls over.
    rig.host.application.kvNet = nullptr;
    EXPECT_EQ(Script(rig.network.switchers, "SWITCHER_ClearChannels mono").value, "false");
    EXPECT_EQ(Script(switchers, "IOSWITCHER_AddToArray 3 0 0 mono").value, "false");
    EXPECT_EQ(Script(switchers, "KVNET_ShowErrorMessages").value, "false");
    EXPECT_EQ(CIOSwitcherSettings::CreateIOSwitcher(3, 1), nullptr);
    rig.host.application.kvNet = &rig.network;
}

std::string NamesOf(const CCmdTarget& document) {
    std::string names;
    for (const DispatchEntry& entry : document.GetDispatchMap()) {
        names += CString(names.empty() ? "" : " ") + entry.name;
    }
    return names;
}

TEST_F(AutomationTest, NamesTreesAndWindows) {
    EXPECT_EQ(NamesOf(rig.network.switchers),
              "SWITCHER_ExclusiveChannel SWITCHER_NotChannel SWITCHER_AddChannel SWITCHER_RemoveChannel "
              "SWITCHER_ClearChannels SWITCHER_SetAllChannels SWITCHER_Balance SWITCHER_DefineArray "
              "SWITCHER_DefineStereoArray SWITCHER_RemoveArray");
    EXPECT_EQ(NamesOf(switchers),
              "KVNET_ShowErrorMessages IOSWITCHER_BUS_A IOSWITCHER_BUS_B IOSWITCHER_GROUP_X "
              "IOSWITCHER_GROUP_Y KVNET_GetStatus KVNET_Reset SWITCHER_ExclusiveChannel SWITCHER_NotChannel "
              "SWITCHER_AddChannel SWITCHER_RemoveChannel SWITCHER_ClearChannels SWITCHER_Balance "
              "SWITCHER_DefineArray SWITCHER_DefineStereoArray SWITCHER_RemoveArray IOSWITCHER_GetBusStatus "
              "IOSWITCHER_GetFullStatus IOSWITCHER_BusGroupSwitch IOSWITCHER_BusLoad IOSWITCHER_BusBalance "
              "IOSWITCHER_AddToArray IOSWITCHER_AddToStereoArray IOSWITCHER_GetBusDC");
    EXPECT_EQ(Script(switchers, "IOSWITCHER_BUS_B").value, "1");
    EXPECT_EQ(Script(switchers, "IOSWITCHER_GROUP_X").value, "0");

    COLETreeCtrl tree;
    rig.network.switchers.PopulateOLETreeCtrl(&tree, nullptr);
    const HTREEITEM folder = tree.GetChildItem(tree.GetRootItem());
    std::string items = folder->text + Format(" %d", folder->id);
    for (HTREEITEM item = tree.GetChildItem(folder); item != nullptr; item = tree.GetNextSiblingItem(item)) {
        items += "; " + item->text + Format(" %d", item->id);
    }
    EXPECT_EQ(items, "I/O Switcher 10600; Get bus status 10620; Get full status 10621; "
                     "Switch relays for bus/group 10622; Load for bus 10623; Balance for bus 10624; "
                     "Get bus DC 10627; Add bus/group to array definition 10625; "
                     "Add group to stereo array definition 10626");
    EXPECT_EQ(rig.host.application.GetDocForID(HINT_SWITCHER_CHANGED), &rig.network.switchers);

    EXPECT_EQ(switchers.OpenIOSwitcherControlPanel(), nullptr);
    ASSERT_EQ(rig.host.user.Boxes().size(), 1U) << "there is no such window without a factory";
    EXPECT_EQ(rig.host.user.Boxes()[0].icon, BoxIcon::Exclamation);
    switchers.SetViewFactory([] { return std::make_unique<CView>(); });
    ASSERT_NE(switchers.OpenIOSwitcherControlPanel(), nullptr);
    EXPECT_EQ(switchers.OpenIOSwitcherControlPanel()->GetText(), "I/O Switcher Diagnostic Control");
    switchers.SetViewFactory([]() -> std::unique_ptr<CView> { throw int{kTextReasonUnknown}; });
    EXPECT_EQ(switchers.OpenIOSwitcherControlPanel(), nullptr);
    EXPECT_EQ(rig.host.user.Texts().back(), "an unknown error occurred");
}

} // namespace
} // namespace kalvio::test
