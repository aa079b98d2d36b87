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
        {"loader@9", other, "9", false, kExitFile, "does not match the device", false},
        {"loader@9", good, "8", false, kExitRunFailed,
         "nothing to download into at address 8: the hardware timed out", false},
        {"switcher@9", good, "9", false, kExitRunFailed, "the I/O Switcher at address 9 takes no firmware",
         false},
        {"loader@9:fault=goes-to-standby", good, "9", false, kExitRunFailed,
         "Failed to write sector 1 after 3 tries", true},
        {"loader@9", good, "9", true, kExitInterrupted, "Downloading sector 1...", true},
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
    EXPECT_TRUE(Said(m_err, "   30 %\nDownloading sector 2...\n   40 %\n")) << m_err.str();
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
