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
        {"UpdateGenRouting", {0}, [](Adapter& a, int) { return a.UpdateGenRouting(); }},
        {"UpdateAnaRouting", {0}, [](Adapter& a, int) { return a.UpdateAnaRouting(); }},
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

} // namespace

TEST(Accessors, ValuesImagesAndHints) {
    NetworkRig rig;
    rig.unit.AttachPeripheral(8, [&rig](auto frame) { // an SPI transfer brings back what it sent
        rig.events += ToHex(frame) + " ";
        const Bytes data(frame.begin() + 4, frame.end() - 2);
        return AnswerFrame(8, frame[3], frame[3] == 0xCA ? data : Bytes{});
    });
    Adapter adapter(CKvNetStatus(8, std::uint32_t{0x10021}), 0);
    CString text;
    const auto play = [&](const std::vector<Setter>& setters, const char* of) {
        for (const Setter& setter : setters) {
            for (const int value : setter.values) {
                rig.Take();
                const int taken = setter.set(adapter, value);
                text += Format("%s%s(%d) %d: ", of, setter.name, value, taken) + ToHex(adapter.Registers()) +
                        Derived(adapter) + " : " + rig.Take() + "\n";
            }
        }
    };
    play(SettersOfAll(), "");
    play(SettersOf(0), "generator ");
    play(SettersOf(1), "analyser ");
    text += "with four slots a wire, clocks the other way\n";
    for (const int which : {0, 1}) {
        adapter.SetSubChannelsPerWire(which, 4);
        adapter.SetSerialClockDir(which, which == 0 ? CLOCKDIR_IN : CLOCKDIR_OUT);
    }
    play(SettersOf(0), "generator ");
    play(SettersOf(1), "analyser ");
    play(SettersOfAll(), "");
    ExpectGolden(__FILE__, "accessors.txt", text);
}

} // namespace kalvio::test
