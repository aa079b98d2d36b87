// Channel arrays in archives of every version, as literal bytes.

#include "SwitchingRig.h"

namespace kalvio::test {
namespace {

// Name, stereo, class type, direction, exclusive only, two channels.
constexpr const char* kNow = "04 4F757473 01000000 11 02 01000000 0200 03110001070103 04110100020000";
constexpr const char* kVersion20 = "04 4F757473 01000000 01 02 01000000 0200 03010001070103 04210100020000";
constexpr const char* kVersion19 = "04 4F757473 01000000 01 0200 03010001070103 04110100020000";

Bytes Stored(CChannelArray& array) {
    CArchive archive;
    array.Serialize(archive);
    return archive.Bytes();
}

struct ArchiveTest : ::testing::Test {
    SwitchingRig rig;
    CChannelArrayList& list = *rig.network.GetChannelArrayList();
};

TEST_F(ArchiveTest, ArrayOfEveryVersion) {
    const struct {
        const char* bytes;
        int config, revision;
        const char* then; // as it is stored afterwards
    } table[] = {
        {kNow, 21, 99, kNow},
        {kVersion20, 20, 99, "04 4F757473 01000000 01 02 01000000 0200 03110001070103 04210100020000"},
        {kVersion20, 21, 99, kVersion20},
        {kVersion19, 19, 99, "04 4F757473 01000000 11 00 00000000 0200 03110001070103 04110100020000"},
        {kNow, 21, 98, "01 61 00000000 00 00 00000000 0000"}, // nothing is read
    };
    for (const auto& row : table) {
        const Bytes bytes = Hex(row.bytes);
        CArchive archive{bytes};
        archive.SetFileVersion(101, row.revision);
        archive.SetConfigVersion(row.config);
        CChannelArray array("a");
        array.Serialize(archive);
        EXPECT_EQ(Stored(array), Hex(row.then)) << row.then;
        EXPECT_EQ(archive.Remaining(), row.revision == 99 ? 0U : bytes.size());
    }
    // A name beyond one byte of length, a count beyond two.
    CChannelArray large(CString(300, 'n').c_str());
    large.SetDirection(CChannelArray::DirectionInput);
    for (int count = 0; count < 65536; ++count) {
        large.AddChannel({1, 0x11, 0, 0, 0, 0, 0});
    }
    EXPECT_EQ(large.GetNumChannels(), 32767);
    const Bytes bytes = Stored(large);
    EXPECT_EQ(ToHex(std::span(bytes).first(4)), "FF2C016E");
    EXPECT_EQ(ToHex(std::span(bytes).subspan(303, 17)), "00000000110100000000FFFF0000010001");
    CArchive archive{bytes};
    CChannelArray loaded("a");
    loaded.Serialize(archive);
    EXPECT_EQ(Stored(loaded), bytes);
}

// Two arrays behind the save flag and their number.
std::string List(const char* flag) {
    return std::string(flag) + " 0200 " + kNow + " 01 62 00000000 00 00 00000000 0000";
}

TEST_F(ArchiveTest, ListReplacesOrDrops) {
    const struct {
        const char* flag;
        bool discard;
        int revision, save, arrays;
    } table[] = {{"01", false, 99, 1, 2},
                 {"02", false, 99, 2, 2},
                 {"00", false, 99, 0, 1},
                 {"01", true, 99, 1, 1},
                 {"01", false, 98, 7, 1}};
    for (const auto& row : table) {
        list.DeleteAll();
        list.DefineArray("a", 0, 1);
        rig.network.SetSaveChannelArrays(7);
        rig.host.application.discardStoredValues = row.discard;
        const Bytes bytes = Hex(List(row.flag));
        CArchive archive{bytes};
        archive.SetFileVersion(101, row.revision);
        list.Serialize(archive);
        EXPECT_EQ(rig.network.GetSaveChannelArrays(), row.save);
        EXPECT_EQ(list.GetCount(), row.arrays);
        EXPECT_EQ(archive.Remaining(), row.revision == 99 ? 0U : bytes.size());
    }
    for (const int save : {1, 0}) {
        rig.network.SetSaveChannelArrays(save);
        CArchive archive;
        list.Serialize(archive);
        EXPECT_EQ(archive.Bytes(), Hex(Format("%02d 0100 01 61 00000000 00 00 01000000 0000", save)));
    }
}

// Cut at every byte, and with damaged numbers: refused, and nothing has changed.
TEST_F(ArchiveTest, DamageChangesNothing) {
    list.DefineArray("old", 0, 0);
    CChannelArray* const before = list.GetAt(0);
    AddChannels(*before, "3:0:0:0:1");
    const Bytes stored = Stored(*before);
    rig.network.SetSaveChannelArrays(7);
    const Bytes whole = Hex(List("01"));
    std::vector<Bytes> damaged{Hex("01 FFFF"), Hex("01 0100 FF00"),
                               Hex("01 0100 00 00000000 00 00 00000000 FFFF FFFFFFFF 00")};
    for (std::size_t length = 0; length < whole.size(); ++length) {
        damaged.emplace_back(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    }
    for (const Bytes& bytes : damaged) {
        CArchive archive{bytes};
        EXPECT_THROW(list.Serialize(archive), CArchiveException) << ToHex(bytes);
        EXPECT_TRUE(list.GetCount() == 1 && list.GetAt(0) == before &&
                    rig.network.GetSaveChannelArrays() == 7);
    }
    const Bytes array = Hex(kNow);
    for (std::size_t length = 0; length < array.size(); ++length) {
        CArchive archive{std::span(array).first(length)};
        EXPECT_THROW(before->Serialize(archive), CArchiveException);
        EXPECT_EQ(Stored(*before), stored);
    }
}

// Configurations before version 20 hold the arrays in the switchers' part.
TEST_F(ArchiveTest, SwitcherSettings) {
    const Bytes bytes = Hex(std::string("01 0100 ") + kVersion19);
    const struct {
        int config, revision, cut, arrays;
    } table[] = {{19, 99, 0, 1}, {20, 99, 0, 0}, {19, 98, 0, 0}, {19, 99, 1, 0}};
    for (const auto& row : table) {
        list.DeleteAll();
        CArchive archive{std::span(bytes).first(bytes.size() - static_cast<std::size_t>(row.cut))};
        archive.SetFileVersion(101, row.revision);
        archive.SetConfigVersion(row.config);
        CString error;
        EXPECT_EQ(rig.Arrays().Load(archive, error), row.cut == 0);
        EXPECT_EQ(list.GetCount(), row.arrays);
    }
    CArchive archive;
    rig.Arrays().Serialize(archive);
    EXPECT_TRUE(archive.Bytes().empty());
}

} // namespace
} // namespace kalvio::test
