#include "peripheral_network/NetworkRig.h"
#include "platform/Archive.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "switching/ChannelArray.h"

namespace kalvio::test {
namespace {

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
    CString Define(const CString& name) {
        return Call("KVNET_DefineChannelArray",
                    {VARIANT::String(name), VARIANT::Bool(false), VARIANT::Bool(false)});
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
    bool Load(const Bytes& bytes, int revision = 99) {
        CArchive archive(bytes);
        archive.SetFileVersion(101, revision);
        return rig.network.Load(archive, error);
    }

    NetworkRig rig;
    simulator::IoSwitcher switcher{3};
    CString error;
};

TEST_F(KvNetArraysTest, RemovalForgetsTheArrayEverywhere) {
    const std::vector<VARIANT> name{VARIANT::String("outputs")};
    ASSERT_EQ(Define("Outputs"), "-602 ");
    CChannelArray* outputs = rig.network.GetCurrentChannelArray();
    EXPECT_EQ(rig.network.AddChannelToArray("x", 3, 0x11, 0, 0, 0, 0), -8);
    AddGroup("outputs", 3, 1, 1);
    EXPECT_EQ(rig.network.IsBusGroupPartOfAnyArray(3, 1, 1), 1);
    EXPECT_EQ(rig.network.IsBusGroupPartOfAnyArray(3, 1, 0), 0);
    CComboBox combo;
    EXPECT_EQ(rig.network.FillChannelArrayDropList(&combo, outputs), 1);
    EXPECT_EQ(rig.network.FillChannelArrayDropList(nullptr, outputs), 0);
    EXPECT_EQ(combo.GetText(), "Outputs");
    EXPECT_EQ(combo.GetItemData(0), reinterpret_cast<std::intptr_t>(outputs));
    SweepAxis* axes = rig.host.application.sweepAxes;
    axes[0] = {19, nullptr, false, outputs};
    axes[1] = {19, nullptr, true, outputs};
    EXPECT_EQ(Call("KVNET_RemoveChannelArray", name),
              "![The KVNET_RemoveChannelArray method failed because the array was in use somewhere else in "
              "Kalvio (for example, as a Sweep source).]");
    EXPECT_EQ(axes[0].channelArray, outputs);
    axes[1] = {18, nullptr, true, outputs}; // another source
    EXPECT_EQ(Call("KVNET_RemoveChannelArray", name), "03018F00 -605 ");
    EXPECT_EQ(axes[0].channelArray, nullptr);
    EXPECT_EQ(axes[1].channelArray, outputs);
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), nullptr);
}

TEST_F(KvNetArraysTest, AResetDropsLoads) {
    Define("a");
    AddGroup("a", 3, 0, 0, 3);
    AddGroup("a", 4, 0, 0, 3);
    Define("b");
    AddGroup("b", 3, 1, 1, 3);
    rig.network.Reset(3, 1, nullptr);
    EXPECT_EQ(FlagsOf("a", 7), 1);
    EXPECT_EQ(FlagsOf("b", 0), 1);
    EXPECT_EQ(FlagsOf("a", 8), 3);
    rig.network.Reset(255, 0, nullptr);
    EXPECT_EQ(FlagsOf("a", 8), 1);
}

TEST_F(KvNetArraysTest, ArchiveIsLoadedWholeOrNotAtAll) {
    Define("Ab");
    EXPECT_EQ(rig.network.AddChannelToArray("Ab", 3, 0x11, 1, 1, 2, 0), 0);
    Call("CA_AddChannel", {VARIANT::Short(1)});
    const Bytes saved = rig.Stored();
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
    const Bytes before = rig.Stored();
    for (const Bytes& archive : {saved, unsaved}) {
        for (std::size_t length = 0; length < saved.size(); ++length) {
            ASSERT_FALSE(Load({archive.begin(), archive.begin() + static_cast<long>(length)})) << length;
            ASSERT_FALSE(error.empty());
            ASSERT_EQ(rig.Stored(), before) << length;
        }
    }
    // Neither do earlier ones, ones that were not saved, and ones that are not wanted.
    EXPECT_TRUE(Load({}, 98));
    EXPECT_EQ(rig.network.GetSaveChannelArrays(), 0);
    rig.network.SetSaveChannelArrays(1);
    rig.host.application.discardStoredValues = true;
    EXPECT_TRUE(Load(saved));
    rig.host.application.discardStoredValues = false;
    EXPECT_EQ(rig.Stored(), before);
    EXPECT_TRUE(Load(unsaved));
    EXPECT_EQ(rig.network.GetSaveChannelArrays(), 0);
    EXPECT_EQ(axes[0].channelArray, rig.network.GetChannelArray("present"));

    // Wanted: the devices follow, and whoever pointed at an array finds the one of the same name.
    rig.network.Reset(3, 0, nullptr);
    Take();
    EXPECT_TRUE(Load(saved));
    EXPECT_EQ(Take(), "030000 0301FF01 030383000400 ");
    EXPECT_EQ(rig.Stored(), saved);
    EXPECT_EQ(axes[0].channelArray, nullptr);
    EXPECT_EQ(axes[1].channelArray, rig.network.GetChannelArray("ab"));
    EXPECT_EQ(rig.network.GetCurrentChannelArray(), rig.network.GetChannelArray("ab"));
}

} // namespace
} // namespace kalvio::test
