// Every transcript, played. With KALVIO_RECORD set in the environment the files take what came out.

#include "hardware/Transcript.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace kalvio::test {
namespace {

class Transcript : public testing::TestWithParam<const char*> {};

// The first line that came out otherwise, with its number.
std::string FirstDifference(const std::string& text, const std::string& played) {
    std::istringstream expected(text);
    std::istringstream came(played);
    std::string expectedLine;
    std::string cameLine;
    for (int number = 1;; ++number) {
        const bool more = static_cast<bool>(std::getline(expected, expectedLine));
        const bool moreCame = static_cast<bool>(std::getline(came, cameLine));
        if (expectedLine != cameLine || more != moreCame || !more) {
            return Format("line %d\n  expected %s\n  came     ", number, expectedLine.c_str()) + cameLine;
        }
    }
}

TEST_P(Transcript, ComesOutAsItStands) {
    const auto path =
        std::filesystem::path(__FILE__).parent_path() / "transcripts" / (CString(GetParam()) + ".txt");
    std::ifstream file(path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(text.empty()) << path;
    const std::string played = PlayTranscript(text);
    EXPECT_TRUE(played == text) << FirstDifference(text, played);
    if (std::getenv("KALVIO_RECORD") != nullptr) {
        std::ofstream(path) << played;
    }
}

INSTANTIATE_TEST_SUITE_P(Hardware, Transcript,
                         testing::Values("automation", "bring_up", "calibration", "commands", "generator",
                                         "peripherals", "rate", "registers", "results", "state", "trigger"),
                         [](const auto& name) { return std::string(name.param); });

} // namespace
} // namespace kalvio::test
