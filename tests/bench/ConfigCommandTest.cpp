// Configurations from the command line.

#include "bench/commands/CommandLine.h"
#include "bench/commands/ExitCode.h"
#include "platform/ScratchFolder.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kalvio::bench {
namespace {

class ConfigCommandTest : public testing::Test {
protected:
    int Run(const std::vector<std::string>& arguments, const std::string& input = "") {
        std::istringstream in(input);
        m_out.str("");
        m_err.str("");
        Terminal terminal{in, m_out, m_err};
        return RunCommandLine(arguments, terminal, false);
    }
    [[nodiscard]] std::string Script(const std::string& text) const {
        test::WriteText(m_folder.Path("s.kvs"), text);
        return m_folder.Path("s.kvs");
    }

    test::ManualClock m_clock;
    test::ScratchFolder m_folder;
    std::ostringstream m_out;
    std::ostringstream m_err;
};

TEST_F(ConfigCommandTest, WhatWasLoadedIsShownAndDamageIsRefused) {
    const std::string a = m_folder.Path("a.kvc");
    const std::string b = m_folder.Path("b.kvc");
    ASSERT_EQ(Run({"config", "save", a}), kExitOk) << m_err.str();
    ASSERT_EQ(
        Run({"run", Script("KVNET_DefineChannelArray(\"outputs\", false, false)\n"
                           "IOSWITCHER_AddToArray(1, IOSWITCHER_BUS_A, IOSWITCHER_GROUP_X, \"outputs\")\n"
                           "REG_Timeout = 30\nsave " +
                           b + "  # as it stands\n")}),
        kExitOk)
        << m_err.str();
    ASSERT_EQ(Run({"config", "show", b}), kExitOk) << m_err.str();
    const std::string shown = m_out.str();
    ASSERT_EQ(Run({"config", "show", "--load", b}), kExitOk) << m_err.str();
    EXPECT_EQ(m_out.str(), shown) << "the host that loaded it holds what the file shows";
    // A damaged file is refused by everything that reads one.
    std::string bytes = test::FileText(b);
    bytes[100] = static_cast<char>(bytes[100] ^ 1);
    const std::string c = m_folder.Path("c.kvc");
    test::WriteText(c, bytes);
    for (const std::vector<std::string>& line : {std::vector<std::string>{"config", "check", a, c},
                                                 {"config", "show", c},
                                                 {"config", "diff", a, c},
                                                 {"info", "--load", c}}) {
        EXPECT_EQ(Run(line), kExitFile) << line[1];
    }
    EXPECT_EQ(Run({"run", Script("load \"" + c + "\"\n")}), kExitScript);
    EXPECT_NE(m_err.str().find("section 1: checksum: must be "), std::string::npos) << m_err.str();
}

} // namespace
} // namespace kalvio::bench
