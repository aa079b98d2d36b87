// Every misbehaving peripheral in every role of an array, and every request of every kind of work failing in
// every way: codes and texts are the right ones, arrays show what was asked last, devices behind the one that
// failed are left alone, and afterwards all goes on.

#include "peripheral_network/NetworkRig.h"
#include "platform/Archive.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "simulator/peripherals/Misbehaving.h"
#include "switching/ChannelArray.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <optional>

namespace kalvio::test {
namespace {

using simulator::FaultKind;
using simulator::IoSwitcher;
using simulator::Misbehaving;
using simulator::Misbehaviour;

constexpr int kDevices = 3; // at 3, 4 and 5, two channels each of bus A, group X

struct ArrayBus : NetworkRig {
    ArrayBus() { Renew(); }
    // Switchers just switched on, and the array with every channel off.
    void Renew() {
        switchers.clear();
        network.GetChannelArrayList()->DeleteAll();
        for (std::uint8_t place = 0; place < kDevices; ++place) {
            unit.AttachPeripheral(static_cast<std::uint8_t>(3 + place), nullptr);
            switchers.push_back(unit.Plug<IoSwitcher>(static_cast<std::uint8_t>(3 + place)));
        }
        Define("A");
    }
    short Define(const char* name) {
        const short code = network.DefineArray(name, 0, 0);
        for (std::uint8_t entry = 0; entry < 2 * kDevices; ++entry) {
            network.AddChannelToArray(name, static_cast<std::uint8_t>(3 + entry / 2), 0x11, 0, 0, entry % 2,
                                      0);
        }
        return code;
    }
    CChannelArray& Array() { return *network.GetChannelArray("A"); }
    // State, or flags of a balance, of each channel.
    CString States() {
        CString text;
        ChannelDetails entry;
        for (short index = 0; Array().GetChannelDetails(index, entry) != 0; ++index) {
            text += std::to_string(entry.state | entry.flags);
        }
        return text;
    }
    std::vector<std::shared_ptr<IoSwitcher>> switchers;
};

// What of an array shows what was asked once a device failed: the channels up to that device's, all of them,
// that device's own, none.
enum class Stored { UpTo, All, Own, None };

TEST(FaultSweep, EveryMisbehaviourInEveryRole) {
    const struct {
        const char* name;
        bool startsOn;
        const char* asked; // of all channels, once it is done
        short onEcho;      // what a wrong first data byte comes to
        Stored stored;
        std::function<short(CChannelArray&, int broken)> run;
    } works[] = {
        {"exclusive", true, "100000", -10, Stored::UpTo,
         [](auto& a, int) { return a.ExclusiveChannel(1, 1); }},
        {"clear", true, "000000", -10, Stored::UpTo, [](auto& a, int) { return a.ClearChannels(1); }},
        {"set all", false, "111111", -10, Stored::UpTo, [](auto& a, int) { return a.SetAllChannels(); }},
        {"balance", false, "111111", 0, Stored::All, [](auto& a, int) { return a.Balance(1); }},
        {"update", true, "111111", -10, Stored::All,
         [](auto& a, int) { return a.UpdateDevicesFromSettings(); }},
        {"add", false, "101010", -10, Stored::Own,
         [](auto& a, int broken) { return a.AddRemoveChannel(static_cast<short>(2 * broken + 1), 1); }},
        {"load", false, "222222", 0, Stored::None,
         [](auto& a, int broken) {
             return a.GetChannelArrayDevice(static_cast<std::uint8_t>(3 + broken), 0x11)->BusLoad(0, 0, 1);
         }},
    };
    const struct {
        std::optional<Misbehaviour> kind; // none: a second device at the address
        short code;                       // 1: the work's own
    } kinds[] = {
        {Misbehaviour::Silent, -3},      {Misbehaviour::OtherAddress, -4},  {Misbehaviour::WrongChecksum, -6},
        {Misbehaviour::WrongLength, -5}, {Misbehaviour::WrongEcho, 1},      {Misbehaviour::Slow, -3},
        {Misbehaviour::ResetsItself, 0}, {Misbehaviour::GoesToStandby, -3}, {std::nullopt, -6}};
    ArrayBus rig;
    for (const auto& work : works) {
        for (const auto& kind : kinds) {
            for (int broken = 0; broken < kDevices; ++broken) {
                SCOPED_TRACE(Format("%s, kind %td, device %d", work.name, &kind - kinds, broken));
                rig.Renew();
                rig.Take();
                ASSERT_EQ(work.startsOn ? rig.Array().SetAllChannels() : 0, 0);
                const auto device = static_cast<std::size_t>(broken);
                const std::shared_ptr<IoSwitcher> later =
                    device + 1 < kDevices ? rig.switchers[device + 1] : nullptr;
                if (kind.kind) {
                    rig.unit.Detach(*rig.switchers[device]);
                    rig.unit.Attach(std::make_shared<Misbehaving>(rig.switchers[device], *kind.kind));
                } else {
                    rig.unit.Plug<IoSwitcher>(static_cast<std::uint8_t>(3 + broken));
                }
                const std::uint32_t before = later != nullptr ? later->Operations() : 0;
                const short code = kind.code == 1 ? work.onEcho : kind.code;
                EXPECT_EQ(work.run(rig.Array(), broken), code);
                CString states(6, work.startsOn ? '1' : '0');
                const bool own = work.stored == Stored::Own || work.stored == Stored::None;
                const std::size_t first = own ? 2 * device : 0;
                const bool whole = work.stored == Stored::All || (code == 0 && !own);
                const std::size_t end = whole ? states.size() : 2 * device + 2;
                if (code == 0 || work.stored != Stored::None) {
                    states.replace(first, end - first, CString(work.asked).substr(first, end - first));
                }
                EXPECT_EQ(rig.States(), states);
                EXPECT_TRUE(code == 0 || later == nullptr || later->Operations() == before) << "left alone";
                EXPECT_EQ(rig.network.GetShowErrorMessages(), 1);
                EXPECT_EQ(rig.Take().find('['), CString::npos) << "arrays report nothing themselves";
            }
        }
    }
}

bool IsKnown(const CString& text) {
    const std::size_t because = text.find(" method failed because ");
    if (!text.starts_with("The ") || because == CString::npos) {
        return false;
    }
    for (short code = -10; code <= -1; ++code) {
        if (text.ends_with(LoadText(GetErrorMessageID(code)) + ".")) {
            return true;
        }
    }
    return text.ends_with("'On' status field of the response disagrees with the parameters passed.");
}

TEST(FaultSweep, EveryRequestInEveryWay) {
    ArrayBus rig;
    rig.Array().SetAllChannels();
    const Bytes stored = rig.Stored();
    const auto calls = [&rig](const char* name, std::vector<VARIANT> arguments) {
        return [&rig, name, arguments] { rig.network.Invoke(name, arguments); };
    };
    CIOSwitcherSettings& switchers = *rig.network.GetSwitcherSettings()->GetIOSwitcherSettings();
    const struct {
        const char* name;
        std::function<void()> run;
        bool shown; // whether its failures are told to the user
    } works[] = {
        {"scan", [&rig] { rig.network.FillDeviceList(); }, false},
        {"define",
         [&] {
             rig.network.OLEDefineChannelArray("New", false, false);
             switchers.OLEAddToArray(4, 0, 1, "New");
             rig.network.RemoveArray("New");
         },
         true},
        {"switch", calls("CA_ExclusiveChannel", {VARIANT::Short(3)}), true},
        {"balance", calls("CA_Balance", {VARIANT::Bool(true)}), true},
        {"load", [&] { switchers.OLEBusLoad(3, 0, true); }, true},
        {"configuration",
         [&] {
             CString error;
             CArchive loading{stored};
             EXPECT_TRUE(rig.network.Load(loading, error)) << error;
         },
         false},
    };
    using enum FaultKind;
    for (const auto& work : works) {
        for (const auto kind : {FailAny, FailWrite, FailRead, WrongEcho, Refuse, ShortAnswer, StaleInput,
                                Silence, SlowAnswer, Disconnect, CorruptPeripheralEcho, PeripheralStatus}) {
            bool shows = true;
            for (std::uint32_t k = 1; shows && k < 400; k += work.name == CString("scan") ? 13 : 1) {
                SCOPED_TRACE(Format("%s, kind %d, request %u", work.name, static_cast<int>(kind), k));
                const std::uint32_t before = rig.unit.FaultsShown();
                rig.unit.AddFault({kind, k, 1, kind == PeripheralStatus ? 0xFFFDU : 0x0205U});
                work.run();
                shows = rig.unit.FaultsShown() != before;
                rig.unit.ClearFaults();
                EXPECT_EQ(rig.network.GetShowErrorMessages(), 1);
                std::size_t told = 0;
                for (const CString& text : rig.host.user.Texts()) {
                    const bool ofLink =
                        text.starts_with("The Kalvio software has encountered errors in the USB");
                    EXPECT_TRUE(ofLink || IsKnown(text)) << text;
                    told += ofLink ? 0U : 1U;
                }
                EXPECT_LE(told, work.shown ? 1U : 0U);
                rig.Take();
                rig.hardware.TerminateHardware();
                ASSERT_EQ(rig.BringUp(), 1);
                ASSERT_EQ(rig.Array().SetAllChannels() + rig.Array().ClearChannels(1), 0) << "goes on";
                ASSERT_EQ(rig.switchers[2]->Mask(0, 0), 0);
                rig.network.OLESetChannelArray("A");
                rig.Take();
            }
        }
    }
}

} // namespace
} // namespace kalvio::test
