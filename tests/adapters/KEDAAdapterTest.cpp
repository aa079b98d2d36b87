// One adapter on the bus: the bytes of its commands, the rules of its image, its channels and its archive.

#include "adapters/KEDAAdapter.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "peripheral_network/NetworkRig.h"
#include "simulator/peripherals/KedaAdapter.h"

#include <functional>
#include <sstream>

namespace kalvio::test {
namespace {

const CKvNetStatus kOn(8, std::uint32_t{0x10021});

// An adapter at 8 that answers every command, noting the frames.
class KEDAAdapterTest : public ::testing::Test {
protected:
    KEDAAdapterTest() { Answer(AnswerFrame(8, 0, {})); }
    void Answer(const Bytes& answer) { rig.Attach(8, {answer}); }
    // The command, number and data bytes of the frames since the last time.
    CString Frames() {
        CString frames;
        std::istringstream words(std::exchange(rig.events, {}));
        for (CString word; words >> word;) {
            if (word.starts_with("5508")) {
                frames += word.substr(4, word.size() - 8) + ";";
            }
        }
        return frames;
    }
    static CString Plain(CString text) {
        std::erase(text, ' ');
        return text;
    }

    NetworkRig rig;
    CKEDAAdapter adapter{kOn, 0};
};

} // namespace

TEST_F(KEDAAdapterTest, EachGroupIsOneCommand) {
    const struct {
        std::function<short()> send;
        const char* frame; // number of data bytes, command, data
    } kRows[] = {
        {[&] { return adapter.UpdateRelayCtrl(); }, "01 C1 00;"},
        {[&] { return adapter.UpdateIOCtrl(); }, "01 C2 00;"},
        {[&] { return adapter.UpdateGenRouting(); }, "04 C3 00 FF 00 AA;"},
        {[&] { return adapter.UpdateGenAnaFormat(0); }, "03 C4 30 00 08;"},
        {[&] { return adapter.UpdateGenAnaClocks(0); }, "02 C5 80 00;"},
        {[&] { return adapter.UpdateAnaRouting(); }, "02 C6 00 01;"},
        {[&] { return adapter.UpdateGenAnaFormat(1); }, "03 C7 30 00 08;"},
        {[&] { return adapter.UpdateGenAnaClocks(1); }, "02 C8 80 80;"},
        {[&] { return adapter.UpdateCtrlMode(); }, "01 C9 06;"},
        {[&] { return adapter.UpdateDelays(); }, "01 CE 21;"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(row.send(), 0);
        EXPECT_EQ(Frames(), Plain(row.frame));
    }
    // With serial and master clock coming in, the master clock is not asked for; the image keeps the wish.
    adapter.SetMasterClockDir(1, CLOCKDIR_IN);
    adapter.UpdateGenAnaClocks(1);
    EXPECT_EQ(Frames(), "02C88080;");
    EXPECT_EQ(adapter.GetMasterClockDir(1), CLOCKDIR_IN);
    CKEDAAdapter silent(kOn, 1);
    EXPECT_EQ(silent.UpdateIOCtrl(), 0);
    EXPECT_EQ(silent.GetUnitStatus(), 0);
    EXPECT_EQ(Frames(), "");
    rig.unit.AttachPeripheral(8, [](auto) { return Bytes{}; });
    EXPECT_EQ(adapter.UpdateIOCtrl(), KVNET_ERR_TIMEOUT);
}

TEST_F(KEDAAdapterTest, ReadsTheUnitAndWarnsOfClocks) {
    Bytes registers{0x07, 0x0A, 0x11, 0x22, 0x33, 0x44, 0x33, 0x01, 0x07, 0x86,
                    0x03, 0xEE, 0xEE, 0x30, 0x00, 0x08, 0x80, 0x85, 0x01, 0xEE};
    Answer(AnswerFrame(8, 0xC0, registers));
    EXPECT_EQ(adapter.UpdateSettingsFromDevice(), 1);
    EXPECT_EQ(Frames(), "00C0;");
    EXPECT_EQ(ToHex(adapter.Registers()), "070A33010711223344860300013000088085210100");
    EXPECT_EQ(adapter.GetFrameClockFreq(0), 48000);
    EXPECT_EQ(adapter.GetBitClockFreq(0), 24576000); // 16 slots of 32 bits
    EXPECT_EQ(adapter.BitClockValid(0), 1);
    EXPECT_EQ(adapter.GetMasterClockFreq(0), 24576000);
    EXPECT_EQ(adapter.GetFrameClockFreq(1), 96000);
    Answer(AnswerFrame(8, 0xCD, {0x35}));
    EXPECT_EQ(adapter.ReadFrameClockFreq(), 0);
    EXPECT_EQ(adapter.GetFrameClockFreq(0), 96000);
    EXPECT_EQ(adapter.GetFrameClockFreq(1), 48000);
    EXPECT_EQ(adapter.BitClockValid(0), 0);
    EXPECT_EQ(adapter.ClocksValid(1, 0, 1), 0); // known already: no box
    EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{});
}

// At 96 kHz either way; images of the archive's order change without a check.
TEST_F(KEDAAdapterTest, AClockThatBecomesInvalidIsWarnedOf) {
    constexpr const char* kFine = "000030000800FF00AA800000013000088080210600";
    constexpr std::size_t kGenFormat = 2, kGenClocks = 9, kAnaFormat = 13, kAnaClocks = 16;
    constexpr std::uint8_t k16Slots = 0x33, kTimes256 = 0x84, kTimes512 = 0x86;
    const struct {
        std::vector<std::pair<std::size_t, std::uint8_t>> changes;
        int generator, analyser, valid;
        const char* direction; // null: no box
        const char* clock;
    } kRows[] = {
        {{}, 1, 1, 1, nullptr, ""},
        {{{kGenFormat, k16Slots}}, 1, 0, 0, "Generator", "Bit clock"},
        {{{kGenClocks, kTimes512}}, 1, 0, 0, "Generator", "Master clock"},
        {{{kGenClocks, kTimes256}}, 1, 1, 1, nullptr, ""}, // 24.576 MHz, the fastest
        {{{kGenFormat, k16Slots}, {kGenClocks, kTimes512}},
         1,
         0,
         0,
         "Generator",
         "Bit clock and Master clock"},
        {{{kGenFormat, k16Slots}}, 0, 1, 1, nullptr, ""}, // not tested
        {{{kAnaFormat, k16Slots}}, 0, 1, 0, "Analyser", "Bit clock"},
        {{{kAnaClocks, kTimes512}}, 1, 1, 0, "Generator and/or Analyser", "Master clock"},
        {{{kGenFormat, k16Slots}}, 1, 1, 0, nullptr, ""}, // of both, the analyser decides
        {{{kGenFormat, k16Slots}, {kAnaClocks, kTimes512}},
         1,
         1,
         0,
         "Generator and/or Analyser",
         "Bit clock and Master clock"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(&row - kRows);
        CKEDAAdapter::Record record{kOn, {}, {}};
        std::ranges::copy(Hex(kFine), record.image.begin());
        adapter.Apply(record);
        Answer(AnswerFrame(8, 0xCD, {0x55}));
        ASSERT_EQ(adapter.ReadFrameClockFreq(), 0);
        ASSERT_EQ(adapter.ClocksValid(1, 1, 1), 1);
        for (const auto& [place, byte] : row.changes) {
            record.image[place] = byte;
        }
        adapter.Apply(record);
        EXPECT_EQ(adapter.ClocksValid(row.generator, row.analyser, 1), row.valid);
        std::vector<CString> boxes;
        if (row.direction != nullptr) {
            boxes.push_back(
                Format("A change has been made that makes the %s %s frequency greater than 24.576MHz. "
                       "This frequency is invalid.\n\nNote:\n"
                       "The Bit clock is equal to (Frame clock x Slot Length x Slots per wire).\n"
                       "The Master clock is equal to (Frame clock x Master clock multiplier).",
                       row.direction, row.clock));
        }
        EXPECT_EQ(rig.host.user.Texts(), boxes);
        EXPECT_EQ(adapter.ClocksValid(row.generator, row.analyser, 1), row.valid); // told once
        EXPECT_EQ(rig.host.user.Texts(), boxes);
        rig.host.user.Clear();
    }
}

TEST_F(KEDAAdapterTest, ChannelsOfArraysAreSlots) {
    const struct {
        const char* what;
        std::function<short()> call;
        short code;
        const char* frames;
    } kRows[] = {
        {"one slot alone", [&] { return adapter.BusExclusiveChannel(2, 0, 3, 0, 1); }, 0,
         "04 C3 00 08 00 AA;"},
        {"all but one", [&] { return adapter.BusGroupExclusiveChannel(1, 0, 0, 0); }, 0,
         "04 C3 00 FE 00 AA;"},
        {"beyond the slots, two a wire", [&] { return adapter.BusChannel(1, 0, 8, 1); }, 0, ""},
        {"all on B", [&] { return adapter.BusAll(2, 0, 1); }, 0, "04 C3 00 FF FF FF;"},
        {"all off", [&] { return adapter.BusGroupAll(1, 0, 0); }, 0, "04 C3 00 00 FF FF;"},
        {"one slot", [&] { return adapter.BusChannel(1, 0, 7, 1); }, 0, "04 C3 00 80 FF 7F;"},
        {"a pair alone", [&] { return adapter.StereoPairExclusiveChannel(0, 3, 2, 0, 1); }, 0,
         "04 C3 00 0C FF 7B;"},
        {"a pair", [&] { return adapter.StereoPairChannel(9, 0, 0, 1); }, 0, "04 C3 00 0F FF 7A;"},
        {"all pairs", [&] { return adapter.StereoPairAll(0, 1); }, 0, "04 C3 00 FF FF AA;"},
        {"analyser B", [&] { return adapter.BusExclusiveChannel(2, 1, 5, 0, 0); }, 0, "02 C6 00 09;"},
        {"analyser pair", [&] { return adapter.StereoPairGroupExclusiveChannel(1, 3, 2, 1); }, 0,
         "02 C6 04 05;"},
        {"analyser has no third bus", [&] { return adapter.BusExclusiveChannel(3, 1, 0, 0, 1); }, -1, ""},
        {"nor single channels", [&] { return adapter.BusChannel(1, 1, 0, 1); }, -1, ""},
        {"no balance", [&] { return adapter.BusBalance(1, 0, 1); }, -1, ""},
        {"no load", [&] { return adapter.BusLoad(1, 0, 1); }, -1, ""},
        {"a load of pairs does nothing", [&] { return adapter.StereoPairLoad(1, 0, 1); }, 0, ""},
        {"the block", [&] { return adapter.UpdateDeviceWithChannelArrayDetails(nullptr); }, 0,
         "04 C3 00 FF FF AA;02 C6 04 05;"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.call(), row.code);
        EXPECT_EQ(Frames(), Plain(row.frames));
    }
    ChannelDetails channel{8, 0x21, 2, 0, 1, 1, 0};
    EXPECT_EQ(adapter.AddChannelToChannelArrayDetails(nullptr, &channel), 1);
    EXPECT_EQ(adapter.GetGenRouting(1, 2), ROUTING_B);
    adapter.SetSubChannelsPerWire(0, 8);
    channel.channel = 16;
    EXPECT_EQ(adapter.AddChannelToChannelArrayDetails(nullptr, &channel), 0);
    EXPECT_EQ(adapter.BusChannel(1, 0, 16, 1), -1);
}

TEST_F(KEDAAdapterTest, TheDocumentKeepsAdaptersInItsArchive) {
    rig.unit.AttachPeripheral(8, [this](auto frame) {
        rig.events += ToHex(frame) + " ";
        return frame[3] == 0 ? AnswerFrame(8, 0, {0x21, 0x00, 0x01})
                             : AnswerFrame(8, frame[3], Bytes(frame[3] == 0xCA ? frame[2] : 0));
    });
    CKEDAAdapterSettings& settings = *rig.network.GetFormatConverterSettings()->GetKEDAAdapterSettings();
    CKEDAAdapter* made = settings.GetKEDAAdapter(8);
    ASSERT_NE(made, nullptr);
    made->SetAudioOn(1);
    const std::uint8_t bytes[] = {0x5A, 0xA5};
    made->SendSPIData(2, bytes);
    CArchive stored;
    settings.Serialize(stored);
    EXPECT_EQ(ToHex(stored.Bytes()), "0100000001000808210001000008300008"
                                     "00FF00AA800000013000088080210600025AA5");
    CArchive alone;
    made->Serialize(alone);
    CKEDAAdapter other(CKvNetStatus(9, std::uint32_t{0}), 0);
    CArchive loading{alone.Bytes()};
    other.Serialize(loading);
    EXPECT_EQ(ToHex(other.Registers()), "000030000800FF00AA800000013000088080210600"); // the outputs are off
    EXPECT_EQ(other.GetNumTransmitChars(), 2);
    EXPECT_EQ(other.GetAddress(), 8);
    Frames();
    CString error;
    ASSERT_TRUE(settings.Load(stored.Bytes(), error)) << error;
    EXPECT_EQ(Frames(),
              Plain("00 00;00 00;01 C1 00;01 C2 00;03 C4 30 00 08;03 C7 30 00 08;02 C5 80 00;02 C8 80 80;"
                    "04 C3 00 FF 00 AA;02 C6 00 01;01 CE 21;01 C9 06;")); // the outputs come back off
    // Below configuration 19 two more values stand behind the slave address, below 18 there is no block.
    const Bytes early =
        Hex("01000000 0100 08 08 21000100 00 08 300008 00FF00AA 8000 0001 300008 8080 21 06 00"
            "11223344 55667788 02 5AA5");
    CArchive older{early};
    older.SetConfigVersion(18);
    ASSERT_TRUE(settings.Load(older, error)) << error;
    EXPECT_EQ(settings.GetKEDAAdapter(8)->GetNumTransmitChars(), 2);
    EXPECT_EQ(settings.GetKEDAAdapter(8)->GetTransmitBuffer()[1], 0xA5);
    Frames();
    std::vector<std::uint8_t> damaged = stored.Bytes();
    damaged[33] = 11; // bytes to transmit
    EXPECT_FALSE(settings.Load(damaged, error));
    EXPECT_EQ(error,
              "The settings could not be loaded: The archive holds 11 bytes to transmit for the adapter at "
              "8; an adapter holds at most 10.");
    for (std::size_t length = 0; length < stored.Bytes().size(); ++length) {
        EXPECT_FALSE(settings.Load(std::span(stored.Bytes()).first(length), error)) << length;
    }
    EXPECT_EQ(Frames(), "");
    EXPECT_EQ(settings.Adapters().size(), 1U);
    CArchive oldest{Bytes{}};
    oldest.SetConfigVersion(17);
    EXPECT_TRUE(settings.Load(oldest, error)) << error;
    EXPECT_EQ(settings.Adapters().size(), 0U); // removed all the same
}

TEST(KEDALists, OfferWhatTheAdapterHas) {
    CKEDAAdapter adapter(kOn, 0);
    adapter.SetSubChannelsPerWire(1, 8);
    const struct {
        int ctrlID;
        const char* with;
        const char* without; // an adapter
    } kRows[] = {
        {2917, "8 16 24 32 ", "8 16 24 32 "},
        {2926, "2 4 8 16 ", "2 4 8 16 "},
        {2945, "64 128 192 256 384 512 ", "64 128 192 256 384 512 "},
        {2993, "1 2 ", ""},
        {2994, "1 2 3 4 5 6 7 8 ", ""},
        {2995, "1 2 ", ""},
        {2996, "1 2 3 4 5 6 7 8 ", ""},
        {2949, nullptr, nullptr},
        {2918, nullptr, nullptr},
    };
    const auto shown = [](const CComboBox& combo) {
        CString text;
        for (int item = 0; item < combo.GetCount(); ++item) {
            text += combo.GetLBText(item) + " ";
        }
        return text;
    };
    TestHost host;
    CKEDAAdapterSettings settings;
    for (const auto& row : kRows) {
        for (const CKEDAAdapter* of :
             {static_cast<const CKEDAAdapter*>(&adapter), static_cast<const CKEDAAdapter*>(nullptr)}) {
            CComboBox combo(row.ctrlID, nullptr);
            combo.AddString("before", 0);
            const char* items = of != nullptr ? row.with : row.without;
            EXPECT_EQ(settings.FillCombo(of, &combo, row.ctrlID), items != nullptr ? 1 : 0) << row.ctrlID;
            EXPECT_EQ(shown(combo), items != nullptr ? items : "") << row.ctrlID;
        }
        EXPECT_EQ(settings.FillCombo(&adapter, nullptr, row.ctrlID), 0);
    }
    CColorCombo delays(2949, nullptr);
    EXPECT_EQ(settings.FillColorCombo(&adapter, &delays, 2949), 1);
    EXPECT_EQ(delays.GetCount(), 7);
    EXPECT_EQ(settings.FillColorCombo(&adapter, &delays, 2945), 0);
    EXPECT_EQ(settings.FillColorCombo(&adapter, nullptr, 2949), 0);
}

// What the panel links; the address and the device notice stay the network's where there is one.
TEST(KEDARegistration, TheDocumentOwnsItsControls) {
    TestHost host;
    const auto owned = [&host](const CSettingsData* document) {
        std::vector<int> ids;
        for (int id = -700; id < 4000; ++id) {
            if (host.application.GetDocForID(id) == document) {
                ids.push_back(id);
            }
        }
        return ids;
    };
    {
        const CKEDAAdapterSettings alone;
        std::vector<int> ids = owned(&alone);
        EXPECT_EQ(ids.size(), 83U);
        EXPECT_EQ(std::vector<int>(ids.begin(), ids.begin() + 11),
                  (std::vector<int>{-619, -618, -617, -616, -615, -614, -613, -612, -611, -610, -609}));
        EXPECT_EQ(
            std::ranges::count(ids, 2555) + std::ranges::count(ids, 2949) + std::ranges::count(ids, 2996), 3);
    }
    CKvNetSettings network;
    ASSERT_EQ(network.Initialise(), 1);
    EXPECT_EQ(owned(network.GetFormatConverterSettings()->GetKEDAAdapterSettings()).size(), 81U);
    EXPECT_EQ(owned(&network).size(), 12U);
}

// Scripts work on an adapter that measures clocks and has devices behind its control port.
TEST(KEDAAutomation, NamesReachTheCurrentAdapter) {
    NetworkRig rig;
    const auto device = rig.unit.Plug<simulator::KedaAdapter>(std::uint8_t{8});
    CKEDAAdapterSettings& settings = *rig.network.GetFormatConverterSettings()->GetKEDAAdapterSettings();
    const auto number = [](CCmdTarget& target, const char* name) {
        double value = -1.0;
        target.GetProperty(name).value.Get(value);
        return value;
    };
    EXPECT_EQ(number(settings, "KEDA_SlotLength"), 0.0);
    const CString choose =
        "You must use the KEDA_SetCurrentDevice(address) method to select the current KEDA Adapter "
        "before trying to access KEDA Adapter settings.";
    EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{choose});
    EXPECT_FALSE(settings.OLESetCurrentDevice(254));
    EXPECT_EQ(rig.host.user.Texts().back(),
              "The KEDA Adapter address entered is not a valid address of a KEDA Adapter.");
    ASSERT_TRUE(settings.OLESetCurrentDevice(8));
    EXPECT_EQ(number(settings, "KEDA_SlotLength"), 32.0);

    CCmdTarget* analyser = settings.GetProperty("Analyzer").value.GetTarget();
    ASSERT_NE(analyser, nullptr);
    EXPECT_TRUE(analyser->SetProperty("KEDA_SlotLength", VARIANT::Short(16)).Ok());
    EXPECT_EQ(number(settings, "KEDA_SlotLength"), 16.0); // the group stays
    settings.GetProperty("Generator");
    EXPECT_EQ(number(settings, "KEDA_SlotLength"), 32.0);
    const AutomationResult refused = settings.SetProperty("KEDA_SlotLength", VARIANT::Short(20));
    EXPECT_EQ(refused.fault, AutomationFault::Refused);
    EXPECT_EQ(rig.host.user.Texts().back(),
              "The property was not set: the value given for KEDA_SlotLength is not valid.");
    EXPECT_TRUE(settings.SetProperty("KEDA_EnableGenerator", VARIANT::Bool(true)).Ok());
    EXPECT_EQ(settings.GetKEDAAdapter(8)->GetUnitStatus(), 0); // the unit holds what was set
    EXPECT_EQ(number(settings, "KEDA_EnableGenerator"), -1.0); // a true BOOL

    VARIANT received = VARIANT::FromArray({VARIANT::Short(0), VARIANT::Short(0)});
    const VARIANT two = VARIANT::FromArray({VARIANT::Short(0x81), VARIANT::Short(0x155)});
    EXPECT_TRUE(settings.OLESendSPIData(2, two, VARIANT::Reference(&received)));
    ASSERT_NE(received.GetArray(), nullptr);
    EXPECT_EQ((*received.GetArray())[0].Type(), AutomationType::Byte);
    VARIANT one;
    EXPECT_TRUE(settings.OLESendSPIData(1, VARIANT::Short(0x5A), VARIANT::Reference(&one)));
    EXPECT_EQ(one.Type(), AutomationType::Byte);
    EXPECT_FALSE(settings.OLEAddToArray(8, 1, 0, "none"));
    EXPECT_EQ(rig.network.DefineArray("slots", 0, 0), 0);
    EXPECT_FALSE(settings.OLEAddToStereoArray(8, 0, "slots"));
    EXPECT_TRUE(settings.OLEAddToArray(8, 1, 0, "SLOTS"));
    EXPECT_FALSE(settings.OLEAddToArray(8, 1, 0, "slots"));
    EXPECT_EQ(rig.host.user.Texts().back(),
              "The KEDA_AddToArray method failed because a conflict was detected with "
              "some details already in the Channel Array.");
    EXPECT_TRUE(rig.Call("CA_ExclusiveChannel", {VARIANT::Short(3)}));
    EXPECT_EQ(settings.GetKEDAAdapter(8)->GetGenRouting(2, 1), ROUTING_A);
    ChannelDetails fifth;
    EXPECT_EQ(rig.network.GetChannelArray("slots")->GetChannelDetails(4, fifth), 1);
    EXPECT_EQ(fifth, (ChannelDetails{8, 0x21, 1, 0, 4, 0, 0}));
    EXPECT_EQ(rig.network.DefineArray("pairs", 1, 0), 0);
    EXPECT_FALSE(settings.OLEAddToArray(8, 1, 0, "pairs"));
    EXPECT_TRUE(settings.OLEAddToStereoArray(8, 0, "Pairs"));
    CString pairs;
    ChannelDetails channel;
    for (short index = 0; rig.network.GetChannelArray("pairs")->GetChannelDetails(index, channel) != 0;
         ++index) {
        pairs += Format("%d:%02X.%d.%d.%d ", channel.address, channel.classType, channel.bus, channel.group,
                        channel.channel);
        EXPECT_EQ(channel.state + channel.flags, 0);
    }
    EXPECT_EQ(pairs,
              "8:21.1.0.0 8:21.2.0.1 8:21.1.0.2 8:21.2.0.3 8:21.1.0.4 8:21.2.0.5 8:21.1.0.6 8:21.2.0.7 "
              "8:21.1.0.8 8:21.2.0.9 8:21.1.0.10 8:21.2.0.11 8:21.1.0.12 8:21.2.0.13 8:21.1.0.14 "
              "8:21.2.0.15 ");
    EXPECT_TRUE(device->Faults().empty());
}

} // namespace kalvio::test
