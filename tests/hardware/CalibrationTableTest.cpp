#include "hardware/ByteAllocation.h"
#include "hardware/FakeMemory.h"
#include "support/ScriptedDriver.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <limits>

namespace kalvio::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A gain of so many eighths as the first entry.
std::vector<std::uint8_t> ImageOfGain(int eighths) {
    return MakeImage(std::array<std::uint8_t, 2>{0, static_cast<std::uint8_t>(16 * eighths)});
}

std::vector<std::uint8_t> Damaged(std::vector<std::uint8_t> image) {
    image[600] ^= 0x40;
    return image;
}

struct Calibration : testing::Test {
    TestHost host;
    FakeMemory memory;
    CCalibrationTable table{memory};
};

const CString kRepeat =
    " Default values will be used but these will probably cause incorrect results.\nPlease "
    "restart Kalvio and try again; if this problem persists then the hardware may need to "
    "be re-calibrated.";
const CString kMirrorUnreadable = "The system failed to read the Main Board calibration table." + kRepeat;
const CString kMasterUnreadable =
    "The system failed to read the Main Board MASTER calibration table." + kRepeat;
const CString kDamaged =
    "The Main Board calibration table has an invalid checksum. Default values will be used "
    "but these will probably cause incorrect results.\nThe hardware will need to be "
    "re-calibrated.";
const CString kAsk = "The Main Board calibration table has an invalid checksum. The factory defaults will be "
                     "used for this session.\nDo you wish to reset to the factory defaults for all further "
                     "sessions?\n\n(Note : if the hardware has been re-calibrated since it was new then any "
                     "intermediate calibration will be lost).";
const CString kResetFailed = "Failed to reset the calibration to factory defaults. ";
const CString kVerifyFailed =
    "VERIFY FAILED : The calibration table does not match the values in the hardware.";

TEST(CalibrationImage, ChecksumIsTheSumModulo65535) {
    struct Case {
        std::size_t fullBytes;
        std::uint8_t last;
        std::uint16_t checksum;
    };
    for (const Case& c : {Case{0, 0, 0}, Case{256, 254, 65534}, Case{256, 255, 0}, Case{257, 1, 1},
                          Case{500, 0, 500 * 255 - 65535}}) {
        CalibrationImage image;
        ASSERT_TRUE(image.Allocate(512));
        image.SetWord(0, 0xFFFF); // the checksum itself is not counted
        for (std::size_t i = 0; i < c.fullBytes; ++i) {
            image.SetByte(2 + i, 255);
        }
        image.SetByte(639, c.last);
        EXPECT_EQ(image.ComputeChecksum(), c.checksum) << c.fullBytes;
    }
}

TEST_F(Calibration, BringUpFallsBackFromMirrorToMasterToDefaults) {
    enum Copy { Good, Bad, Unreadable };
    struct Case {
        Copy mirror;
        Copy master;
        bool yes;
        bool writable;
        double gain; // mirror 0.5, master 0.25, default 1.0
        std::vector<CString> texts;
        bool mirrorRewritten;
    };
    const Case cases[] = {
        {Good, Bad, true, true, 0.5, {}, false},
        {Unreadable, Good, true, true, 1.0, {kMirrorUnreadable}, false},
        {Bad, Unreadable, true, true, 1.0, {kMasterUnreadable}, false},
        {Bad, Bad, true, true, 1.0, {kDamaged}, false},
        {Bad, Good, false, true, 0.25, {kAsk}, false},
        {Bad, Good, true, true, 0.25, {kAsk}, true},
        {Bad, Good, true, false, 1.0, {kAsk, kResetFailed}, false},
    };
    for (const Case& c : cases) {
        memory = {};
        const auto mirror = c.mirror == Good ? ImageOfGain(4) : Damaged(ImageOfGain(4));
        memory.Put(kMirror, mirror);
        memory.Put(kMaster, c.master == Good ? ImageOfGain(2) : Damaged(ImageOfGain(2)));
        if (c.mirror == Unreadable || c.master == Unreadable) {
            memory.unreadableFrom = c.mirror == Unreadable ? kMirror + 96 : kMaster + 96;
        }
        if (!c.writable) {
            memory.unwritableFrom = 0;
        }
        host.user.Clear();
        host.user.QueueAnswer(c.yes ? BoxAnswer::Yes : BoxAnswer::No);
        CCalibrationTable fresh(memory);

        EXPECT_EQ(memory.Initialise(fresh), 1);
        EXPECT_EQ(fresh.GetCalibrationValueForID(0), c.gain);
        EXPECT_EQ(fresh.UsingCalibration(), 1);
        EXPECT_EQ(host.user.Texts(), c.texts);
        EXPECT_EQ(memory.Image(kMirror) != mirror, c.mirrorRewritten);
        for (const auto& box : host.user.Boxes()) {
            const bool asks = box.text == kAsk;
            EXPECT_EQ(box.buttons, asks ? BoxButtons::YesNo : BoxButtons::Ok);
            EXPECT_EQ(box.icon, asks ? BoxIcon::None : BoxIcon::Exclamation);
        }
        host.user.Clear();
    }
}

TEST_F(Calibration, WithoutAUnitTheDefaultsHoldSilently) {
    memory.present = false;
    EXPECT_EQ(memory.Initialise(table), 1);
    EXPECT_EQ(table.GetCalibrationValueForID(0), 1.0);
    EXPECT_EQ(table.GetCalibrationValueForID(24), 0.0);
    EXPECT_THAT(memory.devices, IsEmpty());
    EXPECT_THAT(host.user.Texts(), IsEmpty());
}

TEST_F(Calibration, ReadsPageByPageAndWritesAStampedImageAsCheckedPages) {
    memory.Put(kMirror, ImageOfGain(4));
    memory.Initialise(table);
    ASSERT_THAT(memory.pointers, SizeIs(20));
    EXPECT_EQ(ToHex(memory.pointers[19]), "0260");
    EXPECT_THAT(memory.devices, Each(0x52));
    EXPECT_EQ(host.clock.SleptMs(), 20 * 10U);
    table.SetCalibrationVersion(0x0203);
    table.SetUnitSerialNum(0x1234);
    table.SetCalibrationOrganisation("Lab");
    table.SetCalibrationOperator(CString(40, 'x'));

    EXPECT_EQ(table.WriteMasterTable(), 1);

    const auto image = memory.Image(kMaster);
    const auto hex = ToHex(image);
    EXPECT_EQ(hex.substr(4, 28), "EA07030E0F091A0B014523030267");
    EXPECT_EQ(hex.substr(32, 64), "4C6162" + CString(58, '0'));
    EXPECT_EQ(image[48 + 30], 'x');
    EXPECT_EQ(image[48 + 31], 0);
    EXPECT_EQ(hex.substr(160, 8), "34120002");
    EXPECT_EQ(hex.substr(256, 8), "00400000");
    unsigned sum = 0;
    for (std::size_t i = 2; i < image.size(); ++i) {
        sum += image[i];
    }
    EXPECT_EQ(image[0] + 256U * image[1], sum % 65535);

    ASSERT_THAT(memory.checkedWrites, SizeIs(20));
    EXPECT_THAT(memory.checkedWrites, Each(SizeIs(34)));
    EXPECT_EQ(ToHex(memory.checkedWrites[1]), "0820" + hex.substr(64, 64));
    EXPECT_EQ(host.clock.SleptMs(), 3 * 20 * 10U); // the write and its verify
    EXPECT_EQ(memory.Image(kMirror), ImageOfGain(4));
    EXPECT_THAT(host.user.Texts(), IsEmpty());
}

TEST_F(Calibration, StampsTheBoardsOwnIdentityOrRefuses) {
    struct Case {
        std::uint8_t device;
        std::uint8_t version;
        std::int16_t status;
        int written;
        std::uint8_t stamped;
    };
    for (const Case& c :
         {Case{0x52, 0x21, 0, 1, 0x11}, Case{0x52, 0x30, 0, 1, 0x30}, Case{0x54, 0x21, 0, 1, 0x21},
          Case{0x53, 0x21, 0, 0, 0}, Case{0x52, 0x21, 9, 0, 0}}) {
        memory = {};
        memory.Put(kMirror, ImageOfGain(4));
        memory.version = c.version;
        memory.registerStatus = c.status;
        CCalibrationTable fresh(memory);
        memory.Initialise(fresh, c.device);
        EXPECT_EQ(fresh.WriteTable(), c.written);
        EXPECT_EQ(memory.Image(kMirror)[12], c.stamped);
        EXPECT_EQ(memory.checkedWrites.empty(), c.written == 0);
    }
}

TEST_F(Calibration, AFailedVerifyLeavesTheMemorysContents) {
    memory.Put(kMirror, ImageOfGain(4));
    memory.Initialise(table);
    memory.writeProtected = true;
    table.SetCalibrationValue(0, 0.75);
    EXPECT_EQ(table.WriteTable(), 0);
    EXPECT_THAT(host.user.Texts(), ElementsAre(kVerifyFailed));
    EXPECT_EQ(table.GetCalibrationValue(0), 0.5);
    memory.unreadableFrom = 0;
    EXPECT_EQ(table.VerifyTableInHardware(kMirror), 0);
    EXPECT_THAT(host.user.Texts(), ElementsAre(kVerifyFailed, kVerifyFailed));
}

TEST_F(Calibration, AWriteStopsAtTheFirstPageThatFails) {
    memory.Put(kMirror, ImageOfGain(4));
    memory.Initialise(table);
    memory.unwritableFrom = 64;
    EXPECT_EQ(table.WriteTable(), 0);
    EXPECT_THAT(memory.checkedWrites, SizeIs(3));
    EXPECT_THAT(host.user.Texts(), IsEmpty());
}

TEST_F(Calibration, WritingNeedsTheSecurityLevelOfTheCopy) {
    memory.Put(kMirror, ImageOfGain(4));
    memory.Initialise(table);
    const auto refusal = [](const CString& copy) {
        return "You do not have a high enough security level to write the " + copy +
               " calibration table to the hardware. These calibration values have not been saved.";
    };
    host.application.securityLevel = 2;
    EXPECT_EQ(table.WriteTable(), 0);
    host.application.securityLevel = 3;
    EXPECT_EQ(table.WriteMasterTable(), 0);
    EXPECT_THAT(host.user.Texts(), ElementsAre(refusal("mirror"), refusal("master")));
    EXPECT_THAT(memory.checkedWrites, IsEmpty());
    EXPECT_EQ(table.WriteTable(), 1);
}

TEST_F(Calibration, CopiesMasterToMirror) {
    memory.Put(kMirror, ImageOfGain(4));
    memory.Put(kMaster, ImageOfGain(2));
    memory.Initialise(table);
    EXPECT_EQ(table.CopyMasterToMirror(), 1);
    EXPECT_EQ(table.GetCalibrationValue(0), 0.25);
    EXPECT_EQ(memory.Image(kMirror)[129], 0x20);
    memory.unreadableFrom = kMaster;
    EXPECT_EQ(table.CopyMasterToMirror(), 0);
    EXPECT_EQ(table.GetCalibrationValue(0), 1.0);
}

TEST_F(Calibration, OneAddressByteSendsTheLowByteAlone) {
    memory.addressBytes = 1;
    const std::array<CalibTableRecord, 1> records{{{0, 0, 7.0, 0.0}}};
    EXPECT_EQ(table.InitialiseTable(0x54, 64, 1, 128, 0, 0, records.data(), 1), 1);
    EXPECT_EQ(table.SetCalibrationValue(0, 9.0), 1);
    EXPECT_EQ(table.WriteTable(), 1);
    ASSERT_THAT(memory.pointers, SizeIs(8));
    EXPECT_EQ(ToHex(memory.pointers[3]), "C0");
    ASSERT_THAT(memory.checkedWrites, SizeIs(4));
    EXPECT_EQ(ToHex(memory.checkedWrites[2]).substr(0, 6), "800900");
}

TEST_F(Calibration, EntriesKeepTheirTypesWidthAndWrap) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        std::uint32_t type;
        double set;
        const char* bytes; // four from the entry on; what is beyond it stays EE
        double get;
    };
    const Case cases[] = {
        {0, 255.9, "FFEEEEEE", 255.0},
        {0, 300.0, "2CEEEEEE", 44.0},
        {1, 40000.0, "409CEEEE", 40000.0},
        {1, -1.9, "FFFFEEEE", 65535.0},
        {2, 1.5, "00C0EEEE", 1.5},
        {2, 2.0, "0000EEEE", 0.0},
        {7, 1.00001, "0080EEEE", 1.0},
        {3, -2.9, "FEFFEEEE", -2.0},
        {6, 40000.0, "409CEEEE", -25536.0},
        {4, 70000.0, "701101EE", 70000.0},
        {4, 16777216.0, "000000EE", 0.0},
        {4, -1.0, "FFFFFFEE", 16777215.0},
        {1, kNaN, "0000EEEE", 0.0},
        {3, 1e300, "0000EEEE", 0.0},
        {2, -std::numeric_limits<double>::infinity(), "0000EEEE", 0.0},
    };
    for (const Case& c : cases) {
        const std::array<CalibTableRecord, 1> records{{{3, c.type, 0.0, 0.0}}};
        CCalibrationTable fresh(memory);
        memory.present = false;
        fresh.InitialiseTable(0x52, 32, 2, 512, kMirror, kMaster, records.data(), 1);
        for (int i = 0; i < 8; ++i) {
            fresh.SetCalibrationByte(i, 0xEE);
        }
        EXPECT_EQ(fresh.SetCalibrationValue(3, c.set), 1);
        CString bytes;
        for (int i = 3; i < 7; ++i) {
            bytes += Format("%02X", fresh.GetCalibrationByte(i));
        }
        EXPECT_EQ(bytes, c.bytes) << "type " << c.type << " value " << c.set;
        EXPECT_EQ(fresh.GetCalibrationByte(2), 0xEE);
        EXPECT_EQ(fresh.GetCalibrationValue(3), c.get) << "type " << c.type << " value " << c.set;
        EXPECT_EQ(fresh.GetCalibrationValueForID(0), c.get);
    }
}

// "ID:OFFSET/TYPE=DEFAULT" of the first and last entry of every run.
CString Runs(std::span<const CalibTableRecord> records) {
    CString text;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto differs = [&](std::size_t other) {
            return other >= records.size() || records[other].type != records[i].type ||
                   records[other].defaultValue != records[i].defaultValue;
        };
        if (differs(i - 1) || differs(i + 1)) {
            text += Format("%zu:%u/%u=%g ", i, records[i].offset, records[i].type, records[i].defaultValue);
        }
    }
    return text;
}

TEST(CalibrationRecords, BothListsHoldTheirEntries) {
    EXPECT_EQ(Runs(MainBoardRecords()), "0:0/2=1 23:46/2=1 24:48/6=0 25:50/6=0 26:52/7=1 30:60/7=1 ");
    EXPECT_EQ(Runs(AnalogueBoardRecords()),
              "0:0/2=1 23:46/2=1 24:48/3=0 39:78/3=0 40:80/2=0.94406 41:82/2=0.94406 42:84/5=0 46:100/5=0 "
              "47:256/2=1 70:302/2=1 71:304/3=0 86:334/3=0 87:336/2=1.05925 88:338/2=1.05925 89:340/5=0 "
              "91:348/5=0 ");
}

TEST_F(Calibration, RefusesWhatNoEntryHas) {
    memory.present = false;
    const auto records = AnalogueBoardRecords();
    table.InitialiseTable(0x54, 32, 2, 512, kMirror, kMaster, records.data(),
                          static_cast<int>(records.size()));
    EXPECT_EQ(table.GetCalibrationValueForID(92), 1.0);
    EXPECT_EQ(table.GetCalibrationValueForID(-1), 1.0);
    EXPECT_EQ(table.GetCalibrationValueForID(42), 0.0);
    EXPECT_EQ(table.GetCalibrationValue(84), 0.0);
    EXPECT_EQ(table.GetCalibrationValue(1), 1.0);
    for (const int offset : {1, 84, -1, 512}) {
        EXPECT_EQ(table.SetCalibrationValue(offset, 1.0), 0) << offset;
    }
    EXPECT_EQ(table.SetCalibrationByte(512, 1), 0);
    EXPECT_EQ(table.SetCalibrationByte(-1, 1), 0);
    EXPECT_EQ(table.SetCalibrationByte(511, 1), 1);
    EXPECT_EQ(table.GetCalibrationByte(512), 0);
    table.SetCalibrationByte(384, 0x5A); // image byte 512
    table.SetCalibrationByte(385, 0x5B);
    EXPECT_EQ(table.GetByte(512), 0x5A);
    EXPECT_EQ(table.GetByte(513), 0);
    EXPECT_EQ(table.GetByte(-1), 0);
    EXPECT_EQ(CCalibrationTable(memory).InitialiseTable(0x52, 0, 2, 512, 0, 0, nullptr, 0), 0);
}

TEST_F(Calibration, TextsStayInTheirField) {
    memory.present = false;
    memory.Initialise(table);
    for (int i = 100; i < 150; ++i) {
        table.SetCalibrationByte(i, '#');
    }
    EXPECT_EQ(table.SetCalibrationString(100, 6, "abc"), 1);
    EXPECT_EQ(table.GetCalibrationString(100, 6), "abc");
    EXPECT_EQ(table.GetCalibrationString(106, 2), "##");
    EXPECT_EQ(table.SetCalibrationString(100, 40, CString(50, 'y')), 1);
    EXPECT_EQ(table.GetCalibrationString(100, 99), CString(32, 'y'));
    EXPECT_EQ(table.GetCalibrationByte(132), 0);
    EXPECT_EQ(table.GetCalibrationByte(140), '#');
    EXPECT_EQ(table.SetCalibrationString(510, 10, "wxyz"), 1);
    EXPECT_EQ(table.GetCalibrationString(510, 10), "wx");
    EXPECT_EQ(table.GetCalibrationString(511, -1), "");
    EXPECT_EQ(table.SetCalibrationString(512, 1, "a"), 0);
    EXPECT_EQ(table.SetCalibrationString(-1, 1, "a"), 0);
    EXPECT_EQ(table.GetCalibrationString(512, 4), "");
}

TEST_F(Calibration, VersionsOfOldImagesAreMended) {
    struct Case {
        const char* from9; // bytes 9 to 15
        std::uint16_t software;
        std::uint16_t calibration;
        const char* letter;
    };
    const Case cases[] = {
        {"610000000A2A62", 0x6100, 0x010A, "b"}, // 0.97, byte 14 at 42
        {"610000000A2962", 0x6100, 0x290A, "b"}, // byte 14 at 41
        {"610000002A0162", 0x6100, 0x012A, "*"}, // byte 13 at 42
        {"61000000290162", 0x6100, 0x0129, "b"}, // byte 13 at 41
        {"620000002A2A62", 0x6200, 0x2A2A, "b"}, // 0.98 is right
        {"0B0100002A2A67", 0x0B01, 0x2A2A, "g"}, {"0B010000000000", 0x0B01, 0x0000, ""},
    };
    for (const Case& c : cases) {
        memory.Put(kMirror, MakeImage(Hex(c.from9), 9));
        CCalibrationTable fresh(memory);
        memory.Initialise(fresh);
        EXPECT_EQ(fresh.GetSoftwareVersion(), c.software) << c.from9;
        EXPECT_EQ(fresh.GetCalibrationVersion(), c.calibration) << c.from9;
        EXPECT_EQ(fresh.GetSoftwareVersionLetter(), c.letter) << c.from9;
    }
    EXPECT_THAT(host.user.Texts(), IsEmpty());
}

CString DateOf(const CCalibrationTable& table) {
    std::array<VARIANT, 6> date;
    EXPECT_EQ(table.GetCalibrationDate(&date[0], &date[1], &date[2], &date[3], &date[4], &date[5]), 1);
    CString text;
    for (const VARIANT& part : date) {
        EXPECT_EQ(part.Type(), AutomationType::Short);
        text += part.ToText() + " ";
    }
    return text;
}

TEST_F(Calibration, RunningOutOfMemoryIsReportedOnce) {
    memory.Put(kMirror, ImageOfGain(4));
    memory.Initialise(table);
    EXPECT_EQ(DateOf(table), "0 0 0 0 0 0 ");
    const auto none = [](std::size_t) { return false; };
    InstallAllocationGate(none);
    EXPECT_EQ(table.VerifyTableInHardware(kMirror), 0);
    CCalibrationTable starved(memory);
    EXPECT_EQ(memory.Initialise(starved), 0);
    InstallAllocationGate(nullptr);

    EXPECT_EQ(table.UsingCalibration(), 0);
    EXPECT_EQ(table.GetCalibrationValue(0), 0.5);
    EXPECT_EQ(DateOf(table), "2026 3 14 15 9 26 ");
    EXPECT_EQ(starved.UsingCalibration(), 0);
    EXPECT_EQ(starved.WriteTable(), 0);
    EXPECT_EQ(starved.SetCalibrationValue(0, 1.0), 0);
    EXPECT_EQ(starved.GetByte(0), 0);
    PumpMessages();
    ASSERT_THAT(host.mainWindow.messages, SizeIs(1));
    EXPECT_EQ(host.mainWindow.messages[0].id, 0x8004U);
    EXPECT_EQ(host.mainWindow.messages[0].wParam, 11304U);
    EXPECT_EQ(host.mainWindow.messages[0].lParam, 0);
}

} // namespace
} // namespace kalvio::test
