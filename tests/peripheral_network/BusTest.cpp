#include "peripheral_network/NetworkRig.h"
#include "peripheral_network/bus/KvNetExchange.h"
#include "peripheral_network/bus/KvNetTrace.h"
#include "platform/Archive.h"
#include "switching/SwitchingRig.h"

namespace kalvio::test {
namespace {

TEST(PeripheralBusRules, CodesHaveTheirReasons) {
    std::map<int, CString> reasons;
    for (const auto& row : TableOf("reasons.txt")) {
        reasons[row[0] == "-" ? -1000 : std::stoi(row[0])] = row[2];
    }
    for (int code = -40; code <= 40; ++code) {
        const auto known = reasons.find(code);
        EXPECT_EQ(LoadText(GetErrorMessageID(static_cast<short>(code))),
                  known == reasons.end() ? "an unknown error occurred" : known->second);
    }
}

TEST(PeripheralBusRules, Addresses) {
    for (int address = -70; address <= 400; ++address) {
        const bool device = address >= 0 && address <= 63;
        EXPECT_EQ(IsValidAddress(static_cast<short>(address), 0) != 0, device) << address;
        EXPECT_EQ(IsValidAddress(static_cast<short>(address), 1) != 0, device || address == 255) << address;
        const auto byte = static_cast<std::uint8_t>(address);
        EXPECT_EQ(CKvNetSettings::AddressToString(byte), byte < 64 ? std::to_string(byte) : "");
    }
    const std::map<CString, int> texts{{"  12 ", 12}, {"", 254},           {" \t ", 254}, {"64", 254},
                                       {"300", 254},  {"-1", 254},         {"abc", 0},    {"63", 63},
                                       {"7x", 7},     {"99999999999", 254}};
    for (const auto& [text, address] : texts) {
        CString trimmed = text;
        EXPECT_EQ(CKvNetSettings::StringToAddress(trimmed), address) << text;
        EXPECT_EQ(trimmed, Trim(text));
    }
}

TEST(PeripheralBusRules, StatusRecord) {
    const struct {
        Bytes data;
        std::uint32_t word;
        const char* shown; // class, type, hardware and firmware letter
    } table[] = {{{0x11, 0x3F, 0x01}, 0x013F11, "Switcher, I/O Switcher, PD, on"},
                 {{0x21, 0x3F, 0x00}, 0x003021, "Format converter, KEDA Adapter, AD, standby"},
                 {{0x22, 0x0F, 0xFE}, 0xFE0F22, "Format converter, Unknown, PA, standby"},
                 {{0x31, 0x21, 0xFF}, 0xFF2131, "Unknown, Unknown, BC, on"}};
    for (const auto& row : table) {
        const std::uint32_t word = PackStatusWord(std::span<const std::uint8_t, 3>(row.data.data(), 3));
        EXPECT_EQ(word, row.word);
        const CKvNetStatus status(7, VARIANT::Long(static_cast<std::int32_t>(word)));
        EXPECT_EQ(status.ClassName() + ", " + status.TypeName() +
                      Format(", %c%c, %s", 'A' + status.GetHardwareVersion(),
                             'A' + status.GetFirmwareVersion(), status.IsOn() ? "on" : "standby"),
                  row.shown);
    }
    const Bytes stored = Hex("0978563412");
    CArchive loading{stored};
    CArchive archive;
    CKvNetStatus status;
    status.Serialize(archive);
    status.Serialize(loading);
    status.SetOn(true);
    status.Serialize(archive);
    EXPECT_EQ(ToHex(archive.Bytes()), "FE000000000978563512");
}

TEST(PeripheralBusRules, ExchangesAreTracedAndPadded) {
    NetworkRig rig;
    CString trace;
    SetKvNetTraceHook([&trace](const CString& text) { trace += text; });
    rig.Attach(5, {AnswerFrame(5, 0x00, {0x21, 0x3F, 0x01})});
    VARIANT status;
    EXPECT_EQ(rig.network.GetStatus(5, &status), 0);
    EXPECT_EQ(rig.network.GetStatus(6, &status), -3);
    EXPECT_EQ(trace,
              "CKvNetSettings::GetStatus\n  Command structure : 55 05 00 00 50 AA \n"
              "  Response          : 55 05 03 00 21 3F 01 EC AA \n"
              "CKvNetSettings::GetStatus\n  Command structure : 55 06 00 00 4F AA \n"
              "The KVNET_GetStatus method failed because the hardware timed out waiting for a response "
              "from the device.");
    SetKvNetTraceHook(nullptr);
    rig.Take();

    rig.Attach(9, {AnswerFrame(9, 0xCF, {}), AnswerFrame(9, 0xB1, {})});
    const Bytes data(32, 0x77);
    EXPECT_EQ(rig.network.WriteSector(9, 0x12, 0x34, 2, data.data()), 0);
    EXPECT_EQ(rig.Take(), "550922B112347777" + std::string(60, '0') + "45AA ");
    EXPECT_EQ(rig.network.WriteSector(9, 0x12, 0x34, 255, data.data()), -10);
    EXPECT_EQ(rig.Take(), "550922B11234" + ToHex(data) + "53AA ");
    EXPECT_EQ(ToHex(std::span(rig.unit.Exchanges().back().outData).first(4)), "280607D0")
        << "with its time-out";
    EXPECT_EQ(rig.network.WriteSector(64, 1, 0, 32, data.data()), -1);
    EXPECT_EQ(rig.Take(),
              "[The KVNET_WriteSector method failed because the 'sAddress' parameter passed is invalid.]");
    EXPECT_EQ(KvNetExchange(9).Send(kCommandGetStatus, std::span(data).first(1)), -1);
    EXPECT_EQ(rig.Take(), "");
}

} // namespace
} // namespace kalvio::test
