// Every transcript, played.

#include "hardware/Transcript.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, ComesOutAsItStands) {
    Stage stage;
    ExpectReplay(__FILE__, "transcripts/" + GetParam() + ".txt",
                 [&stage](std::string_view request) { return PlayRequest(stage, request); });
}

INSTANTIATE_TEST_SUITE_P(Hardware, Transcript,
                         testing::Values("automation", "bring_up", "calibration", "commands", "generator",
                                         "peripherals", "rate", "registers", "results", "state", "trigger"),
                         [](const auto& name) { return name.param; });

} // namespace
} // namespace kalvio::test
