// Every setter of an adapter with values inside and outside its range: what it answers, the image and the
// hints that follow, line by line.

#include "adapters/KEDAAdapter.h"
#include "peripheral_network/NetworkRig.h"
#include "support/Golden.h"

namespace kalvio::test {
namespace {

using Adapter = CKEDAAdapter;

struct Setter {
    const char* name;
    std::vector<int> values;
    std::function<int(Adapter& adapter, int value)> set;
};

const std::vector<int> kFlags{0, 1, 5};
const std::vector<int> kVoltages{-1, 0, 5, 6};
const std::vector<int> kSlotCountValues{1, 2, 3, 4, 8, 15, 16, 32};
const std::vector<int> kLengths{-1, 0, 7, 8, 9, 16, 20, 23, 24, 25, 32};
const std::vector<int> kDelayValues{-14, -7, -1, 0, 7, 14, 21, 28, 35, 42};
const std::vector<int> kMultiplierValues{0, 63, 64, 96, 128, 192, 256, 384, 512, 1024};

// Those of one direction.
std::vector<Setter> SettersOf(int which) {
    return {
        {"SlotLength", kLengths, [=](Adapter& a, int v) { return a.SetSlotLength(which, v); }},
        {"SubChannelsPerWire", kSlotCountValues,
         [=](Adapter& a, int v) { return a.SetSubChannelsPerWire(which, v); }},
        {"LSBFirst", kFlags, [=](Adapter& a, int v) { return a.SetLSBFirst(which, v); }},
        {"SignExtend", kFlags, [=](Adapter& a, int v) { return a.SetSignExtend(which, v); }},
        {"LeadPadLength", kLengths, [=](Adapter& a, int v) { return a.SetLeadPadLength(which, v); }},
        {"DataLength", kLengths, [=](Adapter& a, int v) { return a.SetDataLength(which, v); }},
        {"TrailPadLength", kLengths, [=](Adapter& a, int v) { return a.SetTrailPadLength(which, v); }},
        {"DataFormat", kLengths, [=](Adapter& a, int v) { return a.SetDataFormat(which, 4, v, 4); }},
        {"MasterClockDir",
         {-1, 0, 1, 2, 3},
         [=](Adapter& a, int v) { return a.SetMasterClockDir(which, v); }},
        {"SerialClockDir",
         {-1, 0, 1, 2, 3},
         [=](Adapter& a, int v) { return a.SetSerialClockDir(which, v); }},
        {"MasterClockMultiplier", kMultiplierValues,
         [=](Adapter& a, int v) { return a.SetMasterClockMultiplier(which, v); }},
        {"BitClockInvert", kFlags, [=](Adapter& a, int v) { return a.SetBitClockInvert(which, v); }},
        {"FrameClockInvert", kFlags, [=](Adapter& a, int v) { return a.SetFrameClockInvert(which, v); }},
        {"FrameClock1Bit", kFlags, [=](Adapter& a, int v) { return a.SetFrameClock1Bit(which, v); }},
        {"FrameClockEarly", kFlags, [=](Adapter& a, int v) { return a.SetFrameClockEarly(which, v); }},
        {"Delay", kDelayValues, [=](Adapter& a, int v) { return a.SetDelay(which, v); }},
    };
}

std::vector<Setter> SettersOfAll() {
    const auto gen = [](int wire, int slot) {
        return [=](Adapter& a, int v) { return a.SetGenRouting(wire, slot, v); };
    };
    const auto ana = [](int channel, int wire) {
        return [=](Adapter& a, int v) { return a.SetAnaRouting(channel, wire, v); };
    };
    return {
        {"GenBypass", kFlags, [](Adapter& a, int v) { return a.SetGenBypass(v); }},
        {"AnaBypass", kFlags, [](Adapter& a, int v) { return a.SetAnaBypass(v); }},
        {"RefBypass", kFlags, [](Adapter& a, int v) { return a.SetRefBypass(v); }},
        {"AudioOn", kFlags, [](Adapter& a, int v) { return a.SetAudioOn(v); }},
        {"AudioVoltageSelect, on", kVoltages,
         [](Adapter& a, int v) { return a.SetAudioVoltageSelect(v, 0); }},
        {"AudioVoltageSelect, off", kVoltages,
         [](Adapter& a, int v) { return a.SetAudioVoltageSelect(v, 1); }},
        {"CtrlOn", kFlags, [](Adapter& a, int v) { return a.SetCtrlOn(v); }},
        {"CtrlVoltageSelect, on", kVoltages, [](Adapter& a, int v) { return a.SetCtrlVoltageSelect(v, 0); }},
        {"CtrlVoltageSelect, off", kVoltages, [](Adapter& a, int v) { return a.SetCtrlVoltageSelect(v, 1); }},
        {"GenRouting 1 1", {-1, 0, 1, 2, 3}, gen(1, 1)},
        {"GenRouting 4 2", {1, 2, 0}, gen(4, 2)},
        {"GenRouting 0 9", {1}, gen(0, 9)},
        {"GenRouting 9 9", {1}, gen(9, 9)},
        {"AnaRouting A 1", {0, 1, 2, 4, 8, 9, 16, 17}, ana(0, 1)},
        {"AnaRouting B 2", {0, 1, 2, 4, 8, 9}, ana(1, 2)},
        {"AnaRouting B 4", {1, 4, 5}, ana(1, 4)},
        {"AnaRouting B 5", {1}, ana(1, 5)},
        {"AnaRouting 2 1", {1}, ana(2, 1)},
        {"SPIClockPhase", kFlags, [](Adapter& a, int v) { return a.SetSPIClockPhase(v); }},
        {"SPIClockPolarity", kFlags, [](Adapter& a, int v) { return a.SetSPIClockPolarity(v); }},
        {"SlaveAddress", {-1, 0, 127, 128}, [](Adapter& a, int v) { return a.SetSlaveAddress(v); }},
        {"ControlMode", {-1, 0, 1, 2}, [](Adapter& a, int v) { return a.SetControlMode(v); }},
        {"SendI2CData",
         {-1, 0, 10, 11},
         [](Adapter& a, int v) { return a.SendI2CData(v, Bytes(11, 7).data()); }},
        {"ControlMode", {0}, [](Adapter& a, int v) { return a.SetControlMode(v); }},
        {"SendSPIData",
         {-1, 0, 10, 11},
         [](Adapter& a, int v) { return a.SendSPIData(v, Bytes(11, 9).data()); }},
        {"ControlMode", {1, 0}, [](Adapter& a, int v) { return a.SetControlMode(v); }},
        {"SendI2CData", {1}, [](Adapter& a, int v) { return a.SendI2CData(v, Bytes(11, 7).data()); }},
        {"GetGenRouting of slot 1",
         {0, 1, 4, 5, 8, 9},
         [](Adapter& a, int v) { return a.GetGenRouting(v, 1); }},
        {"GetAnaRouting",
         {-1, 0, 1, 2},
         [](Adapter& a, int v) {
             int wire = 9;
             int slot = 9;
             return 100 * a.GetAnaRouting(v, wire, slot) + 10 * wire + slot;
         }},
        {"UpdateGenRouting", {0}, [](Adapter& a, int) { return a.UpdateGenRouting(); }},
        {"UpdateAnaRouting", {0}, [](Adapter& a, int) { return a.UpdateAnaRouting(); }},
    };
}

// What channel arrays do with an adapter, by the channel.
std::vector<Setter> SettersOfChannels(std::uint8_t bus, std::uint8_t group, std::uint8_t on) {
    const auto byte = [](int v) { return static_cast<std::uint8_t>(v); };
    const std::vector<int> channels{0, 3, 8, 15, 16};
    return {
        {"BusExclusiveChannel", channels,
         [=](Adapter& a, int v) { return a.BusExclusiveChannel(bus, group, byte(v), 3, on); }},
        {"BusChannel", channels, [=](Adapter& a, int v) { return a.BusChannel(bus, group, byte(v), on); }},
        {"StereoPairExclusiveChannel", channels,
         [=](Adapter& a, int v) { return a.StereoPairExclusiveChannel(group, byte(v), byte(v ^ 1), 3, on); }},
        {"StereoPairChannel", channels,
         [=](Adapter& a, int v) { return a.StereoPairChannel(bus, group, byte(v), on); }},
        {"AddChannelToChannelArrayDetails", channels,
         [=](Adapter& a, int v) {
             ChannelDetails channel{8, kClassTypeKedaAdapter, bus, group, byte(v), on, 0};
             return a.AddChannelToChannelArrayDetails(a.GetChannelArrayDetails(), &channel);
         }},
        {"UpdateDeviceWithChannelArrayDetails",
         {0},
         [](Adapter& a, int) { return a.UpdateDeviceWithChannelArrayDetails(nullptr); }},
        {"BusAll", {0}, [=](Adapter& a, int) { return a.BusAll(bus, 3, on); }},
        {"StereoPairAll", {0}, [=](Adapter& a, int) { return a.StereoPairAll(3, on); }},
        {"BusGroupAll", {0}, [=](Adapter& a, int) { return a.BusGroupAll(bus, group, on); }},
        {"StereoPairGroupAll", {0}, [=](Adapter& a, int) { return a.StereoPairGroupAll(group, on); }},
        {"BusBalance", {0}, [=](Adapter& a, int) { return a.BusBalance(bus, 3, on); }},
        {"BusLoad", {0}, [=](Adapter& a, int) { return a.BusLoad(bus, 3, on); }},
        {"StereoPairBalance", {0}, [=](Adapter& a, int) { return a.StereoPairBalance(bus, 3, on); }},
        {"StereoPairLoad", {0}, [=](Adapter& a, int) { return a.StereoPairLoad(bus, 3, on); }},
    };
}

CString Derived(const Adapter& a) {
    CString text;
    for (const int which : {0, 1}) {
        text +=
            Format(" %d/%d/%d %d x%d %d %d%d", a.GetLeadPadLength(which), a.GetDataLength(which),
                   a.GetTrailPadLength(which), a.GetSubChannelsPerWire(which), a.GetNumWires(which),
                   a.GetDelay(which), static_cast<int>(a.GetSyncSource(which)), a.GetMasterClockDir(which));
    }
    return text + Format(" %d%d%d port %d %d %d", a.GetGenBypass(), a.GetAnaBypass(), a.GetRefBypass(),
                         a.GetNumTransmitChars(), a.GetNumReceiveChars(), a.GetI2CStatus());
}

class Accessors : public ::testing::Test {
protected:
    Accessors() {
        rig.unit.AttachPeripheral(8, [this](auto frame) { // an SPI transfer brings back what it sent
            rig.events += ToHex(frame) + " ";
            const Bytes data(frame.begin() + 4, frame.end() - 2);
            if (silent) {
                return Bytes{};
            }
            const bool status = frame[3] == 0x00 || frame[3] == 0xFF;
            return AnswerFrame(8, frame[3], status ? Bytes{0x21, 0, 1} : frame[3] == 0xCA ? data : Bytes{});
        });
    }
    void Play(const std::vector<Setter>& setters, const CString& of) {
        for (const Setter& setter : setters) {
            for (const int value : setter.values) {
                rig.Take();
                const int taken = setter.set(adapter, value);
                text += Format("%s%s(%d) %d: ", of.c_str(), setter.name, value, taken) +
                        ToHex(adapter.Registers()) + Derived(adapter) + " : " + rig.Take() + "\n";
            }
        }
    }

    NetworkRig rig;
    bool silent = false;
    Adapter adapter{CKvNetStatus(8, std::uint32_t{0x10021}), 0};
    CString text;
};

} // namespace

TEST_F(Accessors, ValuesImagesAndHints) {
    Play(SettersOfAll(), "");
    Play(SettersOf(0), "generator ");
    Play(SettersOf(1), "analyser ");
    text += "with four slots a wire, clocks the other way\n";
    for (const int which : {0, 1}) {
        adapter.SetSubChannelsPerWire(which, 4);
        adapter.SetSerialClockDir(which, which == 0 ? CLOCKDIR_IN : CLOCKDIR_OUT);
    }
    Play(SettersOf(0), "generator ");
    Play(SettersOf(1), "analyser ");
    Play(SettersOfAll(), "");
    ExpectGolden(__FILE__, "accessors.txt", text);
}

TEST_F(Accessors, ChannelsOfArrays) {
    for (const int slots : {2, 4}) {
        for (const int which : {0, 1}) {
            adapter.SetSubChannelsPerWire(which, slots);
        }
        for (int row = 0; row < 16; ++row) {
            const auto bus = static_cast<std::uint8_t>(row / 4);
            const auto group = static_cast<std::uint8_t>(row / 2 % 2);
            const auto on = static_cast<std::uint8_t>(row % 2);
            Play(SettersOfChannels(bus, group, on), Format("%d slots, %d %d %d ", slots, bus, group, on));
        }
    }
    Play({{"ResetChannelArrayDevice", {0}, [](Adapter& a, int) { return a.ResetChannelArrayDevice(); }}}, "");
    silent = true;
    adapter.SetControlMode(0);
    Play(SettersOfChannels(ROUTING_A, 0, 1), "silent ");
    Play(SettersOfChannels(ROUTING_A, 1, 1), "silent ");
    Play({{"SendSPIData", {1}, [](Adapter& a, int v) { return a.SendSPIData(v, Bytes(11, 9).data()); }},
          {"ControlMode", {1}, [](Adapter& a, int v) { return a.SetControlMode(v); }},
          {"SendI2CData", {1}, [](Adapter& a, int v) { return a.SendI2CData(v, Bytes(11, 7).data()); }},
          {"ResetChannelArrayDevice", {0}, [](Adapter& a, int) { return a.ResetChannelArrayDevice(); }},
          {"UpdateDeviceFromSettings", {0}, [](Adapter& a, int) { return a.UpdateDeviceFromSettings(); }},
          {"GetUnitStatus", {0}, [](Adapter& a, int) { return a.GetUnitStatus(); }},
          {"ReadFrameClockFreq", {0}, [](Adapter& a, int) { return a.ReadFrameClockFreq(); }},
          {"ResetDevice", {0, 1}, [](Adapter& a, int v) { return a.ResetDevice(v); }}},
         "silent ");
    ExpectGolden(__FILE__, "channels.txt", text);
}

} // namespace kalvio::test
