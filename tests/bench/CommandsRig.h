#pragma once

// Commands as a user gives them, on the simulated unit and a clock that moves only when told.

#include "bench/commands/CommandLine.h"
#include "bench/terminal/Interrupt.h"
#include "platform/Text.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace kalvio::bench {

inline const std::filesystem::path kExamples =
    std::filesystem::path(__FILE__).parent_path().parent_path().parent_path() / "examples";

class CommandsTest : public testing::Test {
protected:
    void SetUp() override {
        m_directory = std::filesystem::path(testing::TempDir()) /
                      Format("bench-%d-%s", static_cast<int>(getpid()),
                             testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(m_directory);
    }
    void TearDown() override {
        SetInterrupted(false);
        std::filesystem::remove_all(m_directory);
    }

    int Run(const std::vector<std::string>& arguments, const std::string& input = "") {
        m_in.emplace_back(std::make_unique<std::istringstream>(input)); // a reader may outlive the command
        m_out.str("");
        m_err.str("");
        Terminal terminal{*m_in.back(), m_out, m_err};
        return RunCommandLine(arguments, terminal, false);
    }

    std::string Path(const char* name) const { return (m_directory / name).string(); }
    std::string WriteScript(const std::string& text) const {
        std::ofstream(Path("s.kvs")) << text;
        return Path("s.kvs");
    }
    static std::string ReadAll(const std::string& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool Said(const std::ostringstream& stream, const char* text) const {
        return stream.str().find(text) != std::string::npos;
    }

    test::ManualClock m_clock;
    std::filesystem::path m_directory;
    std::vector<std::unique_ptr<std::istringstream>> m_in;
    std::ostringstream m_out;
    std::ostringstream m_err;
};

} // namespace kalvio::bench
