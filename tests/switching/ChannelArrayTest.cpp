// What channel arrays send and store, and the list of them.

#include "SwitchingRig.h"

namespace kalvio::test {
namespace {

short Call(CChannelArray& array, const std::vector<std::string>& words) {
    const auto number = [&words](std::size_t at) { return static_cast<short>(std::stoi(words[at])); };
    const auto on = [&words] { return static_cast<std::uint8_t>(std::stoi(words[2])); };
    const std::map<std::string, std::function<short()>> calls{
        {"Exclusive", [&] { return array.ExclusiveChannel(number(1), on()); }},
        {"AddRemove", [&] { return array.AddRemoveChannel(number(1), on()); }},
        {"Clear", [&] { return array.ClearChannels(number(1)); }},
        {"SetAll", [&] { return array.SetAllChannels(); }},
        {"Balance", [&] { return array.Balance(number(1)); }},
        {"Update", [&] { return array.UpdateDevicesFromSettings(); }},
    };
    return calls.at(words[0])();
}

TEST(ChannelArray, Scenarios) {
    SwitchingRig rig;
    rig.silent = 7;
    for (auto row : TableOf("arrays.txt")) {
        row.resize(5);
        SCOPED_TRACE(row[0] + ": " + row[1]);
        CChannelArray array("A");
        array.SetStereoArray(row[0].starts_with("stereo") ? 1 : 0);
        AddChannels(array, row[0].substr(std::min(row[0].find(' '), row[0].size())));
        EXPECT_EQ(Call(array, Words(row[1])), std::stoi(row[2]));
        const bool balanced = row[1].starts_with("Balance") && row[2] == "0";
        EXPECT_EQ(!rig.events.empty() && rig.events.back() == "-608", balanced);
        EXPECT_EQ(rig.Frames(), row[3]);
        EXPECT_EQ(States(array), row[4]);
    }
    EXPECT_TRUE(rig.host.user.Texts().empty()) << "arrays leave reporting to their callers";

    CChannelArray exclusive("E");
    AddChannels(exclusive, "3:0:0:0 3:0:0:1");
    exclusive.SetExclusiveOnly(1);
    EXPECT_EQ(exclusive.AddRemoveChannel(1, 1) + exclusive.SetAllChannels(), -2);
    EXPECT_EQ(rig.Frames() + States(exclusive), "0 0");
    EXPECT_EQ(exclusive.ExclusiveChannel(1, 1), 0);
    rig.host.application.kvNet = nullptr;
    EXPECT_EQ(exclusive.UpdateDevicesFromSettings(), -1);
    EXPECT_EQ(exclusive.ClearChannels(1), -14);
    rig.host.application.kvNet = &rig.network;
}

// Devices that are found in standby are switched on before the states go out, which drops their loads.
TEST(ChannelArray, WakesDevices) {
    SwitchingRig rig;
    rig.models[3].status[2] = 0;
    rig.network.DefineArray("A", 0, 0);
    CChannelArray& array = *rig.network.GetChannelArray("A");
    AddChannels(array, "3:0:0:0:1:3 3:1:0:0 4:0:0:0:0:3");
    EXPECT_EQ(array.UpdateDevicesFromSettings(), 0);
    EXPECT_EQ(rig.Frames(), "3:00: 3:FF:01 4:00: 3:81:010001000000 4:82:000003");
    EXPECT_EQ(States(array), "1/1 0 0/3");
    EXPECT_TRUE(rig.host.user.Texts().empty() && rig.network.GetShowErrorMessages() == 1);
}

TEST(ChannelArray, LoadsAndEntries) {
    SwitchingRig rig;
    rig.network.DefineArray("A", 0, 0);
    CChannelArray& array = *rig.network.GetChannelArray("a");
    AddChannels(array, "3:0:0:0:0:1 3:1:0:0 4:0:0:0");
    CIOSwitcher& device = *rig.Switchers().GetIOSwitcher(3);
    EXPECT_EQ(device.BusLoad(0, 1, 1), 0);
    EXPECT_EQ(States(array), "0/3 0 0");
    EXPECT_EQ(device.StereoPairLoad(1, 0, 7), 0);
    EXPECT_EQ(States(array), "0/3 0/2 0");
    rig.silent = 3;
    EXPECT_EQ(device.StereoPairLoad(0, 0, 0), -3);
    EXPECT_EQ(States(array), "0/3 0/2 0") << "a load that failed is not noted";
    array.UpdateLoadStatus(255, 0, 1);
    EXPECT_EQ(States(array), "0/3 0/2 0/2");
    array.UpdateLoadStatus(255, 255, 2);
    EXPECT_EQ(States(array), "0/1 0 0") << "only 1 is on";

    const struct {
        std::uint8_t address, bus;
        short start;
        int nextDevice, nextBus; // 100 * address + index
    } places[] = {
        {3, 0, 0, 402, 301}, {4, 0, 2, 25399, 25399}, {9, 0, -5, 300, 300}, {9, 0, 32767, 25399, 25399}};
    for (const auto& row : places) {
        short index = 99;
        const std::uint8_t device1 = array.GetNextDeviceAddress(row.address, row.start, &index);
        EXPECT_EQ(100 * device1 + index, row.nextDevice);
        const std::uint8_t device2 = array.GetNextDeviceBusAddress(row.address, row.bus, row.start, &index);
        EXPECT_EQ(100 * device2 + index, row.nextBus);
    }
    short first = 99;
    EXPECT_EQ(array.GetFirstDeviceAddress(&first) * 100 + first, 300);
    EXPECT_EQ(CChannelArray("none").GetFirstDeviceAddress(&first) * 100 + first, 25399);
    EXPECT_EQ(array.OtherGroupsExistInArray(3, 0, 0) + 2 * array.OtherGroupsExistInArray(3, 1, 0) +
                  4 * array.OtherGroupsExistInArray(3, 1, 2) + 8 * array.OtherGroupsExistInArray(9, 1, 0),
              2);
    ChannelDetails adapter{.address = 3, .classType = 0x21};
    EXPECT_EQ(array.AddChannel(adapter), 0) << "one class of devices an array";
    EXPECT_EQ(array.SetChannelDetails(3, adapter) + array.GetChannelDetails(-1, adapter), 0);
    CChannelArray copy("B");
    copy.SetDirection(CChannelArray::DirectionOutput);
    copy = array;
    EXPECT_EQ(copy.GetName() + States(copy), "A0/1 0 0");
    EXPECT_EQ(copy.GetDirection(), CChannelArray::DirectionOutput) << "not copied";
    copy.RemoveAllChannels();
    EXPECT_EQ(copy.AddChannel(adapter), 1);
}

TEST(ChannelArrayList, Operations) {
    SwitchingRig rig;
    CChannelArrayList& list = *rig.network.GetChannelArrayList();
    const auto names = [&list] {
        std::string text;
        for (int index = 0; index < list.GetCount(); ++index) {
            text += list.GetAt(index)->GetName();
        }
        return text;
    };
    const CString longName(10000, 'x');
    for (const CString& name : {CString("A"), CString("b"), CString("C"), CString(), longName}) {
        EXPECT_EQ(list.DefineArray(name.c_str(), 1, 0), 0);
        EXPECT_EQ(rig.events.back(), "-602");
        EXPECT_EQ(rig.told, list.GetAt(list.GetCount() - 1));
    }
    for (const CString& name : {CString("B"), CString(), CString(10000, 'X')}) {
        EXPECT_EQ(list.DefineArray(name.c_str(), 0, 0), -11);
    }
    EXPECT_EQ(list.DefineArray(nullptr, 0, 0), -1);
    EXPECT_EQ(list.RemoveArray("D"), -8);
    const auto gone = reinterpret_cast<std::uintptr_t>(list.GetAt(4));
    EXPECT_EQ(list.RemoveArray(longName.c_str()), 0);
    EXPECT_EQ(rig.events.back(), "-605");
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(rig.told), gone);
    EXPECT_EQ(list.RemoveArray(list.GetAt(3)), 0);
    const struct {
        int index, offset, result;
        const char* then;
    } moves[] = {{0, 2, 1, "bCA"},    {2, -1, 1, "bAC"},  {1, 0, 1, "bAC"},           {0, -1, -13, "bAC"},
                 {3, -1, -13, "bAC"}, {2, 1, -13, "bAC"}, {2, 2147483647, -13, "bAC"}};
    for (const auto& move : moves) {
        EXPECT_EQ(list.MoveArray(move.index, move.offset), move.result);
        EXPECT_EQ(names(), move.then);
    }
    list.InsertAt(1, std::make_unique<CChannelArray>("x"));
    list.InsertAt(9, std::make_unique<CChannelArray>("y"));
    EXPECT_EQ(names(), "bxACy");
    EXPECT_EQ(list.GetChannelArrayIndex("Y") + list.GetChannelArrayIndex(list.GetAt(2)), 6);
    CChannelArrayList copy;
    copy = list;
    EXPECT_EQ(copy.GetAt(4)->GetName(), "y");
    EXPECT_NE(copy.GetAt(0), list.GetAt(0));
}

} // namespace
} // namespace kalvio::test
