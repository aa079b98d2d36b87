#include "platform/Files.h"

#include "platform/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kalvio {
namespace {

using test::FileText;
using test::ScratchFolder;
using test::WriteText;

TEST(Files, ReadsAWholeFileOrSaysWhyNot) {
    const ScratchFolder folder;
    WriteText(folder.Path("plain"), CString("a\0\xFF", 3));
    WriteText(folder.Path("empty"), "");
    WriteText(folder.Path("huge"), "");
    std::filesystem::resize_file(folder.Path("huge"), kLargestFileBytes + 1); // sparse
    struct Case {
        const char* name;
        FileStatus status;
        std::vector<std::uint8_t> bytes;
    };
    const std::vector<std::uint8_t> untouched = {42};
    const Case cases[] = {
        {"plain", FileStatus::Ok, {'a', 0, 0xFF}},     {"empty", FileStatus::Ok, {}},
        {"missing", FileStatus::NotOpened, untouched}, {".", FileStatus::NotOpened, untouched},
        {"plain/x", FileStatus::NotOpened, untouched}, {"huge", FileStatus::NoMemory, untouched},
    };
    for (const Case& each : cases) {
        std::vector<std::uint8_t> bytes = untouched;
        EXPECT_EQ(ReadFile(folder.Path(each.name), bytes), each.status) << each.name;
        EXPECT_EQ(bytes, each.bytes) << each.name;
    }
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(ReadFile("/dev/zero", bytes), FileStatus::NotOpened);
}

TEST(Files, NewFilesAreTheUsersToWriteAndEverybodysToRead) {
    const ScratchFolder folder;
    const mode_t mask = umask(0022);
    EXPECT_TRUE(WriteFileAtomically(folder.Path("new"), "text"));
    umask(mask);
    EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(folder.Path("new")).permissions()), 0644U);
}

TEST(Files, WritesInOneStepOrLeavesTheOldFile) {
    const ScratchFolder folder;
    const CString path = folder.Path("settings");
    EXPECT_TRUE(WriteFileAtomically(path, "old"));
    EXPECT_TRUE(WriteFileAtomically(path, "new"));
    EXPECT_EQ(FileText(path), "new");
    std::filesystem::create_directory(path + ".new"); // the place of the new file is taken
    EXPECT_FALSE(WriteFileAtomically(path, "newer"));
    EXPECT_EQ(FileText(path), "new");
    EXPECT_FALSE(WriteFileAtomically(folder.Path("no/such/folder"), "x"));
}

TEST(Files, FullPathNamesHaveNoSteps) {
    EXPECT_EQ(GetFullPathName("/a/./b/../c.fpg"), "/a/c.fpg");
    EXPECT_EQ(GetFullPathName("x.fpg"), (std::filesystem::current_path() / "x.fpg").string());
    EXPECT_EQ(GetFullPathName(""), "");
}

} // namespace
} // namespace kalvio
