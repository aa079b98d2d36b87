#include "platform/Registry.h"

#include "platform/DebugFile.h"
#include "platform/ScratchFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using kalvio::test::FileText;
using kalvio::test::ScratchFolder;
using kalvio::test::WriteText;

constexpr auto kMachine = RegistryKeyType::Machine;
constexpr auto kUser = RegistryKeyType::User;

class Registry : public testing::Test {
protected:
    Registry() { CRegistry::Reset(); }
    ~Registry() override {
        CRegistry::Reset();
        CDebugFile::SetSink({});
    }

    // Opens the file and gives what was wrong with it.
    CString Open() {
        CString error;
        const bool opened = CRegistry::Open(m_path, error);
        EXPECT_EQ(opened, error.empty());
        return error;
    }

    ScratchFolder m_folder;
    CString m_path = m_folder.Path("kalvio.ini");
};

TEST_F(Registry, ProgramsThatShareAFileLoseNothing) {
    EXPECT_EQ(Open(), "");
    constexpr int kPrograms = 4;
    constexpr int kValues = 25;
    std::vector<pid_t> programs;
    for (int program = 0; program < kPrograms; ++program) {
        programs.push_back(fork());
        if (programs.back() == 0) {
            for (int value = 0; value < kValues; ++value) {
                CRegistry::SetRegistryValue(kUser, "Shared", kalvio::Format("p%d-%d", program, value), value);
            }
            _exit(0);
        }
    }
    for (const pid_t program : programs) {
        waitpid(program, nullptr, 0);
    }
    CRegistry::SetRegistryValue(kUser, "Shared", "own", 1);
    CRegistry::Reset();
    EXPECT_EQ(Open(), "");
    for (int number = 0; number < kPrograms * kValues; ++number) {
        const CString name = kalvio::Format("p%d-%d", number / kValues, number % kValues);
        EXPECT_EQ(CRegistry::GetRegistryValue(kUser, "Shared", name, -1), number % kValues) << name;
    }
    EXPECT_EQ(CRegistry::GetRegistryValue(kUser, "Shared", "own", 0), 1);
}

TEST_F(Registry, AMissingFileIsEmptyAndIsMadeByTheFirstChange) {
    EXPECT_EQ(Open(), "");
    EXPECT_EQ(CRegistry::GetRegistryValue(kMachine, "Hardware", "FPGAFile", CString("none")), "none");
    EXPECT_TRUE(CRegistry::SetRegistryValue(kMachine, "Hardware", "FPGAFile",
                                            CString("C:\\a \"b\"\n\x01"
                                                    "2")));
    EXPECT_TRUE(CRegistry::SetRegistryValue(kUser, "Debug", "HWErrors", -3));
    EXPECT_TRUE(CRegistry::SetRegistryValue(kMachine, "Hardware", "odd=name", 1));
    EXPECT_EQ(FileText(m_path), "[Machine\\Hardware]\n"
                                "FPGAFile = \"C:\\\\a \\\"b\\\"\\n\\x012\"\n"
                                "\"odd=name\" = 1\n"
                                "\n"
                                "[User\\Debug]\n"
                                "HWErrors = -3\n");
    CRegistry::Reset();
    EXPECT_EQ(Open(), "");
    EXPECT_EQ(CRegistry::GetRegistryValue(kMachine, "Hardware", "FPGAFile", CString()), "C:\\a \"b\"\n\x01"
                                                                                        "2");
    EXPECT_EQ(CRegistry::GetRegistryValue(kMachine, "Hardware", "odd=name", 0), 1);
    EXPECT_EQ(CRegistry::GetRegistryValue(kUser, "Debug", "HWErrors", 0), -3);
    EXPECT_EQ(CRegistry::GetRegistryValue(kMachine, "Debug", "HWErrors", 7), 7);
    EXPECT_EQ(CRegistry::GetRegistryValue(kUser, "Debug", "HWErrors", CString("not a text")), "not a text");
}

TEST_F(Registry, AChangeKeepsEverythingElseOfTheFile) {
    WriteText(m_path, "# mine\r\n[Other]\nkept = 1\n\n[machine\\hardware]\nWAIT = 5 \n; end\n[User\\Debug]");
    EXPECT_EQ(Open(), "");
    EXPECT_EQ(CRegistry::GetRegistryValue(kMachine, "Hardware", "Wait", 0), 5);
    EXPECT_TRUE(CRegistry::SetRegistryValue(kMachine, "Hardware", "Wait", 6));
    EXPECT_TRUE(CRegistry::SetRegistryValue(kMachine, "Hardware", "Extra", 7));
    EXPECT_TRUE(CRegistry::SetRegistryValue(kUser, "Debug", "HWErrors", 8));
    EXPECT_EQ(FileText(m_path),
              "# mine\n[Other]\nkept = 1\n\n[machine\\hardware]\nWait = 6\nExtra = 7\n; end\n"
              "[User\\Debug]\nHWErrors = 8\n");
}

TEST_F(Registry, DamageIsNamedWithItsLineAndTheFileKeptAside) {
    struct Case {
        const char* text;
        const char* where;
    };
    const Case cases[] = {
        {"[Machine\\Hardware]\n\nFPGAFile = \"abc\n", "line 3: a text has no closing quote"},
        {"[A]\nn = \"a\\q\"", "line 2: a text has an unknown escape"},
        {"[A]\nn = \"a\\x1\"", "line 2: a text has an unknown escape"},
        {"[A]\nn = \"a\" b", "line 2: something follows the text"},
        {"[A]\nn = 4294967296", "line 2: the number does not fit into 32 bits"},
        {"[A]\nn = 12 volts", "line 2: the value is neither a number nor a text in quotes"},
        {"[A]\nn =", "line 2: the value is neither a number nor a text in quotes"},
        {"[A]\nn", "line 2: there is no \"=\" behind the name"},
        {"[A]\n\x01\x02\x03", "line 2: this is no name of a value"},
        {"n = 1", "line 1: the value stands before the first section"},
        {"[Machine", "line 1: the section name has no closing bracket"},
    };
    for (const Case& each : cases) {
        const ScratchFolder folder;
        m_path = folder.Path("kalvio.ini");
        WriteText(m_path, each.text);
        EXPECT_EQ(Open(), "The registry file \"" + m_path + "\" is damaged in " + each.where +
                              ". It is kept as \"" + m_path + ".damaged\". Default settings are used.");
        EXPECT_FALSE(std::filesystem::exists(m_path));
        EXPECT_EQ(FileText(m_path + ".damaged"), each.text);
    }
}

TEST_F(Registry, DamagedFilesAreNeverOverwritten) {
    WriteText(m_path, "first");
    EXPECT_NE(Open(), "");
    EXPECT_TRUE(CRegistry::SetRegistryValue(kMachine, "A", "n", 1));
    EXPECT_EQ(FileText(m_path), "[Machine\\A]\nn = 1\n");
    for (const char* damage : {"second", "third"}) {
        WriteText(m_path, damage);
        EXPECT_NE(Open(), "");
        EXPECT_EQ(CRegistry::GetRegistryValue(kMachine, "A", "n", 0), 0);
    }
    EXPECT_EQ(FileText(m_path + ".damaged"), "first");
    EXPECT_EQ(FileText(m_path + ".damaged.2"), "second");
    EXPECT_EQ(FileText(m_path + ".damaged.3"), "third");
}

TEST_F(Registry, AnUnwritablePlaceKeepsTheValueForThisRunAndSaysSo) {
    std::vector<CString> lines;
    CDebugFile::SetSink([&](const CString& line) { lines.push_back(line); });
    m_path = m_folder.Path("missing folder/kalvio.ini");
    EXPECT_EQ(Open(), "");
    EXPECT_FALSE(CRegistry::SetRegistryValue(kMachine, "Power Management", "HWRunning", 1));
    EXPECT_EQ(CRegistry::GetRegistryValue(kMachine, "Power Management", "HWRunning", 0), 1);
    EXPECT_EQ(lines, std::vector<CString>{"CRegistry::SetRegistryValue - \"HWRunning\" not saved: \"" +
                                          m_path + "\" could not be written\n"});
}

TEST_F(Registry, WhatCannotBeReadIsLeftAlone) {
    std::filesystem::create_directory(m_path);
    EXPECT_EQ(Open(), "The registry file \"" + m_path +
                          "\" could not be read. Default settings are used and changes are not saved.");
    EXPECT_TRUE(CRegistry::SetRegistryValue(kMachine, "A", "n", 1)); // memory only from now on
    EXPECT_TRUE(std::filesystem::is_directory(m_path));
}

TEST_F(Registry, RefusesAKeyThatNoFileCouldHold) {
    EXPECT_EQ(Open(), "");
    EXPECT_FALSE(CRegistry::SetRegistryValue(kMachine, "A]\n[B", "n", 1));
    EXPECT_FALSE(std::filesystem::exists(m_path));
}

} // namespace
