// Every transcript, played. With KALVIO_RECORD set in the environment the files take what came out.

#include "hardware/Transcript.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kalvio::test {
namespace {

class Transcript : public testing::TestWithParam<const char*> {};

TEST_P(Transcript, ComesOutAsItStands) {
    const auto path =
        std::filesystem::path(__FILE__).parent_path() / "transcripts" / (CString(GetParam()) + ".txt");
    std::ifstream file(path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(text.empty()) << path;
    const std::string played = PlayTranscript(text);
    EXPECT_EQ(played, text);
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
