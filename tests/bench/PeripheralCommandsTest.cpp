// network, arrays, firmware and download, the examples of switching, and what a trace shows of the bus.

#include "bench/CommandsRig.h"

#include "bench/ReferenceHostNames.h"
#include "bench/commands/ExitCode.h"
#include "bench/trace/PeripheralFrames.h"
#include "reference_host/script/ChannelPlace.h"

#include <nlohmann/json.hpp>

namespace kalvio::bench {
namespace {

using Json = nlohmann::json;

// A firmware file for loaders, cut behind so many bytes.
std::string Firmware(int sectors, std::size_t length = std::string::npos, char classType = 0x22) {
    std::string content("Kv-NET DOWNLOAD");
    content.resize(128, '\0');
    content[18] = classType;
    for (int record = 0; record < sectors * 512; ++record) {
        content += static_cast<char>((record / 512 + 1) << 4 | record % 512 >> 8);
        content += static_cast<char>(record);
        content.append(32, static_cast<char>(record));
    }
    return content.substr(0, length);
}

class PeripheralCommandsTest : public CommandsTest {
protected:
    std::string Write(const char* name, const std::string& content) const {
        std::ofstream(Path(name), std::ios::binary) << content;
        return Path(name);
    }
};

TEST_F(PeripheralCommandsTest, NetworkListsWhatAnswers) {
    const std::string peripherals = "switcher@3,switcher@4:hw=C:fw=P,loader@9,keda@63:fault=goes-to-standby,"
                                    "switcher@20:fault=wrong-checksum,switcher@21:fault=twin";
    ASSERT_EQ(Run({"network", "--peripherals", peripherals}), kExitOk);
    EXPECT_EQ(m_out.str(), "address  class             type          hardware  firmware  state\n"
                           "      3  Switcher          I/O Switcher  B         C         on\n"
                           "      4  Switcher          I/O Switcher  C         P         on\n"
                           "      9  Format converter  Unknown       A         A         on\n"
                           "     63  Format converter  KEDA Adapter  A         D         standby\n");
    EXPECT_EQ(m_err.str(), "scanning addresses 0 to 63 ................ 4 found\n");
    ASSERT_EQ(Run({"network", "--json", "--peripherals", "loader@9:class=11:hw=B"}), kExitOk);
    EXPECT_EQ(Json::parse(m_out.str())["devices"][0],
              Json::parse(R"({"address": 9, "class": "Switcher", "type": "I/O Switcher", "class-type": 17,
                              "hardware": "B", "firmware": "A", "on": true, "half-firmware": false})"));
    ASSERT_EQ(Run({"network", "--peripherals", "none"}), kExitOk);
    EXPECT_EQ(m_out.str(), "no device answers\n");
    EXPECT_EQ(Run({"network", "--unit", "none"}), kExitNoUnit);
    EXPECT_TRUE(Said(m_err, "there is no unit, and no network without one"));
    EXPECT_EQ(Run({"netwrok"}), kExitUsage);
    EXPECT_TRUE(Said(m_err, "; did you mean network?")) << m_err.str();
}

TEST_F(PeripheralCommandsTest, FirmwareIsCheckedWithoutAUnit) {
    EXPECT_EQ(Run({"firmware", Write("whole", Firmware(2))}), kExitOk);
    EXPECT_EQ(m_out.str(), Path("whole") + ": 34944 bytes, for class type 0x22 (Format converter, Unknown)\n"
                                           "  sector  1: 512 blocks, 16384 bytes\n"
                                           "  sector  2: 512 blocks, 16384 bytes\nno fault\n");
    EXPECT_EQ(Run({"firmware", "--json", Write("short", Firmware(1, 128 + 3 * 34 + 5))}), kExitFile);
    const Json json = Json::parse(m_out.str());
    EXPECT_EQ(json["fault"]["offset"], 230);
    EXPECT_EQ(json["sectors"], Json::parse(R"([{"sector": 1, "blocks": 3, "bytes": 96}])"));
    EXPECT_TRUE(Said(m_err, "at offset 230: Reached end of Kv-NET firmware file"));
    EXPECT_EQ(Run({"firmware", Write("text", std::string(200, 'x'))}), kExitFile);
    EXPECT_TRUE(Said(m_err, "The header of the Kv-NET firmware file is either invalid"));
    EXPECT_EQ(Run({"firmware", Path("nowhere")}), kExitFile);
    EXPECT_EQ(m_err.str(), "kalvio-bench: " + Path("nowhere") + ": Cannot open this Kv-NET firmware file.\n");
}

TEST_F(PeripheralCommandsTest, DownloadsEndForTheirReasons) {
    const std::string good = Write("good", Firmware(3));
    const std::string half = Write("half", Firmware(2, 128 + 700 * 34 + 1));
    const std::string other = Write("other", Firmware(1, std::string::npos, 0x21));
    const struct {
        const char* peripherals;
        std::string file;
        const char* address;
        bool interrupted;
        int code;
        const char* said;
        bool sends; // firmware
    } rows[] = {
        {"loader@9", good, "9", false, kExitOk, "  100 %", true},
        {"loader@9", half, "9", false, kExitFile, "Reached end of", false},
        {"loader@9", Path("nowhere"), "9", false, kExitFile, "Cannot open this", false},
        {"loader@9", other, "9", false, kExitFile, "does not match the device", false},
        {"loader@9", good, "8", false, kExitRunFailed,
         "nothing to download into at address 8: the hardware timed out", false},
        {"switcher@9", good, "9", false, kExitRunFailed, "the I/O Switcher at address 9 takes no firmware",
         false},
        {"loader@9:fault=goes-to-standby", good, "9", false, kExitRunFailed,
         "Failed to write sector 1 after 3 tries", true},
        {"loader@9", good, "9", true, kExitInterrupted, "Downloading sector 1...", true},
        {"loader@9", good, "64", false, kExitUsage, "--address", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.said);
        std::filesystem::remove(Path("trace"));
        SetInterrupted(row.interrupted);
        EXPECT_EQ(Run({"download", row.file, "--address", row.address, "--peripherals", row.peripherals,
                       "--trace", Path("trace")}),
                  row.code);
        EXPECT_TRUE(Said(m_err, row.said)) << m_err.str();
        EXPECT_EQ(ReadAll(Path("trace")).find("WriteSector(") != std::string::npos, row.sends);
    }
    SetInterrupted(false);
    ASSERT_EQ(Run({"download", "--json", good, "--address", "9", "--peripherals", "loader@9"}), kExitOk);
    EXPECT_EQ(Json::parse(m_out.str())["outcome"], "sent");
    EXPECT_EQ(Run({"download", good}), kExitUsage);
}

TEST_F(PeripheralCommandsTest, ArraysShowTheirCrosspoints) {
    const std::string script = WriteScript(
        "SWITCHER_DefineStereoArray(\"in, \\\"left\\\"\")\nIOSWITCHER_AddToStereoArray 1, 1, \"IN, "
        "\\\"left\\\"\"\nCA_ExclusiveChannel 4\nCA_Balance true\nIOSWITCHER_BusLoad 1, 1, true\n"
        "KVNET_DefineChannelArray \"\\x1Bempty\", false, true\nprint \"aside\"\n");
    ASSERT_EQ(Run({"arrays", script}), kExitOk) << m_err.str();
    EXPECT_EQ(m_out.str(), "in, \"left\": stereo, 8 channels, I/O Switcher\n"
                           "  channel    1   2   3   4   5   6   7   8\n"
                           "  state      .   .  on  on   .   .   .   .\n"
                           "  device     1   1   1   1   1   1   1   1\n"
                           "  bus        A   B   A   B   A   B   A   B\n"
                           "  group      Y   Y   Y   Y   Y   Y   Y   Y\n"
                           "  relay      0   1   2   3   4   5   6   7\n"
                           "  flags      b  bl   b  bl   b  bl   b  bl\n"
                           "\n?empty: mono, exclusive only, no channels\n");
    EXPECT_EQ(m_err.str(), "aside\n");
    ASSERT_EQ(Run({"arrays", script, "--csv"}), kExitOk);
    EXPECT_TRUE(m_out.str().starts_with("array,channel,state,device,bus,group,relay,balanced,loaded\n"
                                        "\"in, \"\"left\"\"\",1,off,1,A,Y,0,1,0\n"));
    ASSERT_EQ(Run({"arrays", script, "--json"}), kExitOk);
    const Json arrays = Json::parse(m_out.str())["arrays"];
    EXPECT_EQ(arrays[0]["channels"][3],
              Json::parse(R"({"channel": 4, "on": true, "device": 1, "bus": "B", "group": "Y", "relay": 3,
                              "balanced": true, "loaded": true})"));
    EXPECT_TRUE(arrays[1]["type"].is_null());
    ASSERT_EQ(Run({"arrays"}), kExitOk);
    EXPECT_EQ(m_out.str(), "no channel arrays are defined\n");
    EXPECT_EQ(Run({"arrays", WriteScript("nonsense")}), kExitScript);
    EXPECT_EQ(m_out.str(), "");
    EXPECT_EQ(Run({"arrays", Path("nowhere.kvs")}), kExitScript);
}

TEST_F(PeripheralCommandsTest, ExamplesEndAsTheySay) {
    const struct {
        const char* name;
        const char* shown;
    } rows[] = {{"switch-array", "channel 16: 32768\n"},
                {"sweep-array", "     16  1 A Y 7                   1.0000 V  settled\n"},
                {"stereo-array", "      7  2 A X 6, 2 B X 7          1.0000 V  settled\n"}};
    for (const auto& row : rows) {
        EXPECT_EQ(Run({"run", (kExamples / (std::string(row.name) + ".kvs")).string()}), kExitOk)
            << m_err.str();
        EXPECT_TRUE(Said(m_out, row.shown)) << m_out.str();
    }
    const std::string sweep = (kExamples / "sweep-array.kvs").string();
    EXPECT_EQ(Run({"run", "--dut", "silent", sweep}), kExitRunFailed);
    EXPECT_TRUE(Said(m_err, ":7:1: rms did not settle at 16 of 16 channels")) << m_err.str();
    EXPECT_EQ(Run({"console", "--json", "--strict"}, "sweep \"none\", read rms\nsweep \"none\", read moon\n"),
              kExitScript);
    EXPECT_TRUE(Said(m_out, R"("error":"there is no channel array \"none\""})")) << m_out.str();
    EXPECT_EQ(Run({"console", "--json"}, "SWITCHER_DefineArray(\"a\")\nIOSWITCHER_AddToArray 2, 0, 0, \"a\"\n"
                                         "sweep \"A\", read rms\n"),
              kExitOk);
    EXPECT_TRUE(Said(m_out, R"("rows":[{"channel":1,"place":"2 A X 0","value":1)")) << m_out.str();
}

// What the bus carried, whoever is at fault.
TEST_F(PeripheralCommandsTest, TheTraceTellsFramesAndAnswers) {
    const std::string script = WriteScript("IOSWITCHER_BusLoad 3, 1, true\nKVNET_Reset 255, false, s\n"
                                           "KVNET_GetStatus 4, s\nIOSWITCHER_GetBusDC 5, 0, p, n\n");
    ASSERT_EQ(Run({"run", script, "--trace", Path("t"), "--peripherals",
                   "switcher@3,switcher@4:fault=wrong-length"}),
              kExitOk);
    const std::string trace = ReadAll(Path("t"));
    for (const char* line :
         {"           CIOSwitcherSettings::BusLoad\n",
          ": GetBusB(address 3) -> ok, X 00, Y 00, flags 00 (0 ms)\n",
          ": SetBusB(address 3, X 00, Y 00, flags 02) -> ok, X 00, Y 00, flags 02 (0 ms)\n",
          ": Reset(all addresses, standby) -> ok, no answer wanted (0 ms)\n",
          ": GetStatus(address 4) -> -5, the response from the device was not the correct length (0 ms)\n",
          ": GetDC(address 5) -> -3, the hardware timed out waiting for a response from the device (20 ms)\n",
          "           The KVNET_GetStatus method failed because the response from the device was not the "
          "correct "
          "length.\n"}) {
        EXPECT_NE(trace.find(line), std::string::npos) << line;
    }
    EXPECT_EQ(trace.find("Command structure"), std::string::npos) << "frames come with --trace-bytes";
    ASSERT_EQ(Run({"run", script, "--trace", Path("t"), "--trace-bytes"}), kExitOk);
    EXPECT_NE(ReadAll(Path("t")).find("           Command structure : 55 03 00 89 C9 AA\n"),
              std::string::npos);
}

TEST(ChannelPlace, InWordsOrNumbers) {
    EXPECT_EQ(PlaceText({3, 0x11, 1, 0, 7, 0, 0}) + "|" + PlaceText({8, 0x21, 0, 1, 15, 0, 0}) + "|" +
                  PlaceText({63, 0x21, 2, 0, 0, 0, 0}) + "|" + PlaceText({0, 0x11, 0, 255, 9, 0, 0}),
              "3 B X 7|8 A ana 15|63 2 gen 0|0 A 255 9");
}

TEST(PeripheralFrames, EveryKindOfBytes) {
    const auto bytes = [](std::initializer_list<int> frame) {
        std::vector<std::uint8_t> block(4);
        for (const int byte : frame) {
            block.push_back(static_cast<std::uint8_t>(byte));
        }
        return block;
    };
    const struct {
        std::vector<std::uint8_t> sent, answer;
        const char* call;
        const char* result;
    } rows[] = {
        {bytes({0x55, 3, 1, 0x84, 11, 0, 0xAA}), bytes({0x55, 3, 3, 0x84, 0, 8, 3, 0, 0xAA}),
         "RelayOnA(address 3, relay Y3)", "ok, X 00, Y 08, flags 03"},
        {bytes({0x55, 3, 1, 0x87, 16, 0, 0xAA}), bytes({0x55, 3, 1, 0x87, 9, 0, 0xAA}),
         "RelayOffB(address 3, relay 16)", "ok, [09]"},
        {bytes({0x55, 3, 0, 0x92, 0, 0xAA}), bytes({0x55, 3, 4, 0x92, 8, 0, 0xFA, 6, 0, 0xAA}),
         "GetDC(address 3)", "ok, A +8 +0, B -6 +6"},
        {bytes({0x55, 9, 2, 0xB1, 0x21, 0x05, 0, 0xAA}), bytes({0x55, 9, 0, 0xCE, 0, 0xAA}),
         "WriteSector(address 9, sector 2, block 261, [])", "ok, not stored, 0xCE"},
        {bytes({0x55, 9, 1, 0x77, 5, 0, 0xAA}), bytes({0x55, 9, 1, 0x77, 6, 0, 0xAA}),
         "command 0x77(address 9, [05])", "ok, [06]"},
        {bytes({0x55, 9, 200}), {}, "frame [00 00 00 00 55 09 C8]", "short answer"},
        {bytes({0x55, 3, 0, 0, 0, 0xAA}),
         {0xFF, 0xEF, 0, 0},
         "GetStatus(address 3)",
         "-17, an unknown error occurred"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(DescribeBusCall(row.sent), row.call);
        EXPECT_EQ(DescribeBusAnswer(row.sent, row.answer), row.result) << row.call;
    }
}

} // namespace
} // namespace kalvio::bench
