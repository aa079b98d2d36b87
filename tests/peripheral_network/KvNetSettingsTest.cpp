#include "adapters/FormatConverterSettings.h"
#include "peripheral_network/NetworkRig.h"
#include "peripheral_network/bus/KvNetTrace.h"

namespace kalvio::test {
namespace {

const CString kBadAddress = " method failed because the 'sAddress' parameter passed is invalid.]";

struct KvNetSettingsTest : testing::Test {
    NetworkRig rig;
    VARIANT status;
};

TEST(KvNetSettings, TakeTheirControlsAway) {
    TestHost host;
    {
        CKvNetSettings network;
        EXPECT_EQ(host.application.GetDocForID(2557), &network);
    }
    EXPECT_EQ(host.application.GetDocForID(2557), nullptr);
}

TEST_F(KvNetSettingsTest, StatusAndResetOnTheWire) {
    const CString refused =
        "[The KVNET_Reset method failed because the 'On' status field of the response disagrees "
        "with the parameters passed.]";
    const CString hints = "-601:0003FFFF -609:0003FFFF ";
    const CString allHints = "-601:00FFFFFF -609:00FFFFFF ";
    const struct {
        int on; // -1: the status is asked for
        std::uint8_t address;
        Bytes answer;
        short code;
        CString happened;
        CString status;
    } table[] = {
        {-1, 3, {0x21, 0x3F, 0x01}, 0, "5503000052AA ", "77857"},
        {1, 3, {0x21, 0x3F, 0x01}, 0, "550301FF0151AA " + hints, "77857"},
        {7, 3, {0x11, 0x00, 0xFF}, 0, "550301FF0151AA " + hints, "16711697"},
        {0, 3, {0x11, 0x00, 0xFE}, 0, "550301FF0052AA " + hints, "16646161"},
        {0, 3, {0x11, 0x00, 0x01}, -10, "550301FF0052AA " + hints + refused, ""},
        {0, 255, {}, 0, "55FF01FF0056A5 " + allHints, "0"},
        {1, 255, {}, -10, "55FF01FF0155A5 " + allHints + refused, ""},
        {-1, 64, {}, -1, "[The KVNET_GetStatus" + kBadAddress, ""},
        {-1, 255, {}, -1, "[The KVNET_GetStatus" + kBadAddress, ""},
        {1, 254, {}, -1, "[The KVNET_Reset" + kBadAddress, ""},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(Format("%d %d", row.on, row.address));
        const std::uint8_t place = row.address < 64 ? row.address : 1;
        rig.Attach(place, {AnswerFrame(place, row.on < 0 ? 0x00 : 0xFF, row.answer)});
        status = {};
        EXPECT_EQ(row.on < 0 ? rig.network.GetStatus(row.address, &status)
                             : rig.network.Reset(row.address, row.on, &status),
                  row.code);
        EXPECT_EQ(rig.Take(), row.happened);
        EXPECT_EQ(status.ToText(), row.status);
        rig.unit.AttachPeripheral(place, nullptr);
    }
    EXPECT_TRUE(rig.unit.ProtocolErrors().empty());
}

TEST_F(KvNetSettingsTest, FailuresOfTheExchange) {
    for (const int code : {-13, -17, 77}) {
        rig.unit.AddFault({simulator::FaultKind::PeripheralStatus, 1, 2, static_cast<std::uint16_t>(code)});
        EXPECT_EQ(rig.network.Reset(3, 1, nullptr), code);
        EXPECT_EQ(rig.Take(), "[The KVNET_Reset method failed because an unknown error occurred.]");
    }
    rig.hardware.SuspendDevice();
    EXPECT_EQ(rig.network.GetStatus(3, &status), -2);
    EXPECT_EQ(rig.Take(), "[The KVNET_GetStatus method failed because the call to the hardware failed.]");
    EXPECT_EQ(status.Type(), AutomationType::Empty);

    // Shown only while both switches are on.
    EXPECT_TRUE(rig.network.SetProperty("KVNET_ShowErrorMessages", VARIANT::Bool(false)).Ok());
    EXPECT_EQ(rig.network.GetStatus(3, &status), -2);
    EXPECT_EQ(rig.network.SetShowErrorMessages(1), 0);
    EXPECT_EQ(rig.network.GetProperty("KVNET_ShowErrorMessages").value.ToText(), "true");
    rig.host.application.oleDisplay = 0;
    EXPECT_EQ(rig.network.GetStatus(3, &status), -2);
    EXPECT_EQ(rig.Take(), "");
}

TEST_F(KvNetSettingsTest, ScriptsMayGiveAnyAddress) {
    const VARIANT out = VARIANT::Reference(&status);
    rig.Attach(44, {AnswerFrame(44, 0x00, {0x11, 0, 1})});
    for (const int address : {64, 254, -1, 300, -32768, 32767}) {
        EXPECT_FALSE(rig.Call("KVNET_GetStatus", {VARIANT::Long(address), out}));
        EXPECT_EQ(rig.Take(), "[The KVNET_GetStatus" + kBadAddress);
        EXPECT_FALSE(rig.Call("KVNET_Reset", {VARIANT::Long(address), VARIANT::Bool(true), out}));
        EXPECT_EQ(rig.Take(), "[The KVNET_Reset" + kBadAddress);
    }
    EXPECT_TRUE(rig.Call("KVNET_GetStatus", {VARIANT::Short(44), out}));
    EXPECT_EQ(status.Type(), AutomationType::Long);
    EXPECT_TRUE(rig.Call("KVNET_Reset", {VARIANT::Short(255), VARIANT::Bool(false), out}));
    EXPECT_EQ(rig.Take().substr(0, 28), "552C000029AA 55FF01FF0056A5 ");
}

TEST_F(KvNetSettingsTest, ScanFindsDevicesQuietly) {
    rig.Attach(0, {AnswerFrame(0, 0x00, {0x11, 0x10, 0x01})});
    rig.Attach(9, {AnswerFrame(9, 0x00, {0x21, 0x3F, 0x00})});
    rig.Attach(63, {AnswerFrame(63, 0x00, {0x21, 0x00, 0x01})});
    rig.Attach(20, {AnswerFrame(21, 0x00, {0x11, 0, 1})});
    for (const int show : {1, 0, 5}) {
        rig.network.SetShowErrorMessages(show);
        int asked = 0;
        EXPECT_EQ(rig.network.FillDeviceList([&asked](std::uint8_t address) { EXPECT_EQ(asked++, address); }),
                  1);
        EXPECT_EQ(asked, 64);
        EXPECT_EQ(rig.network.GetShowErrorMessages(), show);
        ASSERT_EQ(rig.network.Devices().size(), 3U);
        EXPECT_EQ(rig.network.Devices()[1].GetStatusWord(), 0x3021U);
    }
    EXPECT_EQ(rig.Take().find('['), CString::npos);

    const struct {
        std::uint8_t deviceClass, type, select;
        CString items;
    } table[] = {{0, 0, 9, "0 >9 63 "}, {2, 0, 0, "9 63 "}, {1, 1, 0, ">0 "}, {0, 2, 0, ""}};
    CComboBox combo;
    for (const auto& row : table) {
        EXPECT_EQ(rig.network.FillKvNetCombo(&combo, row.deviceClass, row.type, row.select), 1);
        CString items;
        for (int item = 0; item < combo.GetCount(); ++item) {
            items += (item == combo.GetCurSel() ? ">" : "") + combo.GetLBText(item) + " ";
        }
        EXPECT_EQ(items, row.items);
    }
    // Memory runs out while the frame to address 10 is traced.
    SetKvNetTraceHook([](const CString& text) {
        if (text.starts_with("  Command structure : 55 0A")) {
            throw std::bad_alloc();
        }
    });
    EXPECT_EQ(rig.network.FillDeviceList(), 0);
    SetKvNetTraceHook(nullptr);
    EXPECT_EQ(rig.network.GetShowErrorMessages(), 5);
    EXPECT_EQ(rig.network.Devices().size(), 2U);
    rig.Take();
    rig.network.PutDevicesIntoStandby();
    EXPECT_EQ(rig.Take().substr(0, 15), "55FF01FF0056A5 ");
    EXPECT_EQ(rig.network.GetShowErrorMessages(), 5);
}

TEST_F(KvNetSettingsTest, ControlsAndSaveTable) {
    for (const int control : {2557, 2556, 2558, 2555, -608, -605, -603, -607, -606, -604, -602, -609}) {
        EXPECT_EQ(rig.host.application.GetDocForID(control), &rig.network) << control;
    }
    for (const int saved : {1, 0}) {
        CConfigTreeCtrl table;
        rig.network.SetSaveChannelArrays(saved);
        rig.network.PopulateConfigTreeCtrl(&table, nullptr);
        const HTREEITEM first = table.GetChildItem(table.GetRootItem());
        EXPECT_EQ(first->text, "Channel Arrays");
        EXPECT_EQ(first->ticked, saved == 1);
        table.SetTicked(first, saved == 0);
        const HTREEITEM adapters = table.GetChildItem(table.GetNextSiblingItem(first));
        EXPECT_EQ(adapters->text, "KEDA Adapter");
        EXPECT_EQ(table.GetChildItem(adapters)->text, "Device details");
        table.SetTicked(table.GetChildItem(adapters), saved == 0);
        rig.network.PopulateSaveTable(&table, table.GetRootItem());
        CArchive stored;
        rig.network.GetFormatConverterSettings()->Serialize(stored);
        EXPECT_EQ(stored.Bytes()[0], 1 - saved); // the save flag of the adapters
        rig.network.PopulateSaveTable(nullptr, nullptr);
        EXPECT_EQ(rig.network.GetSaveChannelArrays(), 1 - saved);
    }
}

TEST_F(KvNetSettingsTest, MenuCommandsOpenWindows) {
    const CString noWindow = "[" + LoadText(11307) + "]";
    CString shown;
    rig.host.user.onDialog = [&shown](CDialog& dialog) {
        shown = dialog.GetText();
        dialog.PressEscape();
    };
    for (unsigned id = 33190; id < 33200; ++id) {
        const bool known = id == 33192 || id == 33193 || id == 33194 || id == 33196;
        EXPECT_EQ(rig.network.OnMenuCommand(id), known ? 1 : 0) << id;
    }
    EXPECT_EQ(shown, "Kv-NET Peripheral Setup");
    EXPECT_NE(FindOpenFrame(31), nullptr);
    EXPECT_NE(FindOpenFrame(32), nullptr);
    rig.Take();
    rig.network.SetSetupSheet(nullptr);
    rig.network.SetViewFactory(nullptr);
    rig.network.OnMenuCommand(33192);
    rig.network.OnMenuCommand(33194);
    EXPECT_EQ(rig.Take(), noWindow + noWindow);
    rig.network.SetSetupSheet([this](CKvNetSettings&, const CString& text, CWnd*) { rig.events += text; });
    rig.network.OnMenuCommand(33192);
    EXPECT_EQ(rig.Take(), "Kv-NET Peripheral Setup");
    rig.network.SetViewFactory([] { return std::make_unique<CView>(); });
    EXPECT_EQ(rig.network.OpenChannelArrayControlPanel()->GetText(), "Channel Array Control");
}

} // namespace
} // namespace kalvio::test
