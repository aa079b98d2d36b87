#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gmock/gmock.h>

#include <cctype>

namespace kalvio::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// "RESULT NAME(PARAMETERS)|" of every entry, types by their initials, "=" before a read-only property.
CString Signatures(const DispatchTable& table) {
    const auto initial = [](AutomationType type) {
        switch (type) {
        case AutomationType::String:
            return 'T';
        case AutomationType::Reference:
            return 'R';
        default:
            return static_cast<char>(std::toupper(NameOf(type)[0]));
        }
    };
    CString text;
    for (const DispatchEntry& entry : table) {
        EXPECT_EQ(CString(entry.name).substr(0, 3), "HW_");
        text += entry.kind == DispatchKind::ReadOnlyProperty ? "=" : "";
        text += initial(entry.result) + CString(" ") + (entry.name + 3) + "(";
        for (const AutomationType type : entry.parameters) {
            text += initial(type);
        }
        text += ")|";
    }
    return text;
}

TEST(HardwareAutomation, OffersItsNamesInOrder) {
    const UnitRig rig;
    EXPECT_EQ(Signatures(rig.hardware.GetDispatchMap()),
              "D GetMainTemp()|D GetAnalogueTemp()|S GetMainUnitSerialNum()|S GetAnalogueUnitSerialNum()|"
              "B SetMainUnitSerialNum(L)|B SetAnalogueUnitSerialNum(L)|B SetMainCalibByte(SS)|"
              "B SetMainCalibValue(SD)|B SetMainCalibString(SST)|B SetAnalogueCalibByte(SS)|"
              "B SetAnalogueCalibValue(SD)|B SetAnalogueCalibString(SST)|S GetMainCalibByte(S)|"
              "D GetMainCalibValue(S)|T GetMainCalibString(SS)|S GetAnalogueCalibByte(S)|"
              "D GetAnalogueCalibValue(S)|T GetAnalogueCalibString(SS)|B WriteMainTable()|"
              "B WriteAnalogueTable()|B WriteMainMasterTable()|B WriteAnalogueMasterTable()|"
              "B GetMainCalibDate(RRRRRR)|B GetAnalogueCalibDate(RRRRRR)|S GetMainCalibVersion()|"
              "S GetAnalogueCalibVersion()|B SetMainCalibVersion(S)|B SetAnalogueCalibVersion(S)|"
              "T GetMainCalibOrganisation()|T GetMainCalibOperator()|T GetAnalogueCalibOrganisation()|"
              "T GetAnalogueCalibOperator()|B SetMainCalibOrganisation(T)|B SetMainCalibOperator(T)|"
              "B SetAnalogueCalibOrganisation(T)|B SetAnalogueCalibOperator(T)|S GetMainHWVersion()|"
              "S GetMainHWOptions()|S GetMainSWVersion()|T GetMainSWVersionLetter()|"
              "S GetAnalogueHWVersion()|S GetAnalogueHWOptions()|S GetAnalogueSWVersion()|"
              "T GetAnalogueSWVersionLetter()|S MicroGetMem(SS)|B MicroPutMem(SSS)|B DSPPutMem(SSLL)|"
              "L DSPGetMem(SSL)|=S TDACJitterStart()|=S TDACJitterEnd()|=S TDACHalfUI()|");
}

struct Scripts : testing::Test {
    Scripts() { EXPECT_EQ(rig.BringUp(), 1); }

    // Calls as a script line does: the answer, or the fault's text.
    CString Call(const CString& name, const std::vector<VARIANT>& arguments = {}) {
        const AutomationResult result = rig.hardware.Invoke(name, arguments);
        return result.Ok() ? result.value.ToJson() : result.text;
    }

    UnitRig rig;
};

VARIANT S(int value) {
    return VARIANT::Short(static_cast<std::int16_t>(value));
}

TEST_F(Scripts, NamesOfBothBoardsReachTheirOwnTables) {
    for (const CString board : {"Main", "Analogue"}) {
        const bool main = board == "Main";
        const auto call = [&](const CString& verb, const CString& noun,
                              const std::vector<VARIANT>& arguments = {}) {
            return Call("HW_" + verb + board + noun, arguments);
        };
        EXPECT_EQ(call("Set", "UnitSerialNum", {VARIANT::Long(0x12340000 + (main ? 17 : 18))}), "true");
        EXPECT_EQ(call("Set", "CalibByte", {S(60), S(0x1FF)}), "true");
        EXPECT_EQ(call("Set", "CalibValue", {S(0), VARIANT::Double(main ? 0.5 : 0.25)}), "true");
        EXPECT_EQ(call("Set", "CalibValue", {S(1), VARIANT::Double(1.0)}), "false");
        EXPECT_EQ(call("Set", "CalibString", {S(200), S(8), VARIANT::String(board)}), "true");
        EXPECT_EQ(call("Set", "CalibVersion", {S(main ? 257 : 258)}), "true");
        EXPECT_EQ(call("Set", "CalibOrganisation", {VARIANT::String(board + " lab")}), "true");
        EXPECT_EQ(call("Set", "CalibOperator", {VARIANT::String(board + " person")}), "true");
        EXPECT_EQ(call("Write", "Table"), "true");
        EXPECT_EQ(call("Write", "MasterTable"), "true");
    }
    for (const CString board : {"Main", "Analogue"}) {
        const bool main = board == "Main";
        const auto get = [&](const CString& noun, const std::vector<VARIANT>& arguments = {}) {
            return Call("HW_Get" + board + noun, arguments);
        };
        EXPECT_EQ(get("UnitSerialNum"), main ? "17" : "18");
        EXPECT_EQ(get("CalibByte", {S(60)}), "255");
        EXPECT_EQ(get("CalibValue", {S(0)}), main ? "0.5" : "0.25");
        EXPECT_EQ(get("CalibString", {S(200), S(8)}), "\"" + board + "\"");
        EXPECT_EQ(get("CalibVersion"), main ? "257" : "258");
        EXPECT_EQ(get("CalibOrganisation"), "\"" + board + " lab\"");
        EXPECT_EQ(get("CalibOperator"), "\"" + board + " person\"");
        EXPECT_EQ(get("HWVersion"), main ? "17" : "18");
        EXPECT_EQ(get("HWOptions"), main ? "5" : "19");
        EXPECT_EQ(get("SWVersion"), "2817");
        EXPECT_EQ(get("SWVersionLetter"), "\"g\"");
        EXPECT_EQ(get("Temp"), main ? "30.5" : "33");
        std::array<VARIANT, 6> date;
        std::vector<VARIANT> arguments;
        for (VARIANT& part : date) {
            arguments.push_back(VARIANT::Reference(&part));
        }
        EXPECT_EQ(get("CalibDate", arguments), "true");
        EXPECT_EQ(date[0].ToText() + " " + date[1].ToText() + " " + date[5].ToText(), "2026 3 26");
    }
    rig.host.application.securityLevel = 3;
    EXPECT_EQ(Call("HW_WriteMainMasterTable"), "false");
    EXPECT_EQ(rig.host.user.Texts().size(), 1U);
}

TEST_F(Scripts, MemorySpacesAndDspsCountFromOne) {
    rig.unit.PokeMicro('X', 0x9ABC, 0x81);
    rig.unit.PokeMicro('S', 0x0123, 0x42);
    EXPECT_EQ(Call("HW_MicroGetMem", {S(1), S(0x9ABC - 0x10000)}), "129");
    EXPECT_EQ(Call("HW_MicroGetMem", {S(2), S(0x0123)}), "66");
    EXPECT_EQ(Call("HW_DSPPutMem", {S(2), S(1), VARIANT::Long(100), VARIANT::Long(-2)}), "true");
    EXPECT_EQ(rig.unit.PeekDsp(1, 'X', 100), 0xFFFFFEU);
    EXPECT_EQ(Call("HW_DSPGetMem", {S(2), S(1), VARIANT::Long(100)}), "16777214");
    EXPECT_EQ(Call("HW_DSPPutMem", {S(1), S(2), VARIANT::Long(7), VARIANT::Long(5)}), "true");
    EXPECT_EQ(rig.unit.PeekDsp(0, 'Y', 7), 5U);

    rig.unit.ClearLogs();
    EXPECT_EQ(Call("HW_MicroPutMem", {S(3), S('w'), S(0x302)}), "true"); // checked: armed first
    EXPECT_EQ(Call("HW_MicroPutMem", {S(1), S(16), S(3)}), "true");
    std::vector<std::uint32_t> commands;
    for (const auto& exchange : rig.unit.Exchanges()) {
        commands.push_back(exchange.command);
    }
    EXPECT_THAT(commands, ElementsAre(22, 7, 7));
    EXPECT_EQ(rig.unit.PeekRegister('w'), 0x02);

    rig.unit.ClearLogs();
    for (const int space : {0, 4, -1}) {
        EXPECT_EQ(Call("HW_MicroGetMem", {S(space), S(1)}), "0");
        EXPECT_EQ(Call("HW_MicroPutMem", {S(space), S(1), S(1)}), "false");
    }
    EXPECT_EQ(Call("HW_DSPGetMem", {S(3), S(1), VARIANT::Long(1)}), "0");
    EXPECT_EQ(Call("HW_DSPGetMem", {S(1), S(3), VARIANT::Long(1)}), "0");
    EXPECT_EQ(Call("HW_DSPPutMem", {S(0), S(1), VARIANT::Long(1), VARIANT::Long(1)}), "false");
    EXPECT_THAT(rig.unit.Exchanges(), IsEmpty());
    rig.unit.AddFault({simulator::FaultKind::Refuse, 1, 0, 0x0123});
    EXPECT_EQ(Call("HW_MicroGetMem", {S(1), S(1)}), "0");
    EXPECT_EQ(Call("HW_DSPGetMem", {S(1), S(1), VARIANT::Long(1)}), "0");
    EXPECT_EQ(Call("HW_MicroPutMem", {S(1), S(1), S(1)}), "false");
    EXPECT_EQ(Call("HW_DSPPutMem", {S(1), S(1), VARIANT::Long(1), VARIANT::Long(1)}), "false");
}

TEST_F(Scripts, TheTdacValuesCanOnlyBeRead) {
    EXPECT_EQ(rig.hardware.GetProperty("HW_TDACHalfUI").value.ToJson(), "260");
    EXPECT_EQ(rig.hardware.GetProperty("HW_TDACJitterStart").value.ToJson(), "0");
    EXPECT_EQ(rig.hardware.SetProperty("HW_TDACHalfUI", S(1)).fault, AutomationFault::ReadOnly);
}

TEST_F(Scripts, TheBrowserShowsMostEntriesToLevelFourOnly) {
    const auto browse = [this](int level) {
        rig.host.application.securityLevel = level;
        COLETreeCtrl tree;
        rig.hardware.PopulateOLETreeCtrl(&tree, tree.GetRootItem());
        std::vector<CString> lines;
        for (HTREEITEM item = tree.GetChildItem(tree.GetRootItem()); item != nullptr;
             item = tree.GetNextSiblingItem(item)) {
            EXPECT_FALSE(item->text.empty()) << item->id;
            lines.push_back(Format("%d %d%d ", item->id, item->flags[0], item->flags[1]) + item->text);
        }
        return lines;
    };
    const auto open = browse(3);
    EXPECT_THAT(open,
                ElementsAre("10162 13 Get main board temperature", "10163 13 Get analogue board temperature",
                            "10136 13 Get the unit serial number from the main board table"));
    const auto all = browse(4);
    ASSERT_EQ(all.size(), 51U);
    EXPECT_EQ(std::vector(all.begin(), all.begin() + 3), open);
    CString items;
    CString properties;
    for (auto line = all.begin() + 3; line != all.end(); ++line) {
        items += line->substr(2, 3) + " ";
        if (line->substr(6, 2) == "12") {
            properties += line->substr(0, 5) + " ";
        }
    }
    EXPECT_EQ(items,
              "131 132 150 151 152 153 140 141 130 133 137 154 155 156 157 142 143 170 171 172 158 159 161 "
              "160 134 138 144 145 135 139 146 147 107 108 109 110 111 112 101 102 103 104 105 106 120 122 "
              "121 123 ");
    EXPECT_EQ(properties, "10170 10171 10172 ");
    EXPECT_EQ(all[20], "10170 12 1/2 UI interval in TDAC steps");
    EXPECT_EQ(all[41], "10101 13 Get single byte from main board calibration table");
    EXPECT_EQ(all[48], "10122 13 Write MASTER calibration table to main board");
}

} // namespace
} // namespace kalvio::test
