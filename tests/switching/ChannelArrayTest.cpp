// What channel arrays send and store, and the list of them.

#include "SwitchingRig.h"

namespace kalvio::test {
namespace {

struct Scenario {
    bool stereo;
    const char* channels;
    const char* call;
    int code;
    const char* frames;
    const char* states;
};

constexpr Scenario kScenarios[] = {
    // Exclusive, mono: the target's group, or its whole bus once the array uses both groups.
    {false, "3:0:0:0-3", "Exclusive 3 1", 0, "3:8C:00 3:8C:04", "0 0 1 0"},
    {false, "3:0:0:0+ 3:0:0:1+", "Exclusive 1 0", 0, "3:8C:FF 3:8C:FE", "0 1"},
    {false, "3:0:0:0-1 3:0:1:0-1/3", "Exclusive 4 1", 0, "3:82:000003 3:82:000203", "0 0 0/3 1/3"},
    {false, "3:0:0:0 3:0:1:0", "Exclusive 1 0", 0, "3:82:FFFF00 3:82:FEFF00", "0 1"},
    // Other devices and buses: only those that change. The same bus whole, another by its own groups.
    {false, "3:0:0:0 4:0:0:0+ 5:0:0:0", "Exclusive 1 1", 0, "3:8C:00 4:82:000000 3:8C:01", "1 0 0"},
    {false, "3:0:0:0 3:1:0:0+ 4:1:1:2+ 5:1:0:1+ 5:1:1:1", "Exclusive 1 1", 0,
     "3:8C:00 3:8D:00 4:83:000000 5:83:000000 3:8C:01", "1 0 0 0 0"},
    {false, "3:0:1:0/2 4:1:1:2+", "Exclusive 1 1", 0, "3:8E:00 4:8F:00 3:8E:01", "1/2 0"},
    {false, "3:0:0:0/1 4:1:1:2", "Exclusive 1 0", 0, "3:8C:FF 4:83:FFFF01 3:8C:FE", "0/1 1"},
    // A device in several runs is sent to for each of them.
    {false, "4:0:0:0+ 3:0:0:0 4:0:0:1+", "Exclusive 2 1", 0, "4:82:000000 3:8C:00 4:82:000000 3:8C:01",
     "0 1 0"},
    {false, "3:0:0:0 4:0:0:0 3:0:0:1+", "Exclusive 1 1", 0, "3:8C:00 3:8C:00 3:8C:01", "1 0 0"},
    // Exclusive, stereo: pairs.
    {true, "3:0:0:0 3:1:0:1 3:0:0:2 3:1:0:3", "Exclusive 3 1", 0, "3:8C:00 3:8D:00 3:8C:04 3:8D:08",
     "0 0 1 1"},
    {true, "3:0:0:0 3:1:0:1 3:0:1:0 3:1:1:1", "Exclusive 2 1", 0, "3:81:000000000000 3:81:010000020000",
     "1 1 0 0"},
    {true, "3:0:0:0 3:1:0:1 4:0:0:0+ 4:1:0:1+", "Exclusive 2 1", 0,
     "3:8C:00 3:8D:00 4:81:000000000000 3:8C:01 3:8D:02", "1 1 0 0"},
    {true, "3:0:0:0+ 3:1:0:1+ 3:0:0:2 3:1:0:3", "Exclusive 1 0", 0, "3:8C:55 3:8D:AA 3:8C:FE 3:8D:FD",
     "0 0 1 1"},
    // One channel, one pair; a partner beyond the end is none.
    {false, "3:0:0:0-1", "AddRemove 2 1", 0, "3:84:01", "0 1"},
    {false, "3:0:0:0+ 3:1:1:1+", "AddRemove 2 0", 0, "3:87:09", "1 0"},
    {true, "3:0:0:0 3:1:0:1 3:0:0:2 3:1:0:3", "AddRemove 3 1", 0, "3:84:02 3:85:03", "0 0 1 1"},
    {true, "3:0:0:0", "AddRemove 1 1", 0, "3:84:00 3:85:01", "1"},
    // All off: what is on, or everything.
    {false, "3:0:0:0 3:1:1:0+ 3:1:0:0 4:0:0:0", "Clear 0", 0, "3:83:000000", "0 0 0 0"},
    {false, "3:0:0:0 3:1:1:0+ 3:1:0:0 4:0:0:0", "Clear 1", 0, "3:8C:00 3:83:000000 4:8C:00", "0 0 0 0"},
    {false, "3:0:0:0 4:0:0:0 3:0:1:0", "Clear 1", 0, "3:82:000000 4:8C:00 3:82:000000", "0 0 0"},
    {false, "3:0:0:0-7", "Clear 0", 0, "", "0 0 0 0 0 0 0 0"},
    {true, "3:0:0:0+ 3:1:0:1+", "Clear 0", 0, "3:8C:00 3:8D:00", "0 0"},
    {true, "3:0:0:0/2 3:1:0:1 3:0:1:0 3:1:1:1", "Clear 1", 0, "3:81:000002000002", "0/2 0 0 0"},
    {false, "", "Clear 1", 0, "", ""},
    // All on: whole buses.
    {false, "3:0:0:0 4:0:0:0+ 4:0:0:1/1 5:1:0:0+", "SetAll", 0, "3:82:FFFF00 4:82:FFFF00", "1 1 1/1 1"},
    {true, "3:0:0:0 3:1:0:1", "SetAll", 0, "3:81:555500AAAA00", "1 1"},
    // Balance: each bus of a device once, with its load as it is.
    {false, "3:0:0:0 3:1:0:0 3:0:1:0 4:1:0:0/2", "Balance 1", 0, "3:8A:01 3:8B:01 4:8B:03",
     "0/1 0/1 0/1 0/3"},
    {false, "3:0:0:0/3", "Balance 0", 0, "3:8A:02", "0/2"},
    {true, "3:0:0:0 3:1:0:1 3:0:0:2 3:1:0:3", "Balance 1", 0, "3:8A:01 3:8B:01", "0/1 0/1 0/1 0/1"},
    // States to devices: one block a device.
    {false, "3:0:0:1+ 3:1:0:0/2 4:0:0:0+ 3:0:1:0+", "Update", 0, "3:81:020000000002 4:82:010000 3:82:000100",
     "1 0/2 1 1"},
    {true, "3:0:0:0+ 3:1:0:1+", "Update", 0, "3:81:010000020000", "1 1"},
    {false, "", "Update", 0, "", ""},
    // Channels that are not there.
    {false, "", "Exclusive 1 1", -9, "", ""},
    {false, "3:0:0:0+", "Exclusive 0 0", -9, "", "1"},
    {false, "3:0:0:0+", "Exclusive -32768 0", -9, "", "1"},
    {false, "3:0:0:0+", "AddRemove 2 0", -9, "", "1"},
    {false, "3:0:0:0+", "AddRemove 0 0", -9, "", "1"},
    // Devices that are not there: what was asked is stored, but for a single channel.
    {false, "k3:1:0:0 k3:1:0:1+", "Exclusive 1 1", -14, "", "1 0"},
    {false, "k3:1:0:0", "AddRemove 1 1", -14, "", "0"},
    {false, "k3:1:0:0+ k4:1:0:0+", "Clear 0", -14, "", "0 1"},
    {false, "k3:1:0:0", "SetAll", -14, "", "1"},
    {false, "254:0:0:0", "SetAll", -14, "", "1"},
    {false, "k3:1:0:0", "Balance 1", -14, "", "0/1"},
    {false, "k3:1:0:0+", "Update", -14, "", "1"},
    // Device 7 is silent; the unit tries twice, and nobody later is sent to.
    {false, "3:0:0:0 7:0:0:0+ 5:0:0:0+", "Exclusive 1 1", -3, "3:8C:00 7:82:000000 7:82:000000", "1 0 1"},
    {false, "7:0:0:0", "AddRemove 1 1", -3, "7:84:00 7:84:00", "1"},
    {false, "3:0:0:0+ 7:0:0:0+ 5:0:0:0+", "Clear 0", -3, "3:8C:00 7:8C:00 7:8C:00", "0 0 1"},
    {false, "7:0:0:0 5:0:0:0", "SetAll", -3, "7:82:FFFF00 7:82:FFFF00", "1 0"},
    {false, "7:0:0:0 5:0:0:0", "Balance 1", -3, "7:8A:01 7:8A:01", "0/1 0/1"},
    {true, "7:0:0:0 7:1:0:1", "Balance 1", -3, "7:8A:01 7:8A:01", "0/1 0/1"},
    {false, "7:0:0:0+ 5:0:0:0", "Update", -3, "7:82:010000 7:82:010000", "1 0"},
};

short CallArray(CChannelArray& array, const std::string& call) {
    const std::vector<std::string> words = Words(call);
    const auto number = [&words](std::size_t at) { return static_cast<short>(std::stoi(words[at])); };
    const auto on = [&number](std::size_t at) { return static_cast<std::uint8_t>(number(at)); };
    if (words[0] == "Exclusive") {
        return array.ExclusiveChannel(number(1), on(2));
    }
    if (words[0] == "AddRemove") {
        return array.AddRemoveChannel(number(1), on(2));
    }
    if (words[0] == "Clear") {
        return array.ClearChannels(number(1));
    }
    if (words[0] == "Balance") {
        return array.Balance(number(1));
    }
    return words[0] == "SetAll" ? array.SetAllChannels() : array.UpdateDevicesFromSettings();
}

TEST(ChannelArray, Scenarios) {
    SwitchingRig rig;
    rig.silent = 7;
    for (const Scenario& row : kScenarios) {
        SCOPED_TRACE(CString(row.stereo ? "stereo " : "mono ") + row.channels + ": " + row.call);
        CChannelArray array("A");
        array.SetStereoArray(row.stereo ? 1 : 0);
        AddChannels(array, row.channels);
        rig.events.clear();
        EXPECT_EQ(CallArray(array, row.call), row.code);
        EXPECT_EQ(rig.Frames(), row.frames);
        EXPECT_EQ(States(array), row.states);
        const bool balanced = CString(row.call).starts_with("Balance") && row.code == 0;
        EXPECT_EQ(!rig.events.empty() && rig.events.back() == "-608", balanced);
        EXPECT_EQ(rig.network.show, 1);
    }
    EXPECT_TRUE(rig.network.reports.empty()) << "arrays leave reporting to their callers";

    CChannelArray exclusive("E");
    AddChannels(exclusive, "3:0:0:0-1");
    exclusive.SetExclusiveOnly(1);
    rig.events.clear();
    EXPECT_EQ(exclusive.AddRemoveChannel(1, 1), -1);
    EXPECT_EQ(exclusive.SetAllChannels(), -1);
    EXPECT_EQ(rig.Frames() + States(exclusive), "0 0");
    EXPECT_EQ(exclusive.ExclusiveChannel(1, 1), 0);
    rig.host.application.kvNet = nullptr;
    EXPECT_EQ(exclusive.UpdateDevicesFromSettings(), -1);
    EXPECT_EQ(exclusive.ClearChannels(1), -14);
    rig.host.application.kvNet = &rig.network;
}

// Devices that are found in standby are switched on before the states go out; one that does not tell its
// status is sent to all the same.
TEST(ChannelArray, WakesDevices) {
    SwitchingRig rig;
    rig.network.statusWords = {{3, 0x00011}, {4, 0x10011}};
    CChannelArray array("A");
    AddChannels(array, "3:0:0:0+ 3:1:0:0 4:0:0:0 5:0:0:0");
    EXPECT_EQ(array.UpdateDevicesFromSettings(), 0);
    EXPECT_EQ(rig.network.resets, std::vector<std::string>{"3 on"});
    EXPECT_EQ(rig.Frames(), "3:81:010000000000 4:82:000000 5:82:000000");
    EXPECT_TRUE(rig.network.reports.empty());
}

TEST(ChannelArray, LoadsAndDevices) {
    SwitchingRig rig;
    rig.network.DefineArray("A", 0, 0);
    CChannelArray& array = *rig.network.GetChannelArray("a");
    AddChannels(array, "3:0:0:0/1 3:1:0:0 4:0:0:0");
    const auto& device = [&rig](int address) -> CIOSwitcher& {
        return *rig.network.IOSwitchers().GetIOSwitcher(static_cast<std::uint8_t>(address));
    };
    EXPECT_EQ(device(3).BusLoad(0, 1, 1), 0);
    EXPECT_EQ(States(array), "0/3 0 0");
    EXPECT_EQ(device(3).StereoPairLoad(1, 0, 7), 0);
    EXPECT_EQ(States(array), "0/3 0/2 0");
    EXPECT_EQ(device(3).BusLoad(0, 1, 0), 0);
    EXPECT_EQ(States(array), "0/1 0/2 0");
    rig.silent = 3;
    EXPECT_EQ(device(3).StereoPairLoad(0, 0, 0), -3);
    EXPECT_EQ(States(array), "0/1 0/2 0") << "a load that failed is not noted";
    EXPECT_EQ(array.UpdateLoadStatus(255, 0, 1), 1);
    EXPECT_EQ(States(array), "0/3 0/2 0/2");
    array.UpdateLoadStatus(255, 255, 2);
    EXPECT_EQ(States(array), "0/1 0 0") << "only 1 is on";

    short index = 99;
    EXPECT_EQ(array.GetFirstDeviceAddress(&index), 3);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(array.GetNextDeviceAddress(3, 1, &index), 4);
    EXPECT_EQ(index, 2);
    EXPECT_EQ(array.GetNextDeviceBusAddress(3, 0, 0, &index), 3);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(array.GetNextDeviceBusAddress(4, 0, 2, &index), 254);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(array.GetNextDeviceAddress(9, -5, &index), 3);
    EXPECT_EQ(array.GetNextDeviceAddress(9, 32767, &index), 254);

    ChannelDetails adapter{.address = 3, .classType = 0x21};
    EXPECT_EQ(array.AddChannel(adapter), 0) << "one class of devices an array";
    for (const short bad : std::initializer_list<short>{-1, 3, 32767, -32768}) {
        EXPECT_EQ(array.GetChannelDetails(bad, adapter), 0);
        EXPECT_EQ(array.SetChannelDetails(bad, adapter), 0);
    }
    CChannelArray copy("B");
    copy.SetDirection(CChannelArray::DirectionOutput);
    copy = array;
    EXPECT_EQ(copy.GetName() + States(copy), "A0/1 0 0");
    EXPECT_EQ(copy.GetDirection(), CChannelArray::DirectionOutput) << "not copied";
    copy.RemoveAllChannels();
    EXPECT_EQ(copy.GetDeviceClassType(), 0);
    EXPECT_EQ(copy.AddChannel(adapter), 1);
    EXPECT_EQ(array.GetNumChannels(), 3);
}

std::string Names(const CChannelArrayList& list) {
    std::string names;
    for (int index = 0; index < list.GetCount(); ++index) {
        names += list.GetAt(index)->GetName();
    }
    return names;
}

TEST(ChannelArrayList, Operations) {
    SwitchingRig rig;
    CChannelArrayList& list = rig.network.arrays;
    const CString longName(10000, 'x');
    for (const CString& name : {CString("A"), CString("b"), CString("C"), CString(), longName}) {
        rig.events.clear();
        EXPECT_EQ(list.DefineArray(name.c_str(), 1, 0), 0);
        EXPECT_EQ(rig.events, std::vector<std::string>{"-602"});
        EXPECT_EQ(rig.lastArray, reinterpret_cast<std::uintptr_t>(list.GetAt(list.GetCount() - 1)));
    }
    rig.events.clear();
    EXPECT_EQ(list.DefineArray("B", 0, 0), -11);
    EXPECT_EQ(list.DefineArray("", 0, 0), -11);
    EXPECT_EQ(list.DefineArray(CString(10000, 'X').c_str(), 0, 0), -11);
    EXPECT_EQ(list.DefineArray(nullptr, 0, 0), -1);
    EXPECT_EQ(list.GetChannelArray(nullptr), nullptr);
    EXPECT_EQ(list.RemoveArray("D"), -8);
    EXPECT_TRUE(rig.events.empty());
    const auto gone = reinterpret_cast<std::uintptr_t>(list.GetChannelArray(longName.c_str()));
    EXPECT_EQ(list.RemoveArray(longName.c_str()), 0);
    EXPECT_EQ(rig.events, std::vector<std::string>{"-605"});
    EXPECT_EQ(rig.lastArray, gone);
    EXPECT_EQ(list.RemoveArray(list.GetAt(3)), 0);

    const struct {
        int index;
        int offset;
        int result;
        const char* names;
    } moves[] = {{0, 2, 1, "bCA"},
                 {2, -1, 1, "bAC"},
                 {1, 0, 1, "bAC"},
                 {0, -1, -13, "bAC"},
                 {3, -1, -13, "bAC"},
                 {2, 1, -13, "bAC"},
                 {2, 2147483647, -13, "bAC"},
                 {-1, 1, -13, "bAC"}};
    for (const auto& move : moves) {
        EXPECT_EQ(list.MoveArray(move.index, move.offset), move.result);
        EXPECT_EQ(Names(list), move.names);
    }
    list.InsertAt(1, std::make_unique<CChannelArray>("x"));
    list.InsertAt(9, std::make_unique<CChannelArray>("y"));
    EXPECT_EQ(Names(list), "bxACy");
    EXPECT_EQ(list.GetChannelArrayIndex("Y"), 4);
    EXPECT_EQ(list.GetChannelArrayIndex(list.GetAt(2)), 2);
    CChannelArrayList copy;
    copy = list;
    EXPECT_EQ(Names(copy), Names(list));
    EXPECT_NE(copy.GetAt(0), list.GetAt(0));
    EXPECT_EQ(copy.GetAt(0)->IsStereoArray(), 1);
}

} // namespace
} // namespace kalvio::test
