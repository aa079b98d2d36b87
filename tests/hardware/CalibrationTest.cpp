// Calibration images, their memory and their entries; what the boards do with them stands in the transcripts.

#include "hardware/ByteAllocation.h"
#include "hardware/CalibrationTable.h"
#include "hardware/calibration/CalibrationImage.h"
#include "support/ScriptedDriver.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace kalvio::test {
namespace {

using testing::SizeIs;

// A memory on a bus of its own: address pointer and page write. Notes what is sent, checked writes with a
// "!".
class FakeMemory final : public MemoryAccess {
public:
    [[nodiscard]] bool IsUnitPresent() const override { return present; }
    std::int16_t PutByte(std::uint8_t device, std::uint8_t value) override {
        return PutBlock(device, &value, 1, false);
    }
    std::int16_t PutBlock(std::uint8_t, const std::uint8_t* block, std::uint32_t length,
                          bool checked) override {
        sent.push_back((checked ? "!" : "") + ToHex({block, length}));
        m_pointer = addressBytes == 2 ? block[0] * 256U + block[1] : block[0];
        std::copy(block + addressBytes, block + length, bytes.begin() + m_pointer);
        return 0;
    }
    std::int16_t GetBlock(std::uint8_t, std::uint8_t* block, std::uint32_t length) override {
        std::copy_n(bytes.begin() + m_pointer, length, block);
        m_pointer += length;
        return 0;
    }
    std::int16_t ReadStatusRegister(std::uint16_t, std::uint8_t& value) override {
        value = 0x30;
        return 0;
    }
    std::int16_t ReadAnalogueRegister(char, std::uint8_t& value) override {
        value = 0x21;
        return 0;
    }
    // Gives the table the main board's geometry and records over this memory.
    int Initialise(CCalibrationTable& table, std::uint8_t device = kMainBoardMemory) {
        const auto records = MainBoardRecords();
        return table.InitialiseTable(device, 32, 2, 512, 0, 2048, records.data(),
                                     static_cast<int>(records.size()));
    }

    bool present = true;
    std::uint32_t addressBytes = 2;
    std::vector<std::string> sent;
    std::array<std::uint8_t, 4096> bytes{};

private:
    std::uint32_t m_pointer = 0;
};

struct Calibration : testing::Test {
    TestHost host;
    FakeMemory memory;
    CCalibrationTable table{memory};
};

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

TEST_F(Calibration, OneAddressByteSendsTheLowByteAlone) {
    memory.addressBytes = 1;
    const std::array<CalibTableRecord, 1> records{{{0, 0, 7.0, 0.0}}};
    EXPECT_EQ(table.InitialiseTable(kAnalogueBoardMemory, 64, 1, 128, 0, 0, records.data(), 1), 1);
    EXPECT_EQ(table.SetCalibrationValue(0, 9.0), 1);
    EXPECT_EQ(table.WriteTable(), 1);
    ASSERT_THAT(memory.sent, SizeIs(12)); // four pages read, written, read back
    EXPECT_EQ(memory.sent[3], "C0");
    EXPECT_EQ(memory.sent[6].substr(0, 7), "!800900");
    EXPECT_EQ(ToHex(std::span(memory.bytes).subspan(9, 4)), "0B012121");
}

TEST_F(Calibration, OnlyTheTwoBoardsHaveAnIdentityToStamp) {
    memory.Initialise(table, 0x53);
    memory.sent.clear();
    EXPECT_EQ(table.WriteTable(), 0);
    EXPECT_THAT(memory.sent, SizeIs(0));
    memory.Initialise(table);
    EXPECT_EQ(table.WriteTable(), 1);
    EXPECT_EQ(memory.bytes[12], 0x30);
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
        fresh.InitialiseTable(0x52, 32, 2, 512, 0, 2048, records.data(), 1);
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
    table.InitialiseTable(0x54, 32, 2, 512, 0, 2048, records.data(), static_cast<int>(records.size()));
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

TEST_F(Calibration, RunningOutOfMemoryIsReportedOnce) {
    memory.Initialise(table);
    const auto year = [](const CCalibrationTable& of) {
        std::array<VARIANT, 6> date;
        EXPECT_EQ(of.GetCalibrationDate(&date[0], &date[1], &date[2], &date[3], &date[4], &date[5]), 1);
        EXPECT_EQ(date[5].Type(), AutomationType::Short);
        return date[0].ToText() + " " + date[5].ToText();
    };
    EXPECT_EQ(year(table), "0 0");
    InstallAllocationGate([](std::size_t) { return false; });
    EXPECT_EQ(table.VerifyTableInHardware(0), 0);
    CCalibrationTable starved(memory);
    EXPECT_EQ(memory.Initialise(starved), 0);
    InstallAllocationGate(nullptr);
    EXPECT_EQ(table.UsingCalibration(), 0);
    EXPECT_EQ(year(table), "2026 26") << "the local time";
    EXPECT_EQ(starved.UsingCalibration(), 0);
    EXPECT_EQ(starved.WriteTable(), 0);
    EXPECT_EQ(starved.SetCalibrationValue(0, 1.0), 0);
    EXPECT_EQ(starved.GetByte(0), 0);
    PumpMessages();
    ASSERT_THAT(host.mainWindow.messages, SizeIs(1));
    EXPECT_EQ(host.mainWindow.messages[0].id, 0x8004U);
    EXPECT_EQ(host.mainWindow.messages[0].wParam, 11304U);
}

} // namespace
} // namespace kalvio::test
