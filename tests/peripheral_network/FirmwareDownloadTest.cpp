#include "peripheral_network/NetworkRig.h"
#include "support/Scenarios.h"

#include <set>

namespace kalvio::test {
namespace {

const CString kEnd =
    "Reached end of Kv-NET firmware file while data or header still expected. This firmware download "
    "cannot continue.";
const CString kCannotGoOn = " This firmware download cannot continue.";

// A file as its row has it: name, sectors, changed bytes, size.
Bytes FileOf(const std::vector<std::string>& row) {
    std::vector<std::pair<int, int>> sectors;
    for (const std::string& word : SplitWords(row[1])) {
        sectors.emplace_back(std::stoi(word), std::stoi(word.substr(word.find(':') + 1)));
    }
    Bytes file = Firmware(sectors);
    for (const std::string& word : SplitWords(row[2])) {
        file.at(std::stoul(word)) = static_cast<std::uint8_t>(std::stoi(word.substr(word.find('=') + 1)));
    }
    file.resize(row[3].empty() ? file.size() : std::stoul(row[3]));
    return file;
}

TEST(FirmwareDownload, FilesAreSentUntilTheirFirstFault) {
    const NetworkRig rig;
    for (const ScenarioLine& line : ReadLines(__FILE__, "tables/firmware.txt")) {
        SCOPED_TRACE(line.where);
        const std::vector<std::string>& row = line.words;
        int records = 0;
        ProgressLog progress;
        const auto write = [&records](const auto&) { return ++records != 0; };
        const DownloadResult result = SendFirmware(rig.WriteFile("f", FileOf(row)), 0x21, write, progress);
        const bool sent = row[5].empty();
        EXPECT_EQ(result.outcome, sent ? DownloadOutcome::Sent : DownloadOutcome::FileRefused);
        EXPECT_EQ(result.text, row[5]);
        EXPECT_EQ(records, std::stoi(row[4]));
        EXPECT_EQ(progress.steps, records / 4);
        EXPECT_EQ(progress.pumps, progress.steps);
        const bool refusedAtOnce = row[5] == kEnd || row[5].starts_with("The header");
        EXPECT_EQ(progress.log.empty(), records == 0 && refusedAtOnce)
            << "progress comes up once the header was accepted";
    }
    ProgressLog progress;
    for (const CString& path : {rig.directory.File("missing"), rig.directory.File(""), CString()}) {
        const DownloadResult result = SendFirmware(path, 0x21, nullptr, progress);
        EXPECT_EQ(result.outcome, DownloadOutcome::NotOpened);
        EXPECT_EQ(result.text, "Cannot open this Kv-NET firmware file.");
    }
    EXPECT_EQ(progress.log, "");
    // Such files are shorter than they say; another shrinks while it is sent.
    if (std::filesystem::exists("/sys/class/net/lo/mtu")) {
        EXPECT_EQ(SendFirmware("/sys/class/net/lo/mtu", 0x21, nullptr, progress).text, kEnd);
    }
    const CString shrinking = rig.WriteFile("f", Firmware({{1, 9}}));
    int sent = 0;
    const auto shrink = [&](const auto&) {
        std::filesystem::resize_file(shrinking, 10);
        return ++sent != 4; // so that its sector is read again
    };
    EXPECT_EQ(SendFirmware(shrinking, 0x21, shrink, progress).outcome, DownloadOutcome::Sent);
    EXPECT_EQ(sent, 13);

    FirmwareFile file(Firmware({{1, 512}, {3, 7}, {3, 1}}));
    const FirmwareContent content = InspectFirmware(file);
    ASSERT_EQ(content.sectors.size(), 2U);
    EXPECT_EQ(content.sectors[1].number, 3);
    EXPECT_EQ(content.sectors[1].blocks, 7);
    EXPECT_EQ(content.fault.Text(), "Invalid sector (3) found in Kv-NET firmware file." + kCannotGoOn);
    EXPECT_EQ(content.fault.offset, 128U + 34 * 519);
}

TEST(FirmwareDownload, AFailedRecordSendsItsSectorAgain) {
    using enum DownloadOutcome;
    const NetworkRig rig;
    const CString path = rig.WriteFile("f", Firmware({{2, 512}, {3, 4}}));
    const struct {
        std::set<int> fails; // writes, counted from 1
        int cancelAt;
        int writes;
        DownloadOutcome outcome;
        const char* shown; // sectors that begin, with ! those that begin again
        CString failed;
    } table[] = {
        {{}, -1, 516, Sent, "2 3 ", ""},
        {{515}, -1, 519, Sent, "2 3 3!", ""},
        {{1, 2}, -1, 518, Sent, "2 2!2!3 ", ""},
        {{3, 517, 519}, -1, 519, WriteFailed, "2 2!3 3!", "3"},
        {{1, 2, 3}, 2, 3, WriteFailed, "2 2!2!", "2"},
        {{}, 0, 1, Cancelled, "2 ", ""},
        {{2}, 1, 2, Cancelled, "2 2!", ""},
        {{}, 515, 516, Cancelled, "2 3 ", ""},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.shown);
        CString log = "Progress 0-129/1";
        for (const char* at = row.shown; *at != '\0'; at += 2) {
            const CString sector(1, *at);
            log += "\nPlease wait while downloading firmware...\n\n";
            log += at[1] == '!' ? "DOWNLOAD OF SECTOR " + sector + " FAILED, trying again... @" +
                                      std::to_string((*at - '1') * 128)
                                : "Downloading sector " + sector + "...";
        }
        int writes = 0;
        ProgressLog progress;
        progress.cancelAt = row.cancelAt;
        const auto write = [&](const auto&) { return !row.fails.contains(++writes); };
        const DownloadResult result = SendFirmware(path, 0x21, write, progress);
        EXPECT_EQ(result.outcome, row.outcome);
        EXPECT_EQ(result.text, row.failed.empty() ? ""
                                                  : "Failed to write sector " + row.failed +
                                                        " after 3 tries." + kCannotGoOn);
        EXPECT_EQ(writes, row.writes);
        EXPECT_EQ(progress.log, log);
    }
}

// The whole way: chosen by the user, framed, answered, shown.
TEST(FirmwareDownload, TheDocumentSendsFramesAndShowsWhatWentWrong) {
    NetworkRig rig;
    const CKvNetStatus device(9, 0x10021U);
    const auto download = [&](const CString& file) {
        rig.host.user.QueueFile(file);
        const int sent = rig.network.DownloadFirmware(device);
        return std::to_string(sent) + " " + rig.Take();
    };
    const CString path = rig.WriteFile("f", Firmware({{1, 2}}));
    const CString first = "550922B11000" + ToHex(Bytes(32, 0x01)) + "49AA ";
    const CString second = "550922B11001" + ToHex(Bytes(32, 0x06)) + "A8AA ";
    EXPECT_EQ(download(""), "0 ") << "no file was chosen";
    rig.Attach(9, {AnswerFrame(9, 0xCF, {}), AnswerFrame(9, 0xCE, {})});
    rig.host.user.onDialog = [&rig](CDialog& dialog) {
        rig.events += dialog.GetText() + " ";
        EXPECT_FALSE(rig.host.mainWindow.IsWindowEnabled());
    };
    EXPECT_EQ(download(path), "0 Downloading Kv-NET Firmware... " + first + second + first + first +
                                  "[Failed to write sector 1 after 3 tries." + kCannotGoOn + "]");
    EXPECT_TRUE(rig.host.mainWindow.IsWindowEnabled());
    rig.Attach(9, {AnswerFrame(9, 0xCF, {})});
    rig.host.user.onDialog = [](CDialog& dialog) { EXPECT_TRUE(dialog.PressButton(IDCANCEL)); };
    EXPECT_EQ(download(path), "0 " + first) << "cancelled without a message";
    rig.host.user.onDialog = nullptr;
    EXPECT_EQ(download(path), "1 " + first + second);
    EXPECT_EQ(CKvNetSettings::CanDownloadFirmware({9, 0x11}), 0);
    EXPECT_EQ(CKvNetSettings::CanDownloadFirmware({9, 0x12}), 1);
}

} // namespace
} // namespace kalvio::test
