#include "platform/Archive.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Archive, StoresEachValueInItsLiteralBytes) {
    struct Case {
        const char* what;
        void (*write)(CArchive&);
        Bytes bytes;
    };
    const Case cases[] = {
        {"byte", [](CArchive& ar) { ar.WriteByte(0xA5); }, {0xA5}},
        {"int16", [](CArchive& ar) { ar.WriteInt16(-2); }, {0xFE, 0xFF}},
        {"uint16", [](CArchive& ar) { ar.WriteUInt16(0x1234); }, {0x34, 0x12}},
        {"int32", [](CArchive& ar) { ar.WriteInt32(-65510); }, {0x1A, 0x00, 0xFF, 0xFF}},
        {"uint32", [](CArchive& ar) { ar.WriteUInt32(0x89ABCDEF); }, {0xEF, 0xCD, 0xAB, 0x89}},
        {"double", [](CArchive& ar) { ar.WriteDouble(-1.5); }, {0, 0, 0, 0, 0, 0, 0xF8, 0xBF}},
        {"string", [](CArchive& ar) { ar.WriteString("Kv"); }, {0x02, 'K', 'v'}},
        {"empty string", [](CArchive& ar) { ar.WriteString({}); }, {0x00}},
        {"count", [](CArchive& ar) { ar.WriteCount(0xFFFE); }, {0xFE, 0xFF}},
        {"wide count", [](CArchive& ar) { ar.WriteCount(0xFFFF); }, {0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}},
    };
    for (const Case& each : cases) {
        CArchive archive;
        each.write(archive);
        EXPECT_EQ(archive.Bytes(), each.bytes) << each.what;
    }
}

TEST(Archive, TextLengthsTakeTheShortestForm) {
    struct Case {
        std::size_t length;
        Bytes prefix;
    };
    const Case cases[] = {
        {0xFE, {0xFE}},
        {0xFF, {0xFF, 0xFF, 0x00}},
        {0xFFFD, {0xFF, 0xFD, 0xFF}},
        {0xFFFE, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
        {0x10000, {0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00}},
    };
    for (const Case& each : cases) {
        const CString text(each.length, 'x');
        CArchive storing;
        storing.WriteString(text);
        const Bytes& stored = storing.Bytes();
        ASSERT_EQ(stored.size(), each.prefix.size() + each.length);
        EXPECT_EQ(Bytes(stored.begin(), stored.begin() + static_cast<std::ptrdiff_t>(each.prefix.size())),
                  each.prefix);
        CArchive loading(stored);
        EXPECT_EQ(loading.ReadString(), text);
        EXPECT_EQ(loading.Remaining(), 0U);
    }
}

TEST(Archive, LoadsWhatWasStored) {
    const Bytes raw = {1, 2, 3};
    CArchive storing;
    storing.WriteInt16(std::numeric_limits<std::int16_t>::min());
    storing.WriteDouble(std::numeric_limits<double>::denorm_min());
    storing.WriteInt32(std::numeric_limits<std::int32_t>::min());
    storing.WriteCount(3);
    storing.WriteBytes(raw);
    CArchive loading(storing.Bytes());
    EXPECT_EQ(loading.ReadInt16(), -32768);
    EXPECT_EQ(loading.ReadDouble(), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(loading.ReadInt32(), std::numeric_limits<std::int32_t>::min());
    Bytes back(loading.ReadCount());
    loading.ReadBytes(back);
    EXPECT_EQ(back, raw);
}

TEST(Archive, DamageIsRefusedBeforeAnythingIsAllocated) {
    struct Case {
        const char* what;
        Bytes bytes;
        void (*read)(CArchive&);
    };
    const Case cases[] = {
        {"no byte", {}, [](CArchive& ar) { ar.ReadByte(); }},
        {"half a word", {1}, [](CArchive& ar) { ar.ReadUInt16(); }},
        {"short double", {1, 2, 3, 4, 5, 6, 7}, [](CArchive& ar) { ar.ReadDouble(); }},
        {"short text", {3, 'a', 'b'}, [](CArchive& ar) { ar.ReadString(); }},
        {"text of 4 GB",
         {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 'a'},
         [](CArchive& ar) { ar.ReadString(); }},
        {"wide characters", {0xFF, 0xFE, 0xFF, 0x01, 'a', 0}, [](CArchive& ar) { ar.ReadString(); }},
        {"count without elements",
         {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1},
         [](CArchive& ar) { ar.ReadCount(); }},
        {"count one too large", {2, 0, 1}, [](CArchive& ar) { ar.ReadCount(); }},
    };
    for (const Case& each : cases) {
        CArchive archive(each.bytes);
        EXPECT_THROW(each.read(archive), CArchiveException) << each.what;
    }
}

TEST(Archive, ComparesItsFileVersion) {
    CArchive archive;
    archive.SetFileVersion(2, 19);
    EXPECT_EQ(archive.CheckFileVersion(2, 19), 0);
    EXPECT_EQ(archive.CheckFileVersion(2, 20), -1);
    EXPECT_EQ(archive.CheckFileVersion(2, 18), 1);
    EXPECT_EQ(archive.CheckFileVersion(3, 0), -1);
    EXPECT_EQ(archive.CheckFileVersion(1, 99), 1);
}

} // namespace
