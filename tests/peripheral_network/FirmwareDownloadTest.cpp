#include "peripheral_network/NetworkRig.h"

#include <set>

namespace kalvio::test {
namespace {

const CString kEnd =
    "Reached end of Kv-NET firmware file while data or header still expected. This firmware download "
    "cannot continue.";
const CString kHeader =
    "The header of the Kv-NET firmware file is either invalid, or does not match the device to "
    "download into.";
const CString kCannotGoOn = " This firmware download cannot continue.";

CString BadSector(int sector) {
    return Format("Invalid sector (%d) found in Kv-NET firmware file.", sector) + kCannotGoOn;
}
CString BadBlock(int block) {
    return Format("Invalid block counter (%d) found in Kv-NET firmware file.", block) + kCannotGoOn;
}
CString BadSize(int sector, int bytes) {
    return Format("Sector %d was an invalid size of %d bytes.", sector, bytes) + kCannotGoOn;
}

Bytes With(Bytes file, std::size_t at, int value) {
    file[at] = static_cast<std::uint8_t>(value);
    return file;
}
Bytes Sized(Bytes file, std::size_t size) {
    file.resize(size);
    return file;
}

TEST(FirmwareDownload, FilesAreSentUntilTheirFirstFault) {
    constexpr std::size_t kSecondRecord = 128 + 34;
    const Bytes none = Firmware({});
    const Bytes five = Firmware({{1, 5}});
    const struct {
        const char* name;
        Bytes file;
        CString text; // empty: sent
        int records;
    } table[] = {
        {"nothing", {}, kEnd, 0},
        {"127 bytes", Sized(none, 127), kEnd, 0},
        {"header alone", none, {}, 0},
        {"wrong text", With(none, 14, 'd'), kHeader, 0},
        {"text goes on", With(none, 15, '!'), kHeader, 0},
        {"another class", With(none, 18, 0x22), kHeader, 0},
        {"other header bytes", With(With(none, 17, 9), 19, 9), {}, 0},
        {"sector 0", Firmware({{0, 1}}), BadSector(0), 0},
        {"sector 4", Firmware({{1, 512}, {4, 1}}), BadSector(4), 512},
        {"sector 15", Firmware({{15, 2}}), {}, 2},
        {"late start", With(five, 129, 5), BadBlock(5), 0},
        {"gap", With(five, kSecondRecord + 1, 2), BadBlock(2), 1},
        {"block again", With(five, kSecondRecord + 35, 1), BadBlock(1), 2},
        {"high bits of the block", With(five, kSecondRecord, 0x11), BadBlock(257), 1},
        {"descending", Firmware({{2, 512}, {1, 1}}), BadSector(1), 512},
        {"order before size", Firmware({{2, 3}, {1, 1}}), BadSector(1), 3},
        {"sector again", Firmware({{1, 512}, {1, 1}}), BadSector(1), 512},
        {"short sector", Firmware({{1, 512}, {2, 301}, {3, 1}}), BadSize(2, 9632), 813},
        {"sector changes midway", With(five, kSecondRecord, 0x20), BadSize(1, 32), 1},
        {"long sector", Firmware({{1, 513}, {2, 1}}), BadSize(1, 16416), 513},
        {"short last record", Sized(five, kSecondRecord + 20), kEnd, 1},
        {"end within a sector", Firmware({{1, 512}, {2, 512}, {3, 1}}), {}, 1025},
        {"huge", Sized(five, 3'000'000), BadSector(0), 5},
    };
    const NetworkRig rig;
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        int records = 0;
        ProgressLog progress;
        const auto write = [&records](const auto&) { return ++records != 0; };
        const DownloadResult result = SendFirmware(rig.WriteFile("f", row.file), 0x21, write, progress);
        EXPECT_EQ(result.outcome, row.text.empty() ? DownloadOutcome::Sent : DownloadOutcome::FileRefused);
        EXPECT_EQ(result.text, row.text);
        EXPECT_EQ(records, row.records);
        EXPECT_EQ(progress.steps, records / 4);
        EXPECT_EQ(progress.pumps, progress.steps);
        EXPECT_EQ(progress.log.empty(), records == 0 && (row.text == kEnd || row.text == kHeader))
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
    EXPECT_EQ(content.fault.Text(), BadSector(3));
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
