// Files on the disk: whole before and after, whatever happens while they are written.

#include "platform/Files.h"
#include "platform/ScratchFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kalvio::test {
namespace {

std::vector<std::uint8_t> Content(std::uint8_t fill, std::size_t size = 30000) {
    return std::vector<std::uint8_t>(size, fill);
}
std::string Text(std::uint8_t fill, std::size_t size = 30000) {
    return std::string(size, static_cast<char>(fill));
}

TEST(SavingTest, KeepsTheOneBefore) {
    const ScratchFolder folder;
    const CString path = folder.Path("a.kvc");
    EXPECT_EQ(SaveFileKeepingOld(path, Content(1)), "");
    EXPECT_FALSE(std::filesystem::exists(path + "~"));
    EXPECT_EQ(SaveFileKeepingOld(path, Content(2)), "");
    std::filesystem::create_symlink(path, folder.Path("link"));
    EXPECT_EQ(SaveFileKeepingOld(folder.Path("link"), Content(3)), "");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link")));
    EXPECT_EQ(FileText(path), Text(3));
    EXPECT_EQ(FileText(path + "~"), Text(2));
}

TEST(SavingTest, WhatCannotBeWrittenLeavesTheOldFile) {
    const ScratchFolder folder;
    const CString path = folder.Path("a.kvc");
    ASSERT_EQ(SaveFileKeepingOld(path, Content(1)), "");
    EXPECT_EQ(SaveFileKeepingOld(folder.Path("none/a.kvc"), Content(2)), "No such file or directory");
    EXPECT_EQ(SaveFileKeepingOld(folder.Path(""), Content(2)), "Is a directory");
    std::filesystem::create_symlink("/dev/full", path + ".new");
    EXPECT_EQ(SaveFileKeepingOld(path, Content(2)), "No space left on device");
    EXPECT_EQ(FileText(path), Text(1));
    EXPECT_FALSE(std::filesystem::exists(path + "~"));
    // A disk that fills half way.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{10000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(SaveFileKeepingOld(path, Content(2)), "File too large");
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(FileText(path), Text(1));
    EXPECT_FALSE(std::filesystem::exists(path + ".new"));
}

// KALVIO_KILLS says how many.
TEST(SavingTest, KillsLeaveOneOrTheOther) {
    const char* wanted = std::getenv("KALVIO_KILLS");
    const int kills = wanted != nullptr ? std::atoi(wanted) : 40;
    const ScratchFolder folder;
    const CString path = folder.Path("a.kvc");
    ASSERT_EQ(SaveFileKeepingOld(path, Content(1)), "");
    std::mt19937 random(7);
    for (int kill = 0; kill < kills; ++kill) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (std::uint8_t fill = 1;; fill = static_cast<std::uint8_t>(fill % 3 + 1)) {
                static_cast<void>(SaveFileKeepingOld(path, Content(fill)));
            }
        }
        const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 3000);
        while (std::chrono::steady_clock::now() < end) {
        }
        ::kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        for (const CString& name : {path, path + "~"}) {
            const std::string text = FileText(name);
            if (name != path && text.empty()) {
                continue; // there was none before yet
            }
            ASSERT_TRUE(text == Text(1) || text == Text(2) || text == Text(3)) << name << " " << text.size();
        }
    }
    EXPECT_EQ(SaveFileKeepingOld(path, Content(9)), "") << "leftovers are in nobody's way";
    EXPECT_EQ(FileText(path), Text(9));
}

} // namespace
} // namespace kalvio::test
