#include "peripheral_network/NetworkRig.h"
#include "platform/Archive.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "switching/ChannelArray.h"

namespace kalvio::test {
namespace {

const CString kNoChannel =
    " method failed because the specified channel does not exist in the Channel Array.]";
const CString kUnknown = " method failed because an unknown error occurred.]";

struct KvNetArraysTest : testing::Test {
    KvNetArraysTest() {
        rig.unit.AttachPeripheral(3, [this](auto frame) {
            rig.events += ToHex(frame.subspan(1, frame.size() - 3)) + " ";
            return switcher.Answer(frame, 0).bytes;
        });
    }
    // What happened, without the hints of switchers.
    CString Take() {
        CString all = rig.Take();
        for (std::size_t at = all.find(':'); at != CString::npos; at = all.find(':')) {
            all.erase(at - 4, 14);
        }
        return all;
    }
    // Calls a method; what happened, "!" in front when it answered FALSE.
    CString Call(const CString& name, std::vector<VARIANT> arguments = {}) {
        const bool done = rig.Call(name.c_str(), std::move(arguments));
        return (done ? "" : "!") + Take();
    }
    CString Define(const CString& name, bool exclusiveOnly = false) {
        return Call("KVNET_DefineChannelArray",
                    {VARIANT::String(name), VARIANT::Bool(false), VARIANT::Bool(exclusiveOnly)});
    }
    void AddGroup(const char* name, std::uint8_t address, std::uint8_t bus, std::uint8_t group,
                  int flags = 0) {
        for (std::uint8_t channel = 0; channel < 8; ++channel) {
            EXPECT_EQ(rig.network.AddChannelToArray(name, address, 0x11, bus, group, channel,
                                                    static_cast<std::uint8_t>(flags)),
                      0);
        }
    }
    int FlagsOf(const char* array, short channel) {
        ChannelDetails details;
        EXPECT_EQ(rig.network.GetChannelArray(array)->GetChannelDetails(channel, details), 1);
        return details.flags;
    }
    Bytes Stored() {
        CArchive archive;
        rig.network.Serialize(archive);
        return archive.Bytes();
    }
    bool Load(const Bytes& bytes, int revision = 99) {
        CArchive archive(bytes);
        archive.SetFileVersion(101, revision);
        return rig.network.Load(archive, error);
    }

    NetworkRig rig;
    simulator::IoSwitcher switcher{3};
    CString error;
};

TEST_F(KvNetArraysTest, ScriptsSwitchTheCurrentArray) {
    const auto one = [](int channel) { return std::vector<VARIANT>{VARIANT::Long(channel)}; };
    ASSERT_EQ(Define("Inputs"), "-602 ");
    AddGroup("inputs", 3, 0, 0);
    EXPECT_EQ(Call("CA_ExclusiveChannel", one(2)), "03018C00 03018C02 ");
    EXPECT_EQ(Call("CA_AddChannel", one(8)), "03018407 ");
    EXPECT_EQ(Call("CA_RemoveChannel", one(2)), "03018601 ");
    EXPECT_EQ(Call("CA_NotChannel", one(1)), "03018CFF 03018CFE ");
    EXPECT_EQ(Call("CA_SetAllChannels"), "030382FFFF00 ");
    EXPECT_EQ(Call("CA_ClearChannels"), "03018C00 ");
    EXPECT_EQ(Call("CA_ClearChannels"), "03018C00 ") << "whatever the states";
    EXPECT_EQ(Call("CA_Balance", {VARIANT::Bool(true)}), "03018A01 -608 ");

    // What goes wrong: with its reason where a channel is named, unknown elsewhere.
    for (const CString name : {"CA_ExclusiveChannel", "CA_NotChannel", "CA_AddChannel", "CA_RemoveChannel"}) {
        for (const int channel : {0, 9, -1, 32767}) {
            EXPECT_EQ(Call(name, one(channel)), Format("![The %s%s", name.c_str(), kNoChannel.c_str()));
        }
    }
    rig.unit.AttachPeripheral(3, nullptr);
    EXPECT_EQ(Call("CA_SetAllChannels"), "![The CA_SetAllChannels" + kUnknown);
    EXPECT_EQ(Call("CA_ClearChannels"), "![The CA_ClearChannels" + kUnknown);
    EXPECT_EQ(Call("CA_Balance", {VARIANT::Bool(false)}), "![The CA_Balance" + kUnknown);
    EXPECT_EQ(Call("CA_AddChannel", one(1)),
              "![The CA_AddChannel method failed because the hardware timed out "
              "waiting for a response from the device.]");
}

TEST_F(KvNetArraysTest, WithoutACurrentOrWithAnExclusiveArray) {
    const auto call = [this](const CString& name) {
        const bool bare = name == "CA_SetAllChannels" || name == "CA_ClearChannels";
        return Call(name, bare ? std::vector<VARIANT>{} : std::vector<VARIANT>{VARIANT::Short(1)});
    };
    const CString always[] = {"CA_ExclusiveChannel", "CA_ClearChannels", "CA_Balance"};
    const CString independent[] = {"CA_NotChannel", "CA_AddChannel", "CA_RemoveChannel", "CA_SetAllChannels"};
    for (const CString& name : always) {
        EXPECT_EQ(call(name),
                  "![You must use the KVNET_SetChannelArray(strName) method to select the current Channel "
                  "Array before trying to use Channel Array methods.]");
    }
    Define("Only %s", true);
    AddGroup("Only %s", 3, 0, 0);
    for (const CString& name : independent) {
        EXPECT_EQ(call(name), "![The " + name +
                                  " method failed because the Only %s Channel Array can only have its "
                                  "channels turned on exclusively. ]");
    }
    for (const CString& name : always) {
        EXPECT_EQ(call(name).substr(0, 4), "0301");
    }
    rig.host.application.oleDisplay = 0;
    EXPECT_EQ(call("CA_AddChannel"), "!");
}

TEST_F(KvNetArraysTest, DefineSelectRemove) {
    const CString cannotRemove = "![The KVNET_RemoveChannelArray method failed because the ";
    const auto named = [](const char* name) { return std::vector<VARIANT>{VARIANT::String(name)}; };
    ASSERT_EQ(Define("Outputs"), "-602 ");
    EXPECT_EQ(Define("outPUTS"),
              "![The KVNET_DefineChannelArray method failed because the specified array already exists.]");
    ASSERT_EQ(Define(""), "-602 ");
    ASSERT_EQ(Define(CString(10'000, 'n')), "-602 ");
    const CChannelArray* current = rig.network.GetCurrentChannelArray();
    EXPECT_EQ(Call("KVNET_SetChannelArray", named("none")), "![The KVNET_SetChannelArray" + kUnknown);
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), current);
    EXPECT_EQ(Call("KVNET_SetChannelArray", named("OUTPUTS")), "");
    CChannelArray* outputs = rig.network.GetChannelArray("outputs");
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), outputs);
    EXPECT_EQ(rig.network.AddChannelToArray("x", 3, 0x11, 0, 0, 0, 0), -8);
    AddGroup("outputs", 3, 1, 1);
    EXPECT_EQ(rig.network.IsBusGroupPartOfAnyArray(3, 1, 1), 1);
    EXPECT_EQ(rig.network.IsBusGroupPartOfAnyArray(3, 1, 0), 0);
    CComboBox combo;
    EXPECT_EQ(rig.network.FillChannelArrayDropList(&combo, outputs), 1);
    EXPECT_EQ(combo.GetCount(), 3);
    EXPECT_EQ(combo.GetText(), "Outputs");
    EXPECT_EQ(combo.GetItemData(1), reinterpret_cast<std::intptr_t>(rig.network.GetChannelArray("")));
    SweepAxis* axes = rig.host.application.sweepAxes;
    axes[0] = {19, nullptr, false, outputs};
    axes[1] = {19, nullptr, true, outputs};
    EXPECT_EQ(Call("KVNET_RemoveChannelArray", named("outputs")),
              cannotRemove + "array was in use somewhere else in Kalvio (for example, as a Sweep source).]");
    EXPECT_EQ(axes[0].channelArray, outputs);
    axes[1] = {18, nullptr, true, outputs}; // another source
    EXPECT_EQ(Call("KVNET_RemoveChannelArray", named("outputs")), "03018F00 -605 ");
    EXPECT_EQ(axes[0].channelArray, nullptr);
    EXPECT_EQ(axes[1].channelArray, outputs);
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), nullptr);
    EXPECT_EQ(Call("KVNET_RemoveChannelArray", named("outputs")),
              cannotRemove + "specified Channel Array has not been defined.]");
}

TEST_F(KvNetArraysTest, AResetDropsLoads) {
    Define("a");
    AddGroup("a", 3, 0, 0, 3);
    AddGroup("a", 4, 0, 0, 3);
    rig.network.Reset(3, 1, nullptr);
    EXPECT_EQ(FlagsOf("a", 7), 1);
    EXPECT_EQ(FlagsOf("a", 8), 3);
    rig.network.Reset(255, 0, nullptr);
    EXPECT_EQ(FlagsOf("a", 8), 1);
}

TEST_F(KvNetArraysTest, ArchiveIsLoadedWholeOrNotAtAll) {
    Define("Ab");
    EXPECT_EQ(rig.network.AddChannelToArray("Ab", 3, 0x11, 1, 1, 2, 0), 0);
    Call("CA_AddChannel", {VARIANT::Short(1)});
    const Bytes saved = Stored();
    EXPECT_EQ(ToHex(std::span(saved).first(25)), "010100024162000000001100000000000100"
                                                 "03110101020100");
    Bytes unsaved = saved;
    unsaved[0] = 0;

    // Others take their place; damaged archives leave these alone.
    rig.network.RemoveArray("Ab");
    Define("Present");
    Define("AB");
    SweepAxis* axes = rig.host.application.sweepAxes;
    axes[0] = {19, nullptr, true, rig.network.GetChannelArray("Present")};
    axes[1] = {19, nullptr, true, rig.network.GetChannelArray("AB")};
    const Bytes before = Stored();
    for (const Bytes& archive : {saved, unsaved}) {
        for (std::size_t length = 0; length < saved.size(); ++length) {
            ASSERT_FALSE(Load({archive.begin(), archive.begin() + static_cast<long>(length)})) << length;
            ASSERT_FALSE(error.empty());
            ASSERT_EQ(Stored(), before) << length;
        }
    }
    // Neither do earlier ones, ones that were not saved, and ones that are not wanted.
    EXPECT_TRUE(Load({}, 98));
    EXPECT_EQ(rig.network.GetSaveChannelArrays(), 0);
    rig.network.SetSaveChannelArrays(1);
    rig.host.application.discardStoredValues = true;
    EXPECT_TRUE(Load(saved));
    rig.host.application.discardStoredValues = false;
    EXPECT_EQ(Stored(), before);
    EXPECT_TRUE(Load(unsaved));
    EXPECT_EQ(rig.network.GetSaveChannelArrays(), 0);
    EXPECT_EQ(axes[0].channelArray, rig.network.GetChannelArray("present"));

    // Wanted: the devices follow, and whoever pointed at an array finds the one of the same name.
    rig.network.Reset(3, 0, nullptr);
    Take();
    EXPECT_TRUE(Load(saved));
    EXPECT_EQ(Take(), "030000 0301FF01 030383000400 ");
    EXPECT_EQ(Stored(), saved);
    EXPECT_EQ(axes[0].channelArray, nullptr);
    EXPECT_EQ(axes[1].channelArray, rig.network.GetChannelArray("ab"));
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), rig.network.GetChannelArray("ab"));
}

} // namespace
} // namespace kalvio::test
