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

// A file with one byte changed.
Bytes With(Bytes file, std::size_t at, int value) {
    file[at] = static_cast<std::uint8_t>(value);
    return file;
}
// A file cut off or filled up with zeroes.
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

    FirmwareFile file(Firmware({{1, 512}, {3, 7}, {3, 1}}));
    const FirmwareContent content = InspectFirmware(file);
    ASSERT_EQ(content.sectors.size(), 2U);
    EXPECT_EQ(content.sectors[1].number, 3);
    EXPECT_EQ(content.sectors[1].blocks, 7);
    EXPECT_EQ(content.fault.Text(), BadSector(3));
    EXPECT_EQ(content.fault.offset, 128U + 34 * 519);
}

TEST(FirmwareDownload, AFailedRecordSendsItsSectorAgain) {
    const NetworkRig rig;
    const CString path = rig.WriteFile("f", Firmware({{2, 512}, {3, 4}}));
    const CString frame = "\nPlease wait while downloading firmware...\n\n";
    const CString two = frame + "Downloading sector 2...";
    const CString three = frame + "Downloading sector 3...";
    const CString twoAgain = frame + "DOWNLOAD OF SECTOR 2 FAILED, trying again... @128";
    const CString threeAgain = frame + "DOWNLOAD OF SECTOR 3 FAILED, trying again... @256";
    const CString given = "Failed to write sector %d after 3 tries. This firmware download cannot continue.";
    const struct {
        std::set<int> fails; // writes, counted from 1
        int cancelAt;
        int writes;
        DownloadOutcome outcome;
        CString log; // after the range
        CString text;
    } table[] = {
        {{}, -1, 516, DownloadOutcome::Sent, two + three, ""},
        {{515}, -1, 519, DownloadOutcome::Sent, two + three + threeAgain, ""},
        {{1, 2}, -1, 518, DownloadOutcome::Sent, two + twoAgain + twoAgain + three, ""},
        {{3, 517, 519},
         -1,
         519,
         DownloadOutcome::WriteFailed,
         two + twoAgain + three + threeAgain,
         FormatText(given, 3)},
        {{1, 2, 3}, -1, 3, DownloadOutcome::WriteFailed, two + twoAgain + twoAgain, FormatText(given, 2)},
        {{1, 2, 3}, 2, 3, DownloadOutcome::WriteFailed, two + twoAgain + twoAgain, FormatText(given, 2)},
        {{}, 0, 1, DownloadOutcome::Cancelled, two, ""},
        {{2}, 1, 2, DownloadOutcome::Cancelled, two + twoAgain, ""},
        {{}, 515, 516, DownloadOutcome::Cancelled, two + three, ""},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(Format("%zu %d", row.fails.size(), row.writes));
        int writes = 0;
        ProgressLog progress;
        progress.cancelAt = row.cancelAt;
        const auto write = [&](const auto&) { return !row.fails.contains(++writes); };
        const DownloadResult result = SendFirmware(path, 0x21, write, progress);
        EXPECT_EQ(result.outcome, row.outcome);
        EXPECT_EQ(result.text, row.text);
        EXPECT_EQ(writes, row.writes);
        EXPECT_EQ(progress.log, "Progress 0-129/1" + row.log);
    }
}

// The whole way: chosen by the user, framed, answered, shown.
TEST(FirmwareDownload, TheDocumentSendsFramesAndShowsWhatWentWrong) {
    NetworkRig rig;
    const CKvNetStatus device(9, 0x10021U);
    rig.Attach(9, {AnswerFrame(9, 0xCF, {}), AnswerFrame(9, 0xCE, {})});
    EXPECT_EQ(rig.network.DownloadFirmware(device), 0) << "no file was chosen";
    const CString path = rig.WriteFile("f", Firmware({{1, 2}}));
    rig.host.user.QueueFile(path);
    rig.host.user.onDialog = [&rig](CDialog& dialog) {
        rig.events += dialog.GetText() + " ";
        EXPECT_FALSE(rig.host.mainWindow.IsWindowEnabled());
    };
    EXPECT_EQ(rig.network.DownloadFirmware(device), 0);
    EXPECT_TRUE(rig.host.mainWindow.IsWindowEnabled());
    const CString first = "550922B11000" + ToHex(Bytes(32, 0x01)) + "49AA ";
    EXPECT_EQ(rig.Take(),
              "Downloading Kv-NET Firmware... " + first + "550922B11001" + ToHex(Bytes(32, 0x06)) + "A8AA " +
                  first + first +
                  "[Failed to write sector 1 after 3 tries. This firmware download cannot continue.]");
    EXPECT_EQ(CKvNetSettings::CanDownloadFirmware({9, 0x11}), 0);
    EXPECT_EQ(CKvNetSettings::CanDownloadFirmware({9, 0x12}), 1);

    // Cancelled at the window, without a message.
    rig.Attach(9, {AnswerFrame(9, 0xCF, {})});
    rig.host.user.onDialog = [](CDialog& dialog) { EXPECT_TRUE(dialog.PressButton(IDCANCEL)); };
    rig.host.user.QueueFile(path);
    EXPECT_EQ(rig.network.DownloadFirmware(device), 0);
    EXPECT_EQ(rig.Take(), first);
    rig.host.user.onDialog = nullptr;
    rig.host.user.QueueFile(path);
    EXPECT_EQ(rig.network.DownloadFirmware(device), 1);
}

} // namespace
} // namespace kalvio::test
