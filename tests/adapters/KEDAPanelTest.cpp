// The adapter's panel: what a user does to its controls, what it sends and what it then shows.

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterControlPanelView.h"
#include "adapters/KEDADataFormatBar.h"
#include "adapters/KEDATimingDiagram.h"
#include "peripheral_network/NetworkRig.h"
#include "simulator/peripherals/KedaAdapter.h"
#include "support/WindowScript.h"

#include <utility>

namespace kalvio::test {
namespace {

class KEDAPanelTest : public ::testing::Test {
protected:
    KEDAPanelTest() {
        rig.unit.AttachPeripheral(8, [this](auto bytes) {
            const CString text = ToHex(bytes);
            sent += text.substr(4, text.size() - 8) + " "; // number of data bytes, command, data
            return unit->Answer(bytes, 0).bytes;
        });
        rig.network.FillDeviceList();
        frame = Settings().OpenKEDAAdapterControlPanel();
        EXPECT_NE(frame, nullptr);
        sent.clear();
    }
    ~KEDAPanelTest() override { EXPECT_EQ(rig.events.find('/'), CString::npos) << "no hint carries a flag"; }
    CKEDAAdapterSettings& Settings() {
        return *rig.network.GetFormatConverterSettings()->GetKEDAAdapterSettings();
    }
    CKEDAAdapterControlPanelView& View() {
        return *dynamic_cast<CKEDAAdapterControlPanelView*>(frame->Children().front());
    }
    CKEDAAdapter& Adapter() { return *View().Adapter(); }
    ActFault Act(ActKind kind, int id, const char* text = "", int value = 0) {
        const ActFault fault = PerformAct(*frame, {kind, id, text, value}).fault;
        PumpMessages();
        return fault;
    }
    void Select() { ASSERT_EQ(Act(ActKind::Choose, 2555), ActFault::None); }
    CString Sent() { return std::exchange(sent, CString()); }
    // The panel, without what is hidden.
    CString Shown() {
        ControlState state = DescribeWindow(*View().Panels().front());
        std::erase_if(state.children, [](const ControlState& control) { return !control.visible; });
        return DumpWindow(state);
    }
    ControlState Control(int id) {
        ControlState state;
        View().Find<CWnd>(id)->Describe(state);
        return state;
    }

    NetworkRig rig;
    std::shared_ptr<simulator::KedaAdapter> unit = std::make_shared<simulator::KedaAdapter>(std::uint8_t{8});
    CString sent;
    CTypedFrameWnd* frame = nullptr;
};

} // namespace

TEST_F(KEDAPanelTest, EachTabShowsItsControls) {
    CString text = "layout\n" + LayoutText(DescribeWindow(*frame)) + "no adapter\n" + Shown();
    Select();
    text += "generator\n" + Shown();
    EXPECT_EQ(Act(ActKind::Choose, 2914, "", 1), ActFault::None);
    text += "analyser\n" + Shown();
    EXPECT_EQ(Act(ActKind::Choose, 2914, "", 2), ActFault::None);
    text += "control port\n" + Shown();
    ExpectGolden(__FILE__, "panel.txt", text);
    EXPECT_EQ(frame->WindowType(), 37);
    EXPECT_EQ(rig.host.application.Updaters().Count(&View()), 83U);
}

TEST_F(KEDAPanelTest, EveryActOnEveryTab) {
    WindowScript script(rig.host, __FILE__, "acts.txt");
    script.window = frame;
    script.frames = [this] { return Sent(); };
    script.words["image"] = [this](const std::string& rest) { // changes without a word to anybody
        CKEDAAdapter::Record record{Adapter().Status(), {}, {}};
        std::ranges::copy(Hex(rest), record.image.begin());
        Adapter().Apply(record);
    };
    script.words["hint"] = [](const std::string& rest) { UpdateViews(nullptr, std::stoi(rest), nullptr, 0); };
    script.Play();
}

TEST_F(KEDAPanelTest, TheControlPortTransfersAndShowsItsOutcome) {
    Select();
    Act(ActKind::Choose, 2914, "", 2);
    Act(ActKind::Click, 2756); // I2C
    Sent();
    EXPECT_EQ(Act(ActKind::Click, 2753), ActFault::Disabled);
    EXPECT_EQ(Act(ActKind::Type, 2758, "80"), ActFault::None);
    EXPECT_EQ(Act(ActKind::Enter, 2758), ActFault::Refused);
    EXPECT_EQ(Act(ActKind::Type, 2758, "1A"), ActFault::None);
    EXPECT_EQ(Act(ActKind::Type, 2763, "01 02 03 04 05 06 07 08 09 0A 0B"), ActFault::Refused);
    EXPECT_EQ(Act(ActKind::Type, 2763, "00 5A"), ActFault::None);
    EXPECT_EQ(Act(ActKind::Click, 2766), ActFault::None);
    EXPECT_EQ(Control(2760).text, "ACK");
    EXPECT_EQ(Control(2760).textColor, 0x00FF00U);
    Act(ActKind::Type, 2758, "1B");
    Act(ActKind::Click, 2766);
    EXPECT_EQ(Control(2760).text, "NACK");
    EXPECT_EQ(Control(2760).textColor, 0xFF0000U);
    Act(ActKind::Click, 2752); // SPI
    EXPECT_TRUE(Control(2758).greyed);
    EXPECT_EQ(Act(ActKind::Click, 2766), ActFault::None);
    EXPECT_NE(Control(2765).text, "");
    EXPECT_EQ(Control(2763).text, "00 5A");
}

TEST_F(KEDAPanelTest, AnAddressWithoutAnAdapterIsAskedFor) {
    Act(ActKind::Type, 2555, "99");
    EXPECT_EQ(Act(ActKind::Enter, 2555), ActFault::None);
    EXPECT_EQ(Control(2555).text, "");
    Act(ActKind::Type, 2555, " 9 ");
    EXPECT_EQ(Act(ActKind::Enter, 2555), ActFault::Refused);
    EXPECT_EQ(rig.host.user.Texts().back(),
              "The address entered is not a valid KEDA Adapter address. Do you wish to "
              "use this address anyway?");
    EXPECT_EQ(View().Address(), 254);
    rig.host.user.QueueAnswer(BoxAnswer::Yes);
    Act(ActKind::Type, 2555, "9");
    EXPECT_EQ(Act(ActKind::Enter, 2555), ActFault::None);
    EXPECT_EQ(View().Address(), 9);
    EXPECT_TRUE(Adapter().IsNotResponding());
    EXPECT_EQ(Act(ActKind::Click, 2901), ActFault::None);
    EXPECT_EQ(Act(ActKind::Click, 2557), ActFault::None) << "a scan selects the first that is found";
    EXPECT_EQ(View().Address(), 8);
}

TEST_F(KEDAPanelTest, ADeviceInStandbyIsSwitchedOnAndGivenItsImage) {
    EXPECT_EQ(rig.network.Reset(8, 0, nullptr), 0);
    Sent();
    Select();
    EXPECT_EQ(Sent(),
              "0000 0000 01FF01 0000 01C100 01C200 03C4300008 03C7300008 02C58000 02C88080 04C300FF00AA "
              "02C60001 01CE21 01C906 ");
    EXPECT_TRUE(unit->IsOn());
    Act(ActKind::Click, 2900);
    Sent();
    EXPECT_EQ(Act(ActKind::Click, 2556), ActFault::None);
    EXPECT_NE(Adapter().GetGenBypass(), 0) << "the defaults";
    EXPECT_EQ(Act(ActKind::Click, 2558), ActFault::None);
    EXPECT_FALSE(unit->IsOn());
}

TEST_F(KEDAPanelTest, FrequenciesAreReadOnceASecondWhileTheDeviceIsOn) {
    rig.host.clock.Advance(5000);
    PumpMessages();
    EXPECT_EQ(Sent(), "") << "nothing is selected";
    Select();
    PumpMessages();
    Sent();
    for (int second = 0; second < 3; ++second) {
        rig.host.clock.Advance(1000);
        PumpMessages();
    }
    EXPECT_EQ(Sent(), "00CD 00CD 00CD ");
    EXPECT_EQ(Control(2936).text, "48.0kHz");
    EXPECT_EQ(Control(2940).text, "3.072MHz");
    View().OnDestroy();
    rig.host.clock.Advance(1000);
    PumpMessages();
    EXPECT_EQ(Sent(), "");
}

TEST_F(KEDAPanelTest, TheLayoutKeepsAddressAndTab) {
    Select();
    Act(ActKind::Choose, 2914, "", 1);
    CArchive stored;
    View().Serialize(stored);
    EXPECT_EQ(ToHex(stored.Bytes()), "0801000000");
    CTypedFrameWnd* other = Settings().OpenKEDAAdapterControlPanel();
    auto& loaded = *dynamic_cast<CKEDAAdapterControlPanelView*>(other->Children().front());
    for (const auto& [version, tab] : {std::pair{18, 0}, std::pair{19, 1}}) { // older layouts have no tab
        const Bytes bytes = Hex(version == 18 ? "08" : "0801000000");
        CArchive archive(bytes);
        archive.SetConfigVersion(version);
        loaded.Serialize(archive);
        EXPECT_EQ(loaded.Address(), 8);
        EXPECT_EQ(loaded.Find<CTabCtrl>(2914)->GetCurSel(), tab);
    }
    // Two panels of one adapter stay in step.
    Act(ActKind::Click, 2918);
    EXPECT_EQ(loaded.Find<CButton>(2918)->GetCheck(), 1);
}

TEST(KEDATimingDiagram, DrawsOneFrame) {
    // Whether it is drawn, pads, data and slots, then the five flags.
    const KEDATiming timings[] = {{true, 1, 5, 8, 2, false, false, false, true, true},
                                  {true, 0, 8, 8, 2, true, true, false, false, false},
                                  {true, 3, 5, 8, 4, false, false, true, false, true},
                                  {true, 0, 24, 32, 4, true, false, false, true, false},
                                  {true, 8, 24, 32, 16, false, true, true, true, true}};
    CString text;
    for (const KEDATiming& timing : timings) {
        for (const DrawnItem& item : DrawTiming(timing, 192, 40)) {
            text +=
                Format("%c %d,%d %d,%d %06X %s\n", "LBT"[static_cast<int>(item.kind)], item.where.left,
                       item.where.top, item.where.right, item.where.bottom, item.color, item.text.c_str());
        }
        text += "\n";
    }
    ExpectGolden(__FILE__, "timing.txt", text);
    EXPECT_TRUE(DrawTiming({}, 192, 40).empty());
}

} // namespace kalvio::test
