#include "settling/SettlingDetails.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// One group as 29 literal bytes: type, tolerance 4.0 or 2.5, time 300 ms, 7 results, average on.
Bytes Group(std::uint8_t flag, std::uint8_t type, std::uint8_t results = 7) {
    return {flag, type, 0, 0, 0,    flag,    0, 0, 0, 0,    0,    0, 0x10, 0x40, flag,
            0x2C, 0x01, 0, 0, flag, results, 0, 0, 0, flag, 0x01, 0, 0,    0};
}

Bytes Groups(int count, std::uint8_t flag, std::uint8_t type) {
    Bytes bytes;
    for (int group = 0; group < count; ++group) {
        const Bytes one = Group(flag, type);
        bytes.insert(bytes.end(), one.begin(), one.end());
    }
    return bytes;
}

class SettlingArchiveTest : public ::testing::Test {
protected:
    TestHost host;
    CSettlingDetails details;
    CString error;
};

TEST_F(SettlingArchiveTest, StoresTheDefaultsAsLiteralBytes) {
    CArchive archive;
    details.Serialize(archive);
    const Bytes& bytes = archive.Bytes();
    ASSERT_EQ(bytes.size(), 290U);
    // Group 0: exponential, 2.5 %, 30 ms, 3 results, no average.
    const Bytes first{1,    2, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0x04, 0x40, 1,
                      0x1E, 0, 0, 0, 1, 3, 0, 0, 0, 1, 0, 0, 0,    0};
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 29), first);
    // Group 9: normal, 0.001 %.
    const Bytes last{1,    1, 0, 0, 0, 1, 0xFC, 0xA9, 0xF1, 0xD2, 0x4D, 0x62, 0x50, 0x3F, 1,
                     0x1E, 0, 0, 0, 1, 3, 0,    0,    0,    1,    0,    0,    0,    0};
    EXPECT_EQ(Bytes(bytes.begin() + 261, bytes.end()), last);
}

TEST_F(SettlingArchiveTest, EarlierLayoutHasSevenGroups) {
    Bytes bytes = Group(1, 1);
    const Bytes kept = Group(0, 1);
    bytes.insert(bytes.end(), kept.begin(), kept.end());
    const Bytes rest = Groups(5, 1, 0);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    CArchive archive{bytes};
    archive.SetFileVersion(100, 98);
    ASSERT_TRUE(details.Load(archive, error)) << error;
    EXPECT_EQ(archive.Remaining(), 0U);
    const int types[] = {1, 1, 1, 1, 2, 0, 0, 0, 0, 0}; // the second stored group's last flag is clear
    for (int group = 0; group < kSettlingGroups; ++group) {
        EXPECT_EQ(details.Group(static_cast<SettlingGroup>(group)).ToleranceType, types[group]) << group;
        EXPECT_EQ(details.SaveFlag(static_cast<SettlingGroup>(group)), 1)
            << "earlier flags leave the save flags";
    }
}

} // namespace
} // namespace kalvio::test
